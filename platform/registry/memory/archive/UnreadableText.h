#pragma once

#include <stdexcept>

namespace MemoryRegistry {

// What is wrong with a line of a registry's text. RegistryText.cpp makes a Refusal of it that says
// which line.
class UnreadableText : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace MemoryRegistry
