#pragma once

#include <map>
#include <string>
#include <vector>

#include "platform/registry/Registry.h"

namespace Program {

// Finds out which classes an entry's class is derived from. Keeps what it has learnt of a class.
class ClassChains {
 public:
  using Chain = std::vector<std::string>;

  // Root first, ending in the class itself.
  Chain chainOf(io_registry_entry_t entry, const std::string& className);

 private:
  const Chain& known(const std::string& className);

  std::map<std::string, Chain> _known;
};

}  // namespace Program
