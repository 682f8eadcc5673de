#pragma once

#include <string>

namespace Pelago {

// A host computer that discovery has found. The library does nothing with it.
//
// Ownership: a plain value. Callbacks get it by reference, for the call.
// Thread:    any; two threads that share one object look to that themselves.
// Failure:   nothing here fails but copying, for lack of memory.
struct Host {
  std::string name;  // as discovery knows it; tells one host from another
};

// Whether they are the same host: one of the same name.
inline bool operator==(const Host& a, const Host& b) { return a.name == b.name; }

}  // namespace Pelago
