#include "platform/registry/memory/CFObjects.h"
#include "platform/registry/memory/Matching.h"
#include "platform/registry/memory/RegistryPath.h"
#include "platform/registry/memory/SeamSupport.h"

using namespace MemoryRegistry;

namespace {

io_iterator_t openWalk(Graph& graph, Entry& start, IOOptionBits options) {
  const bool up = (options & kIORegistryIterateParents) != 0;
  return graph.openWalk(start, up ? Direction::Up : Direction::Down,
                        (options & kIORegistryIterateRecursively) != 0);
}

// The links of an entry to one side, as they are now.
kern_return_t openLinks(Operation operation, io_registry_entry_t entry, const char* plane,
                        Links Entry::*side, io_iterator_t& iterator) {
  iterator = 0;
  if (const auto failure = OperationLog::instance().enter(operation)) return resultOf(*failure);
  Graph& graph = Graph::instance();
  const EntryOrError start = entryFor(entry);
  if (start.entry == nullptr) return start.error;
  // Unlike the walks, this one takes a plane that is unknown for one without links.
  if (!isServicePlane(plane)) return kIOReturnSuccess;
  iterator = graph.openSnapshot(start.entry->*side);
  return kIOReturnSuccess;
}

// Any step, of any iterator.
[[gnu::noinline]] io_object_t nextOf(io_iterator_t iterator) {
  if (OperationLog::instance().enter(Operation::IOIteratorNext)) return 0;
  RegistryIterator* walk = iteratorFor(iterator);
  const Handle next = walk != nullptr ? walk->next() : 0;
  return next != 0 ? HandleTable::hold(next) : 0;
}

}  // namespace

kern_return_t IORegistryEntryCreateIterator(io_registry_entry_t entry, const char* plane,
                                            IOOptionBits options, io_iterator_t* iterator) {
  if (iterator == nullptr) trap("IORegistryEntryCreateIterator", "null for the result");
  *iterator = 0;
  if (const auto failure =
          OperationLog::instance().enter(Operation::IORegistryEntryCreateIterator)) {
    return resultOf(*failure);
  }
  Graph& graph = Graph::instance();
  const EntryOrError start = entryFor(entry);
  if (start.entry == nullptr) return start.error;
  if (!isServicePlane(plane)) return kIOReturnBadArgument;
  *iterator = openWalk(graph, *start.entry, options);
  return kIOReturnSuccess;
}

kern_return_t IORegistryCreateIterator(mach_port_t, const char* plane, IOOptionBits options,
                                       io_iterator_t* iterator) {
  if (iterator == nullptr) trap("IORegistryCreateIterator", "null for the result");
  *iterator = 0;
  if (const auto failure = OperationLog::instance().enter(Operation::IORegistryCreateIterator)) {
    return resultOf(*failure);
  }
  if (!isServicePlane(plane)) return kIOReturnBadArgument;
  Graph& graph = Graph::instance();
  *iterator = openWalk(graph, graph.root(), options);
  return kIOReturnSuccess;
}

kern_return_t IORegistryEntryGetChildIterator(io_registry_entry_t entry, const char* plane,
                                              io_iterator_t* iterator) {
  if (iterator == nullptr) trap("IORegistryEntryGetChildIterator", "null for the result");
  return openLinks(Operation::IORegistryEntryGetChildIterator, entry, plane, &Entry::children,
                   *iterator);
}

kern_return_t IORegistryEntryGetParentIterator(io_registry_entry_t entry, const char* plane,
                                               io_iterator_t* iterator) {
  if (iterator == nullptr) trap("IORegistryEntryGetParentIterator", "null for the result");
  return openLinks(Operation::IORegistryEntryGetParentIterator, entry, plane, &Entry::parents,
                   *iterator);
}

kern_return_t IOServiceGetMatchingServices(mach_port_t, CFDictionaryRef matching,
                                           io_iterator_t* existing) {
  const Owned<const __CFDictionary> consumed(matching);
  if (existing == nullptr) trap("IOServiceGetMatchingServices", "null for the result");
  *existing = 0;
  if (const auto failure =
          OperationLog::instance().enter(Operation::IOServiceGetMatchingServices)) {
    return resultOf(*failure);
  }
  if (matching == nullptr) return kIOReturnBadArgument;
  Graph& graph = Graph::instance();
  Links found;
  found.entries = findServices(graph, require<__CFDictionary>(matching, CFType::DictionaryType,
                                                              "IOServiceGetMatchingServices"));
  if (!found.entries.empty()) *existing = graph.openSnapshot(found);
  return kIOReturnSuccess;
}

// A step is what the library does most: the usual one goes without a call.
io_object_t IOIteratorNext(io_iterator_t iterator) {
  OperationLog& log = OperationLog::instance();
  const Slot* slot = HandleTable::held(iterator);
  if (slot == nullptr || slot->kind != Slot::Kind::RecursiveWalk || !log.isQuiet())
    return nextOf(iterator);
  Handle next = 0;
  if (!static_cast<Walk*>(slot->iterator)->takeUsual(next)) return nextOf(iterator);
  log.count(Operation::IOIteratorNext);
  return next;
}

boolean_t IOIteratorIsValid(io_iterator_t iterator) {
  if (OperationLog::instance().enter(Operation::IOIteratorIsValid)) return 0;
  RegistryIterator* walk = iteratorFor(iterator);
  return walk != nullptr && walk->isValid() ? 1 : 0;
}

void IOIteratorReset(io_iterator_t iterator) {
  OperationLog::instance().count(Operation::IOIteratorReset);
  if (RegistryIterator* walk = iteratorFor(iterator)) walk->reset();
}
