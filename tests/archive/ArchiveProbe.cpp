#include <cstdio>
#include <stdexcept>

#include "platform/registry/Registry.h"
#include "platform/registry/memory/MemoryRegistry.h"
#include "platform/registry/memory/archive/Archive.h"

// archive_probe FILE: makes the registry what the archive says, walks over all of it, and says how
// many entries were met; or says what is wrong with the archive. A program of its own, so that its
// memory and time can be limited and measured.
int main(int count, char** arguments) {
  if (count != 2) return 2;
  try {
    MemoryRegistry::replaceContent(MemoryRegistry::readArchive(arguments[1]));
  } catch (const std::runtime_error& error) {
    std::puts(error.what());
    return 1;
  }
  io_iterator_t iterator = 0;
  IORegistryEntryCreateIterator(MemoryRegistry::handle(MemoryRegistry::root()), "IOService",
                                kIORegistryIterateRecursively, &iterator);
  std::size_t entries = 1;
  while (const io_object_t entry = IOIteratorNext(iterator)) {
    IOObjectRelease(entry);
    ++entries;
  }
  std::printf("%zu entries\n", entries);
  return 0;
}
