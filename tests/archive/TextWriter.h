#pragma once

#include <string>

#include "platform/registry/memory/RegistryContent.h"

struct TextStyle {
  bool inheritance = false;  // as with the option -i
  std::string lineEnd = "\n";
};

// The content as `ioreg -l -w0` prints it for people: an entry in full under each of its parents,
// nothing escaped, and bars that go wrong below a depth of 30.
std::string writeText(const MemoryRegistry::RegistryContent& content, const TextStyle& style = {});
