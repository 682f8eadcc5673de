#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Program {

// A file's text that was built in (cmake/EmbedText.cmake).
struct EmbeddedText {
  std::string_view name;
  const std::string_view* pieces;
  std::size_t pieceCount;
};

// It was cut in pieces for the compiler's sake.
std::string textOf(const EmbeddedText& embedded);

}  // namespace Program
