#include "platform/registry/memory/archive/ArchiveError.h"

#include <algorithm>

namespace MemoryRegistry {
namespace {

bool isControl(char c) {
  const auto byte = static_cast<unsigned char>(c);
  return byte < 0x20 || byte == 0x7F;
}

std::string oneLine(std::string text) {
  std::replace_if(text.begin(), text.end(), isControl, '?');
  return text;
}

}  // namespace

ArchiveError::ArchiveError(const std::string& file, const std::string& reason)
    : std::runtime_error(oneLine(file + ": " + reason)) {}

}  // namespace MemoryRegistry
