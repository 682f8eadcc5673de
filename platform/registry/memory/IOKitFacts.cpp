#include <algorithm>
#include <cstring>

#include "platform/registry/memory/CFObjects.h"
#include "platform/registry/memory/ClassTable.h"
#include "platform/registry/memory/SeamSupport.h"

// What an entry is, and all of its properties: what has to be known to write it down.

using namespace MemoryRegistry;

namespace {

void writeName(const std::string& text, char* name) {
  const std::size_t length = std::min(text.size(), sizeof(io_name_t) - 1);
  std::memcpy(name, text.data(), length);
  name[length] = '\0';
}

const std::string& classNameOf(const Entry& entry) {
  static const Symbol key = intern("IOClassNameOverride");
  const PropertyValue* value = entry.facts.property(key);
  const auto* name = value != nullptr ? std::get_if<std::string>(&value->variant()) : nullptr;
  return name != nullptr ? *name : entry.facts.classInfo->name()->text;
}

// The one before it in the longest chain that it ends, or else in the longest one that it is in:
// entries that were printed without their chain may have a shorter one than their class.
Symbol superclassOf(Symbol className) {
  const ClassInfo* best = nullptr;
  for (const auto& info : ClassTable::instance().all()) {
    if (info->instances == nullptr || !info->derivesFrom(className->classNumber)) continue;
    const auto rank = [className](const ClassInfo& candidate) {
      return std::make_pair(candidate.name() == className, candidate.chain.size());
    };
    if (best == nullptr || rank(*info) > rank(*best)) best = info.get();
  }
  if (best == nullptr) return nullptr;
  const auto place = std::find(best->chain.begin(), best->chain.end(), className);
  return place == best->chain.begin() || place == best->chain.end() ? nullptr : *(place - 1);
}

}  // namespace

io_registry_entry_t IORegistryGetRootEntry(mach_port_t) {
  if (OperationLog::instance().enter(Operation::IORegistryGetRootEntry)) return 0;
  return Graph::hold(Graph::instance().root());
}

kern_return_t IOObjectGetClass(io_object_t object, char* className) {
  if (className == nullptr) trap("IOObjectGetClass", "null for the result");
  if (OperationLog::instance().enter(Operation::IOObjectGetClass)) return kIOReturnError;
  const EntryOrError found = entryFor(object);
  if (found.entry == nullptr) return found.error;
  writeName(classNameOf(*found.entry), className);
  return kIOReturnSuccess;
}

CFStringRef IOObjectCopySuperclassForClass(CFStringRef className) {
  if (OperationLog::instance().enter(Operation::IOObjectCopySuperclassForClass)) return nullptr;
  const __CFString& name = requireString(className, "IOObjectCopySuperclassForClass");
  const Symbol symbol = findSymbol(name.text);
  const Symbol superclass =
      symbol != nullptr && symbol->classNumber != NoClassNumber ? superclassOf(symbol) : nullptr;
  return superclass != nullptr ? makePropertyString(superclass->text).release() : nullptr;
}

kern_return_t IORegistryEntryGetRegistryEntryID(io_registry_entry_t entry, std::uint64_t* id) {
  if (id == nullptr) trap("IORegistryEntryGetRegistryEntryID", "null for the result");
  if (OperationLog::instance().enter(Operation::IORegistryEntryGetRegistryEntryID)) {
    return kIOReturnError;
  }
  const EntryOrError found = entryFor(entry);
  if (found.entry == nullptr) return found.error;
  *id = found.entry->id;
  return kIOReturnSuccess;
}

// Any plane will do: an entry has one name, the same everywhere.
kern_return_t IORegistryEntryGetNameInPlane(io_registry_entry_t entry, const char*, char* name) {
  if (name == nullptr) trap("IORegistryEntryGetNameInPlane", "null for the result");
  if (OperationLog::instance().enter(Operation::IORegistryEntryGetNameInPlane)) {
    return kIOReturnError;
  }
  const EntryOrError found = entryFor(entry);
  if (found.entry == nullptr) return found.error;
  writeName(found.entry->facts.name->text, name);
  return kIOReturnSuccess;
}

kern_return_t IORegistryEntryCreateCFProperties(io_registry_entry_t entry,
                                                CFMutableDictionaryRef* properties, CFAllocatorRef,
                                                IOOptionBits) {
  if (properties == nullptr) trap("IORegistryEntryCreateCFProperties", "null for the result");
  *properties = nullptr;
  if (OperationLog::instance().enter(Operation::IORegistryEntryCreateCFProperties)) {
    return kIOReturnError;
  }
  const EntryOrError found = entryFor(entry);
  if (found.entry == nullptr) return found.error;
  *properties = makeProperties(found.entry->facts.properties).release();
  return kIOReturnSuccess;
}
