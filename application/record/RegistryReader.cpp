#include "application/record/RegistryReader.h"

#include <algorithm>
#include <array>
#include <set>
#include <string>
#include <unordered_map>
#include <utility>

#include "application/record/ClassChains.h"
#include "application/record/PropertyValues.h"
#include "platform/registry/Registry.h"
#include "platform/registry/RegistryReferences.h"
#include "platform/registry/Vocabulary.h"

namespace Program {
namespace {

using RAIDMonitoring::CFReference;
using RAIDMonitoring::RegistryHandle;

using IDs = std::vector<std::uint64_t>;
using NameBuffer = std::array<char, sizeof(io_name_t) + 1>;

constexpr int Attempts = 20;

// Leaves the attempt to read a registry that has changed meanwhile.
struct Disturbed {};

void require(bool succeeded) {
  if (!succeeded) throw Disturbed();
}

std::uint64_t idOf(io_registry_entry_t entry) {
  std::uint64_t id = 0;
  require(IORegistryEntryGetRegistryEntryID(entry, &id) == KERN_SUCCESS);
  return id;
}

IDs idsIn(io_iterator_t iterator) {
  IDs ids;
  while (const auto entry = RegistryHandle::adopt(IOIteratorNext(iterator)))
    ids.push_back(idOf(entry.get()));
  return ids;
}

// Every entry at every encounter: two walks that meet the same have met the same links.
IDs walkAll() {
  RegistryHandle iterator;
  require(IORegistryCreateIterator(RAIDMonitoring::registryPort, kServicePlane,
                                   kIORegistryIterateRecursively,
                                   iterator.receive()) == KERN_SUCCESS &&
          iterator);
  IDs ids = idsIn(iterator.get());
  require(IOIteratorIsValid(iterator.get()));
  return ids;
}

std::set<std::uint64_t> matchedServices() {
  CFDictionaryRef everything = CFDictionaryCreateMutable(
      kCFAllocatorDefault, 0, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks);
  require(everything != nullptr);
  RegistryHandle iterator;
  // Takes the dictionary over.
  require(IOServiceGetMatchingServices(RAIDMonitoring::registryPort, everything,
                                       iterator.receive()) == KERN_SUCCESS);
  const IDs ids = iterator ? idsIn(iterator.get()) : IDs();
  return {ids.begin(), ids.end()};
}

// A name that was cut off may end within a character.
std::string textOf(const NameBuffer& buffer) {
  std::string text = buffer.data();
  for (; !text.empty(); text.pop_back()) {
    const auto string = CFReference<CFStringRef>::adopt(
        CFStringCreateWithCString(kCFAllocatorDefault, text.c_str(), kCFStringEncodingUTF8));
    if (string) break;
  }
  return text;
}

template <class Read>
std::string read(Read readInto) {
  NameBuffer buffer{};  // zeros: a name of full length comes without an end
  require(readInto(buffer.data()) == KERN_SUCCESS);
  return textOf(buffer);
}

std::string locationOf(io_registry_entry_t entry) {
  NameBuffer buffer{};
  const kern_return_t result =
      IORegistryEntryGetLocationInPlane(entry, kServicePlane, buffer.data());
  require(result == KERN_SUCCESS || result == kIOReturnNotFound);
  return textOf(buffer);
}

nlohmann::json propertiesOf(io_registry_entry_t entry) {
  CFMutableDictionaryRef properties = nullptr;
  require(IORegistryEntryCreateCFProperties(entry, &properties, kCFAllocatorDefault, 0) ==
              KERN_SUCCESS &&
          properties != nullptr);
  const auto held = CFReference<CFMutableDictionaryRef>::adopt(properties);
  return valueOf(held.get());
}

// One attempt. Entries are kept in the order in which they are met first.
class RegistryReader {
 public:
  RegistryLook read() {
    const IDs before = walkAll();
    _matched = matchedServices();
    auto root = RegistryHandle::adopt(IORegistryGetRootEntry(RAIDMonitoring::registryPort));
    require(static_cast<bool>(root));
    readBeneath(std::move(root));
    orderParents();
    require(before == walkAll());
    return std::move(_look);
  }

 private:
  void readBeneath(RegistryHandle root) {
    placeOf(std::move(root));
    // Grows while it is gone through: every entry is entered once.
    for (std::size_t place = 0; place < _look.entries.size(); ++place)
      readChildren(place);
  }

  void readChildren(std::size_t place) {
    RegistryHandle iterator;
    require(IORegistryEntryGetChildIterator(_handles[place].get(), kServicePlane,
                                            iterator.receive()) == KERN_SUCCESS &&
            iterator);
    while (auto child = RegistryHandle::adopt(IOIteratorNext(iterator.get()))) {
      const std::size_t childPlace = placeOf(std::move(child));
      _look.entries[place].children.push_back(childPlace);
      _look.entries[childPlace].parents.push_back(place);
    }
  }

  std::size_t placeOf(RegistryHandle entry) {
    const std::uint64_t id = idOf(entry.get());
    const auto [place, isNew] = _places.try_emplace(id, _look.entries.size());
    if (isNew) {
      _look.entries.push_back(describe(id, entry.get()));
      _handles.push_back(std::move(entry));
    }
    return place->second;
  }

  RecordedEntry describe(std::uint64_t id, io_registry_entry_t entry) {
    RecordedEntry recorded;
    recorded.id = id;
    recorded.name = Program::read(
        [entry](char* name) { return IORegistryEntryGetNameInPlane(entry, kServicePlane, name); });
    recorded.location = locationOf(entry);
    recorded.className =
        Program::read([entry](char* name) { return IOObjectGetClass(entry, name); });
    recorded.inheritance = _classes.chainOf(entry, recorded.className);
    recorded.isService = recorded.derivesFrom("IOService");
    recorded.isMatched = _matched.count(id) != 0;
    recorded.properties = propertiesOf(entry);
    return recorded;
  }

  // Met in the order of the parents themselves; what counts is the order of attachment.
  void orderParents() {
    for (std::size_t place = 0; place < _look.entries.size(); ++place) {
      std::vector<std::size_t>& parents = _look.entries[place].parents;
      if (parents.size() < 2) continue;
      const std::vector<std::size_t> ordered = parentsOf(place);
      require(std::is_permutation(ordered.begin(), ordered.end(), parents.begin(), parents.end()));
      parents = ordered;
    }
  }

  std::vector<std::size_t> parentsOf(std::size_t place) {
    RegistryHandle iterator;
    require(IORegistryEntryGetParentIterator(_handles[place].get(), kServicePlane,
                                             iterator.receive()) == KERN_SUCCESS &&
            iterator);
    std::vector<std::size_t> parents;
    for (const std::uint64_t id : idsIn(iterator.get())) {
      const auto parent = _places.find(id);
      require(parent != _places.end());
      parents.push_back(parent->second);
    }
    return parents;
  }

  RegistryLook _look;
  ClassChains _classes;
  std::set<std::uint64_t> _matched;
  std::vector<RegistryHandle> _handles;  // of the entries, at their places
  std::unordered_map<std::uint64_t, std::size_t> _places;
};

}  // namespace

std::optional<RegistryLook> readRegistry() {
  for (int attempt = 0; attempt < Attempts; ++attempt) {
    try {
      return RegistryReader().read();
    } catch (const Disturbed&) {
      // It may hold still the next time.
    }
  }
  return std::nullopt;
}

}  // namespace Program
