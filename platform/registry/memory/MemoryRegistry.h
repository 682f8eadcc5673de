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
namespace MemoryRegistry {

// ---- Building and changing --------------------------------------------------------------------

// An empty registry: a Root and nothing else. Every handle given out is dead; the accounts and the
// failure orders start from nothing.
MEMORYREGISTRY_EXPORT void reset();

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

MEMORYREGISTRY_EXPORT void setProperty(EntryID entry, const std::string& key, PropertyValue value);
MEMORYREGISTRY_EXPORT void removeProperty(EntryID entry, const std::string& key);
// The name as it is given, an empty one too.
MEMORYREGISTRY_EXPORT void setName(EntryID entry, const std::string& name);
MEMORYREGISTRY_EXPORT void setLocation(EntryID entry, const std::string& location);
MEMORYREGISTRY_EXPORT void setState(EntryID entry, std::uint32_t state);

// The registry becomes exactly `content`. An entry whose ID is there already keeps its handles; one
// whose ID is not in `content` is terminated. Content that is not what RegistryContent says throws
// std::invalid_argument and changes nothing.
MEMORYREGISTRY_EXPORT void replaceContent(RegistryContent content);

// ---- Looking, without references --------------------------------------------------------------

MEMORYREGISTRY_EXPORT bool contains(EntryID entry);
MEMORYREGISTRY_EXPORT std::size_t entryCount();
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

struct KeptEntry {
  EntryID id = 0;
  std::uint64_t references = 0;
};
inline bool operator==(const KeptEntry& a, const KeptEntry& b) {
  return a.id == b.id && a.references == b.references;
}

struct Accounts {
  // Those with references, ascending by ID, terminated ones too. An ID that vanished and came back
  // has stood for more than one entry: the ended ones come first, in the order of their ends.
  std::vector<KeptEntry> entries;
  std::size_t iterators = 0;
  std::size_t values = 0;  // CoreFoundation objects that live, compile-time constants left out
};

MEMORYREGISTRY_EXPORT Accounts accounts();
// References held by users on whatever has borne the ID, also after its termination.
MEMORYREGISTRY_EXPORT std::uint64_t references(EntryID entry);

// How often an operation of the seam was called since reset(), failed calls included.
MEMORYREGISTRY_EXPORT std::uint64_t calls(Operation operation);
// All operations together.
MEMORYREGISTRY_EXPORT std::uint64_t calls();

// ---- Failing on demand ------------------------------------------------------------------------

enum class Failure {
  Error,        // as the operation fails: an error code, 0, null or false
  NullSuccess,  // success with a null handle, for operations that return both;
                // else like Error
};
enum class Repeat { Once, FromThenOn };

// The `n`-th call of the operation from now (1 is the next) fails. One order stands at a time.
MEMORYREGISTRY_EXPORT void failCall(Operation operation, std::uint64_t n, Repeat repeat,
                                    Failure failure = Failure::Error);
// The same, counting the calls of every operation that can fail.
MEMORYREGISTRY_EXPORT void failAnyCall(std::uint64_t n, Repeat repeat,
                                       Failure failure = Failure::Error);
MEMORYREGISTRY_EXPORT void failNothing();

}  // namespace MemoryRegistry
