#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/registry/memory/MemoryRegistryExport.h"
#include "platform/registry/memory/Operation.h"
#include "platform/registry/memory/RegistryContent.h"

// The in-memory registry that answers the seam (platform/registry/Registry.h) where there is no I/O
// Registry, or where a staged one is wanted: how to build it, change it, account for it and make it
// fail. There is one per process, as there is one I/O Registry.
//
// Ownership: entries, properties and links are the registry's. Handles and values that the seam has
//            given out are their receivers', and survive every change made here.
// Thread:    one thread at a time, the one that calls the seam.
// Failure:   an ID that is not in the registry, a second link between the same two entries and a
//            link that would make an entry its own ancestor throw std::invalid_argument and change
//            nothing. So do terminating the root and attaching it to another entry.
//
// \code
// #include "platform/registry/Registry.h"
//
// // A staged service answers through the seam as one of the system's would; then it fails to.
// int main() {
//   MemoryRegistry::EntryDescription description;
//   description.className = "IOThunderboltSwitchType2";
//   const MemoryRegistry::EntryID id = MemoryRegistry::add(MemoryRegistry::root(), description);
//
//   const std::string path = MemoryRegistry::path(id);
//   const io_registry_entry_t entry =
//       IORegistryEntryFromPath(RAIDMonitoring::registryPort, path.c_str());
//   if (MemoryRegistry::entryOf(entry) != id || MemoryRegistry::references(id) != 1) return 1;
//   IOObjectRelease(entry);
//   if (!MemoryRegistry::accounts().entries.empty()) return 1;
//
//   using MemoryRegistry::Operation;
//   MemoryRegistry::failCall(Operation::IORegistryEntryFromPath, 1, MemoryRegistry::Repeat::Once);
//   return IORegistryEntryFromPath(RAIDMonitoring::registryPort, path.c_str()) == 0 ? 0 : 1;
// }
// \endcode
namespace MemoryRegistry {

// ---- Building and changing --------------------------------------------------------------------

// An empty registry: a Root and nothing else. Every handle given out is dead; the accounts and the
// failure orders start from nothing.
MEMORYREGISTRY_EXPORT void reset();

// The entry above all others. It is always there.
MEMORYREGISTRY_EXPORT EntryID root();

// A new entry beneath `parent`, as its last child. Its ID is one that was never used before.
MEMORYREGISTRY_EXPORT EntryID add(EntryID parent, EntryDescription description);

// Appends a link, in the order of children as in that of parents.
MEMORYREGISTRY_EXPORT void attach(EntryID child, EntryID parent);

// Removes a link; the order of the others stays. The entry lives on, also without parents.
MEMORYREGISTRY_EXPORT void detach(EntryID child, EntryID parent);

// Takes the entry out of the registry, and with it everything beneath it that no other parent
// holds. Their handles are dead from then on; no path leads to them.
MEMORYREGISTRY_EXPORT void terminate(EntryID entry);

// A property that is there already gets the new value. To remove one that is not there is nothing.
MEMORYREGISTRY_EXPORT void setProperty(EntryID entry, const std::string& key, PropertyValue value);
MEMORYREGISTRY_EXPORT void removeProperty(EntryID entry, const std::string& key);

// The name as it is given, an empty one too; the text behind the "@", where empty means none.
MEMORYREGISTRY_EXPORT void setName(EntryID entry, const std::string& name);
MEMORYREGISTRY_EXPORT void setLocation(EntryID entry, const std::string& location);
// ServiceState bits.
MEMORYREGISTRY_EXPORT void setState(EntryID entry, std::uint32_t state);

// The registry becomes exactly `content`. An entry whose ID is there already keeps its handles; one
// whose ID is not in `content` is terminated. Content that is not what RegistryContent says throws
// std::invalid_argument and changes nothing.
MEMORYREGISTRY_EXPORT void replaceContent(RegistryContent content);

// ---- Looking, without references --------------------------------------------------------------

// Whether there is such an entry, and how many there are, the root among them.
MEMORYREGISTRY_EXPORT bool contains(EntryID entry);
MEMORYREGISTRY_EXPORT std::size_t entryCount();

// In their order: that of the links' making.
MEMORYREGISTRY_EXPORT std::vector<EntryID> children(EntryID entry);
MEMORYREGISTRY_EXPORT std::vector<EntryID> parents(EntryID entry);
// The path as IORegistryEntryGetPath would write it; empty when it can't.
MEMORYREGISTRY_EXPORT std::string path(EntryID entry);

// A handle on the entry with one reference, as a look-up through the seam would give it; 0 when
// there is no such entry. No operation is counted.
MEMORYREGISTRY_EXPORT unsigned int handle(EntryID entry);
// The entry that a live handle stands for; 0 for any other number.
MEMORYREGISTRY_EXPORT EntryID entryOf(unsigned int handle);

// ---- Accounts ---------------------------------------------------------------------------------

// An entry that somebody holds references on.
struct KeptEntry {
  EntryID id = 0;                // of the entry, which may be gone
  std::uint64_t references = 0;  // through all its handles
};
// Whether they say the same.
inline bool operator==(const KeptEntry& a, const KeptEntry& b) {
  return a.id == b.id && a.references == b.references;
}

// What users hold of the registry at one moment.
struct Accounts {
  // Those with references, ascending by ID, terminated ones too. An ID that vanished and came back
  // has stood for more than one entry: the ended ones come first, in the order of their ends.
  std::vector<KeptEntry> entries;
  std::size_t iterators = 0;  // that were given out and not released
  std::size_t values = 0;     // CoreFoundation objects that live, compile-time constants left out
};

// As they are now.
MEMORYREGISTRY_EXPORT Accounts accounts();
// References held by users on whatever has borne the ID, also after its termination.
MEMORYREGISTRY_EXPORT std::uint64_t references(EntryID entry);

// How often an operation of the seam was called since reset(), failed calls included.
MEMORYREGISTRY_EXPORT std::uint64_t calls(Operation operation);
// All operations together.
MEMORYREGISTRY_EXPORT std::uint64_t calls();

// ---- Failing on demand ------------------------------------------------------------------------

// How a call fails: as the operation does, by an error code, 0, null or false; or with success and
// a null handle, which for operations that do not return both is the same as Error.
enum class Failure { Error, NullSuccess };
// Whether the calls behind it fail too.
enum class Repeat { Once, FromThenOn };

// The `n`-th call of the operation from now (1 is the next) fails. One order stands at a time.
MEMORYREGISTRY_EXPORT void failCall(Operation operation, std::uint64_t n, Repeat repeat,
                                    Failure failure = Failure::Error);
// The same, counting the calls of every operation that can fail.
MEMORYREGISTRY_EXPORT void failAnyCall(std::uint64_t n, Repeat repeat,
                                       Failure failure = Failure::Error);
// Takes the order back.
MEMORYREGISTRY_EXPORT void failNothing();

}  // namespace MemoryRegistry
