#include <rapidcheck.h>

#include <algorithm>
#include <map>
#include <set>

#include "tests/registry/RegistryFixture.h"

// Random graphs under random changes, judged by a slow and obvious model.

namespace {

using MemoryRegistry::EntryID;

struct Model {
  std::map<EntryID, EntryIDs> children;
  std::map<EntryID, EntryIDs> parents;
  std::map<EntryID, int> childChanges;
  std::map<EntryID, int> parentChanges;
  EntryIDs entries;

  bool isAbove(EntryID above, EntryID entry) const {
    if (above == entry) return true;
    const auto& next = parents.at(entry);
    return std::any_of(next.begin(), next.end(), [&](EntryID p) { return isAbove(above, p); });
  }

  // A whole walk while nothing changes, written as it is told: every encounter is returned, only
  // the first is descended into.
  static void walk(const std::map<EntryID, EntryIDs>& links, EntryID at, std::set<EntryID>& met,
                   EntryIDs& returned) {
    for (const EntryID next : links.at(at)) {
      returned.push_back(next);
      if (met.insert(next).second) walk(links, next, met, returned);
    }
  }

  EntryIDs walk(EntryID start, bool up) const {
    std::set<EntryID> met;
    EntryIDs returned;
    walk(up ? parents : children, start, met, returned);
    return returned;
  }
};

void erase(EntryIDs& from, EntryID entry) {
  from.erase(std::remove(from.begin(), from.end(), entry), from.end());
}

// A live walk as the model sees it: levels that remember what they were opened with.
class ModelWalk {
 public:
  ModelWalk(const Model& model, EntryID start, bool up)
      : _links(up ? model.parents : model.children),
        _changes(up ? model.parentChanges : model.childChanges),
        _pending(start) {}

  EntryID next() {
    if (_pending != 0 && _valid && _links.count(_pending) != 0) {
      _levels.push_back({_pending, _links.at(_pending), changesOf(_pending), 0});
    }
    _pending = 0;
    while (!_levels.empty()) {
      Level& level = _levels.back();
      if (isBroken(level)) {
        _valid = false;
      } else if (level.place < level.links.size()) {
        const EntryID found = level.links[level.place++];
        if (_met.insert(found).second) _pending = found;
        return found;
      }
      if (_levels.size() == 1) break;
      _levels.pop_back();
    }
    return 0;
  }

  bool isValid() const {
    return _valid && std::none_of(_levels.begin(), _levels.end(),
                                  [this](const Level& level) { return isBroken(level); });
  }

 private:
  struct Level {
    EntryID owner;
    EntryIDs links;
    int changes;
    std::size_t place;
  };
  int changesOf(EntryID entry) const {
    const auto found = _changes.find(entry);
    return found == _changes.end() ? 0 : found->second;
  }
  // Also when a second change has brought back what was there before the first.
  bool isBroken(const Level& level) const {
    return _links.count(level.owner) == 0 || changesOf(level.owner) != level.changes;
  }

  const std::map<EntryID, EntryIDs>& _links;
  const std::map<EntryID, int>& _changes;
  EntryID _pending;
  bool _valid = true;
  std::set<EntryID> _met;
  std::vector<Level> _levels;
};

class RandomGraph : public RegistryFixture {
 protected:
  void build(int size) {
    MemoryRegistry::reset();
    model = Model();
    model.entries = {root};
    model.children[root] = {};
    model.parents[root] = {};
    for (int count = 1; count < size; ++count)
      addBelow(anyEntry());
    for (int count = 0; count < size / 2; ++count)
      link(anyEntry(), anyEntry());
  }

  EntryID anyEntry() const { return *rc::gen::elementOf(model.entries); }

  void addBelow(EntryID parent) {
    const EntryID added = add(parent, "N" + std::to_string(*rc::gen::inRange(0, 4)));
    model.entries.push_back(added);
    model.children[parent].push_back(added);
    ++model.childChanges[parent];
    model.children[added] = {};
    model.parents[added] = {parent};
  }

  void link(EntryID child, EntryID parent) {
    const auto& present = model.children[parent];
    const bool refused = child == root || model.isAbove(child, parent) ||
                         std::count(present.begin(), present.end(), child) != 0;
    if (refused) {
      RC_ASSERT_THROWS_AS(MemoryRegistry::attach(child, parent), std::invalid_argument);
      return;
    }
    MemoryRegistry::attach(child, parent);
    model.children[parent].push_back(child);
    ++model.childChanges[parent];
    model.parents[child].push_back(parent);
    ++model.parentChanges[child];
  }

  void change() {
    switch (*rc::gen::inRange(0, 4)) {
      case 0:
        return addBelow(anyEntry());
      case 1:
        return link(anyEntry(), anyEntry());
      case 2:
        return unlinkOne();
      default:
        return terminateOne();
    }
  }

  void unlinkOne() {
    const EntryID child = anyEntry();
    if (model.parents[child].empty()) return;
    const EntryID parent = *rc::gen::elementOf(model.parents[child]);
    MemoryRegistry::detach(child, parent);
    erase(model.children[parent], child);
    ++model.childChanges[parent];
    erase(model.parents[child], parent);
    ++model.parentChanges[child];
  }

