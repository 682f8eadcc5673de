#pragma once

#include <cstddef>
#include <vector>

#include "application/record/RegistryLook.h"

namespace Program {

// One print of an entry in an archive, with the prints beneath it.
struct EntryPrint {
  std::size_t entry = 0;  // its place
  bool isFirst = true;    // the one with the properties
  std::vector<EntryPrint> beneath;
};

// How an archive has to print the entries so that its reader finds every link, children and parents
// in their order: each entry under each parent. Where an entry was attached to a later sibling of a
// parent first, that parent is printed again, further down, with what was left out before.
EntryPrint planPrints(const RegistryLook& look);

}  // namespace Program
