#include "tests/operations/OperationFormula.h"

#include <algorithm>
#include <cstddef>
#include <set>

namespace TestSupport {

using MemoryRegistry::EntryID;
using MemoryRegistry::Operation;

namespace {

// Every entry that a walk beneath the bridge returns, in its order: a shared one each time that it
// is met, with what is beneath it the first time.
void walkBeneath(EntryID entry, std::set<EntryID>& entered, std::vector<EntryID>& met) {
  for (const EntryID child : MemoryRegistry::children(entry)) {
    met.push_back(child);
    if (entered.insert(child).second) walkBeneath(child, entered, met);
  }
}

class Formula {
 public:
  explicit Formula(const GeneratedEnclosure& enclosure) : _enclosure(enclosure) {
    std::set<EntryID> entered;
    walkBeneath(enclosure.bridge, entered, _met);
    for (const GeneratedSet& set : enclosure.sets) {
      _sets.insert(set.entry);
      _members.insert(set.members.begin(), set.members.end());
    }
  }

  OperationCounts count() {
    const std::uint64_t steps = _met.size();
    walk(steps, false);
    add(Operation::IOObjectConformsTo, steps);
    add(Operation::IOObjectRelease, steps);
    for (const GeneratedSet& set : _enclosure.sets) {
      for (auto times = std::count(_met.begin(), _met.end(), set.entry); times > 0; --times) {
        textProperty(1);
        readSet(set);
        add(Operation::IOObjectConformsTo, 1);
        if (set.shape.isStripe) checkControllers(set.members.size());
      }
    }
    return _counts;
  }

 private:
  void add(Operation operation, std::uint64_t times) {
    _counts[static_cast<std::size_t>(operation)] += times;
  }

  // The rank of an entry: the steps of a walk that ends at it.
  std::uint64_t rank(EntryID entry) const {
    return static_cast<std::uint64_t>(std::find(_met.begin(), _met.end(), entry) - _met.begin()) +
           1;
  }

  std::uint64_t among(const std::set<EntryID>& entries, std::uint64_t steps) const {
    return static_cast<std::uint64_t>(
        std::count_if(_met.begin(), _met.begin() + static_cast<std::ptrdiff_t>(steps),
                      [&](EntryID entry) { return entries.count(entry) != 0; }));
  }

  // A walk that was told of `steps` entries, and of the end unless it stopped before.
  void walk(std::uint64_t steps, bool stopped) {
    add(Operation::IORegistryEntryFromPath, 1);
    add(Operation::IORegistryEntryCreateIterator, 1);
    add(Operation::IOIteratorNext, steps + (stopped ? 0 : 1));
    add(Operation::IOObjectRelease, 1);  // the iterator; the bridge is kept
  }

  void textOf(std::uint64_t times) {
    add(Operation::CFGetTypeID, times);
    add(Operation::CFStringGetLength, times);
    add(Operation::CFStringGetBytes, times);
  }

  void textProperty(std::uint64_t times) {
    add(Operation::CFStringCreateWithCString, times);
    add(Operation::IORegistryEntryCreateCFProperty, times);
    textOf(times);
    add(Operation::CFRelease, 2 * times);
  }

  void readSet(const GeneratedSet& set) {
    const std::uint64_t steps = rank(set.entry);
    walk(steps, true);
    add(Operation::IOObjectConformsTo, steps);
    add(Operation::IOObjectRelease, steps);
    textProperty(among(_sets, steps));  // the UUID of each set on the way
    textProperty(4);
    add(Operation::IORegistryEntryCreateCFProperty, 1);
    add(Operation::CFGetTypeID, 1);
    add(Operation::CFArrayGetCount, 1);
    add(Operation::CFRelease, 1);
    add(Operation::CFArrayGetValueAtIndex, set.shape.members);
    textOf(set.shape.members);
    for (const EntryID member : set.members)
      readMember(rank(member), true);
    for (std::size_t absent = set.members.size(); absent < set.shape.members; ++absent)
      readMember(_met.size(), false);
  }

  // Sets are members by class, and are told from members proper by a second test.
  void readMember(std::uint64_t steps, bool present) {
    const std::uint64_t members = among(_members, steps);
    walk(steps, present);
    add(Operation::IOObjectConformsTo, steps + members + among(_sets, steps));
    add(Operation::IOObjectRelease, steps);
    textProperty(members);
    if (!present) return;
    textProperty(1);
    add(Operation::IORegistryEntryGetPath, 1);
  }

  void checkControllers(std::uint64_t devices) {
    add(Operation::IORegistryEntryGetChildEntry, 1);  // the child is kept
    add(Operation::CFStringCreateWithCString, 1);
    add(Operation::IORegistryEntryCreateCFProperty, 1);
    add(Operation::CFGetTypeID, 1 + 2 * devices);
    add(Operation::CFArrayGetCount, 1 + devices);
    add(Operation::CFArrayGetValueAtIndex, devices * (1 + BootPathComponents));
    add(Operation::CFDictionaryGetValue, devices);
    add(Operation::CFStringCreateArrayBySeparatingStrings, devices);
    add(Operation::CFStringHasPrefix, devices * BootPathComponents);
    add(Operation::CFRetain, 1);  // the first controller
    add(Operation::CFStringCompare, devices - 1);
    add(Operation::CFRelease, 3 + devices);
  }

  const GeneratedEnclosure& _enclosure;
  std::vector<EntryID> _met;
  std::set<EntryID> _sets;
  std::set<EntryID> _members;
  OperationCounts _counts{};
};

}  // namespace

OperationCounts countedOperations() {
  OperationCounts counts{};
  for (std::size_t number = 0; number < counts.size(); ++number)
    counts[number] = MemoryRegistry::calls(static_cast<Operation>(number));
  return counts;
}

OperationCounts operationsOfRefresh(const GeneratedEnclosure& enclosure) {
  return Formula(enclosure).count();
}

}  // namespace TestSupport
