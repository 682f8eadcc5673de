#include <algorithm>
#include <cstring>

#include "platform/registry/memory/CFObjects.h"
#include "platform/registry/memory/Matching.h"
#include "platform/registry/memory/RegistryPath.h"
#include "platform/registry/memory/SeamSupport.h"

using namespace MemoryRegistry;

namespace {

io_object_t holdOrNone(const Entry* entry) { return entry != nullptr ? Graph::hold(*entry) : 0; }

kern_return_t holdFirst(const Links& links, const char* plane, io_registry_entry_t* found) {
  if (!isServicePlane(plane) || links.entries.empty()) return kIOReturnNoDevice;
  *found = Graph::hold(*links.entries.front());
  return kIOReturnSuccess;
}

boolean_t conforms(const Entry& entry, const ClassMark& mark) {
  return entry.facts.classInfo->derivesFrom(mark) || entry.facts.overridingClass == mark.number;
}

// Any handle, any name.
[[gnu::noinline]] boolean_t judgeClass(io_object_t object, const char* className,
                                       std::size_t length) {
  if (OperationLog::instance().enter(Operation::IOObjectConformsTo)) return 0;
  if (className == nullptr) trap("IOObjectConformsTo", "null where a class is required");
  const Entry* entry = entryFor(object).entry;
  return entry != nullptr ? conforms(*entry, classMarkOf(className, length)) : 0;
}

}  // namespace

io_service_t IOServiceGetMatchingService(mach_port_t, CFDictionaryRef matching) {
  const Owned<const __CFDictionary> consumed(matching);
  if (OperationLog::instance().enter(Operation::IOServiceGetMatchingService)) return 0;
  if (matching == nullptr) return 0;
  Graph& graph = Graph::instance();
  return holdOrNone(findService(graph, require<__CFDictionary>(matching, CFType::DictionaryType,
                                                               "IOServiceGetMatchingService")));
}

io_registry_entry_t IORegistryEntryFromPath(mach_port_t, const char* path) {
  if (OperationLog::instance().enter(Operation::IORegistryEntryFromPath)) return 0;
  if (path == nullptr) trap("IORegistryEntryFromPath", "null where a path is required");
  Graph& graph = Graph::instance();
  return holdOrNone(entryAtPath(graph, path));
}

kern_return_t IORegistryEntryGetParentEntry(io_registry_entry_t entry, const char* plane,
                                            io_registry_entry_t* parent) {
  if (parent == nullptr) trap("IORegistryEntryGetParentEntry", "null for the result");
  *parent = 0;
  if (const auto failure =
          OperationLog::instance().enter(Operation::IORegistryEntryGetParentEntry)) {
    return resultOf(*failure);
  }
  const EntryOrError found = entryFor(entry);
  if (found.entry == nullptr) return found.error;
  return holdFirst(found.entry->parents, plane, parent);
}

kern_return_t IORegistryEntryGetChildEntry(io_registry_entry_t entry, const char* plane,
                                           io_registry_entry_t* child) {
  if (child == nullptr) trap("IORegistryEntryGetChildEntry", "null for the result");
  *child = 0;
  if (const auto failure =
          OperationLog::instance().enter(Operation::IORegistryEntryGetChildEntry)) {
    return resultOf(*failure);
  }
  const EntryOrError found = entryFor(entry);
  if (found.entry == nullptr) return found.error;
  return holdFirst(found.entry->children, plane, child);
}

// As every step of a search asks this, the usual case goes without a call, too.
boolean_t MemoryRegistry::conformsTo(io_object_t object, const char* className,
                                     std::size_t length) {
  OperationLog& log = OperationLog::instance();
  const Slot* slot = HandleTable::held(object);
  if (slot == nullptr || slot->kind != Slot::Kind::Entry || !log.isQuiet()) {
    return judgeClass(object, className, length);
  }
  const RecentClassName& recent = recentPlaceOf(className);
  const ClassMark mark = recent.mark();
  if (!recent.is(className, length)) return judgeClass(object, className, length);
  log.count(Operation::IOObjectConformsTo);
  return conforms(*slot->entry, mark);
}

kern_return_t IORegistryEntryGetPath(io_registry_entry_t entry, const char* plane, char* path) {
  if (path == nullptr) trap("IORegistryEntryGetPath", "null for the result");
  if (OperationLog::instance().enter(Operation::IORegistryEntryGetPath)) return kIOReturnError;
  const EntryOrError found = entryFor(entry);
  if (found.entry == nullptr) return found.error;
  if (!isServicePlane(plane)) return kIOReturnBadArgument;
  const RegistryPath built(Graph::instance(), *found.entry);
  const std::string_view text = built.text();
  if (text.empty()) return kIOReturnBadArgument;
  std::memcpy(path, text.data(), text.size());
  path[text.size()] = '\0';
  return kIOReturnSuccess;
}

// Any plane will do: an entry has one location, the same everywhere.
kern_return_t IORegistryEntryGetLocationInPlane(io_registry_entry_t entry, const char*,
                                                char* location) {
  if (location == nullptr) trap("IORegistryEntryGetLocationInPlane", "null for the result");
  if (OperationLog::instance().enter(Operation::IORegistryEntryGetLocationInPlane)) {
    return kIOReturnError;
  }
  const EntryOrError found = entryFor(entry);
  if (found.entry == nullptr) return found.error;
  const Symbol text = found.entry->facts.location;
  if (text == nullptr) return kIOReturnNotFound;
  const std::size_t length = std::min(text->text.size(), sizeof(io_name_t) - 1);
  std::memcpy(location, text->text.data(), length);
  location[length] = '\0';
  return kIOReturnSuccess;
}

CFTypeRef IORegistryEntryCreateCFProperty(io_registry_entry_t entry, CFStringRef key,
                                          CFAllocatorRef, IOOptionBits) {
  if (OperationLog::instance().enter(Operation::IORegistryEntryCreateCFProperty)) return nullptr;
  const __CFString& name = requireString(key, "IORegistryEntryCreateCFProperty");
  const Entry* found = entryFor(entry).entry;
  const Symbol symbol = found != nullptr ? keyOf(name) : nullptr;
  const PropertyValue* value = symbol != nullptr ? found->facts.property(symbol) : nullptr;
  return value != nullptr ? makeProperty(*value).release() : nullptr;
}