  void terminateOne() {
    const EntryID entry = anyEntry();
    if (entry == root) return;
    MemoryRegistry::terminate(entry);
    for (const EntryID parent : model.parents[entry]) {
      erase(model.children[parent], entry);
      ++model.childChanges[parent];
    }
    forget(entry);
  }

  void forget(EntryID entry) {
    const EntryIDs children = model.children[entry];
    model.children.erase(entry);
    model.parents.erase(entry);
    erase(model.entries, entry);
    for (const EntryID child : children) {
      erase(model.parents[child], entry);
      ++model.parentChanges[child];
      if (model.parents[child].empty()) forget(child);
    }
  }

  Model model;
};

TEST_F(RandomGraph, WalksReturnWhatTheModelReturns) {
  EXPECT_TRUE(rc::check([this] {
    build(*rc::gen::inRange(1, 25));
    for (int changes = *rc::gen::inRange(0, 10); changes > 0; --changes)
      change();
    for (const EntryID entry : model.entries) {
      RC_ASSERT(rest(walkFrom(entry, Down)) == model.walk(entry, false));
      RC_ASSERT(rest(walkFrom(entry, Up)) == model.walk(entry, true));
      RC_ASSERT(rest(walkFrom(entry, 0)) == model.children[entry]);
      RC_ASSERT(rest(childrenOf(entry)) == model.children[entry]);
      RC_ASSERT(MemoryRegistry::parents(entry) == model.parents[entry]);
    }
    RC_ASSERT(MemoryRegistry::entryCount() == model.entries.size());
  }));
}

TEST_F(RandomGraph, WalksUnderChangeReturnWhatTheModelReturns) {
  EXPECT_TRUE(rc::check([this] {
    build(*rc::gen::inRange(2, 25));
    const EntryID start = anyEntry();
    const bool up = *rc::gen::arbitrary<bool>();
    const auto iterator = walkFrom(start, up ? Up : Down);
    ModelWalk expected(model, start, up);
    for (int steps = 0; steps < 60; ++steps) {
      if (*rc::gen::inRange(0, 6) == 0) change();
      const EntryID entry = next(iterator);
      RC_ASSERT(entry == expected.next());
      RC_ASSERT((IOIteratorIsValid(iterator.get()) != 0) == expected.isValid());
    }
    IOIteratorReset(iterator.get());
    const bool alive = model.children.count(start) != 0;
    RC_ASSERT(rest(iterator) == (alive ? model.walk(start, up) : EntryIDs()));
  }));
}

TEST_F(RandomGraph, APathLeadsBackToItsEntryWhenSiblingsHaveDifferentNames) {
  EXPECT_TRUE(rc::check([this] {
    build(*rc::gen::inRange(2, 40));
    for (const EntryID entry : model.entries) {
      // One name for each entry; and now and then a location.
      MemoryRegistry::setName(entry, "Entry" + std::to_string(entry) + "-");
      MemoryRegistry::setLocation(entry, *rc::gen::element<std::string>("", "0", "1C,4", "aB:00"));
    }
    for (const EntryID entry : model.entries) {
      const std::string path = MemoryRegistry::path(entry);
      if (path.empty()) continue;
      const auto found = Handle::adopt(IORegistryEntryFromPath(kIOMasterPortDefault, path.c_str()));
      RC_ASSERT(MemoryRegistry::entryOf(found.get()) == entry);
    }
  }));
}

TEST_F(RandomGraph, ReplacedContentIsWhatWasBuilt) {
  EXPECT_TRUE(rc::check([this] {
    build(*rc::gen::inRange(1, 25));
    MemoryRegistry::RegistryContent content;
    std::map<EntryID, std::size_t> places;
    for (const EntryID entry : model.entries)
      places.emplace(entry, places.size());
    const auto placesOf = [&places](const EntryIDs& entries) {
      std::vector<std::size_t> found;
      for (const EntryID entry : entries)
        found.push_back(places.at(entry));
      return found;
    };
    for (const EntryID entry : model.entries) {
      MemoryRegistry::RegistryContent::Entry described;
      described.id = entry;
      described.description.className = "IOService";
      described.children = placesOf(model.children[entry]);
      described.parents = placesOf(model.parents[entry]);
      content.entries.push_back(std::move(described));
    }
    const Model built = model;
    for (int changes = *rc::gen::inRange(0, 10); changes > 0; --changes)
      change();
    MemoryRegistry::replaceContent(content);
    RC_ASSERT(MemoryRegistry::entryCount() == built.entries.size());
    for (const EntryID entry : built.entries) {
      RC_ASSERT(MemoryRegistry::children(entry) == built.children.at(entry));
      RC_ASSERT(MemoryRegistry::parents(entry) == built.parents.at(entry));
      RC_ASSERT(rest(walkFrom(entry, Down)) == built.walk(entry, false));
    }
  }));
}

}  // namespace
