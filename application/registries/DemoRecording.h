#pragma once

#include <cstddef>
#include <string_view>

namespace Program {

// A file's text that was built in (cmake/EmbedText.cmake).
struct EmbeddedText {
  std::string_view name;
  const std::string_view* pieces;
  std::size_t pieceCount;
};

// The recording that is shown where there is no live registry: its archives,
// "<milliseconds>.plist".
extern const EmbeddedText DemoArchive[];
extern const std::size_t DemoArchiveCount;

}  // namespace Program
