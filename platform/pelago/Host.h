#pragma once

#include <string>

namespace Pelago {

// A host computer that discovery has found.
struct Host {
  std::string name;
};

inline bool operator==(const Host& a, const Host& b) { return a.name == b.name; }

}  // namespace Pelago
