#include "tests/faults/KeptModel.h"

#include <cstddef>
#include <string_view>

namespace FaultTest {
namespace {

using Kind = TraceEvent::Kind;

enum class Fate { GivenBack, Kept, Unsure };

class Model {
 public:
  explicit Model(const std::vector<TraceEvent>& events) : _events(events) {}

  Kept work() {
    for (std::size_t place = 0; place < _events.size(); ++place) {
      const TraceEvent& event = _events[place];
      if (event.result == 0) continue;
      // The child of a stripe set whose controllers are checked.
      if (event.kind == Kind::GetChild) keep(event);
      if (event.kind != Kind::EntryFromPath) continue;
      const Fate fate = ofLookedUp(place);
      if (fate == Fate::Kept) keep(event);
      if (fate == Fate::Unsure) ++_kept.unsure[event.id];
    }
    return _kept;
  }

 private:
  // A step that is past the end is the mark of an end.
  const TraceEvent& at(std::size_t place) const {
    static const TraceEvent none;
    return place < _events.size() ? _events[place] : none;
  }
  bool is(std::size_t place, Kind kind, std::string_view name) const {
    return at(place).kind == kind && at(place).name == name;
  }
  bool isLog(std::size_t place, std::string_view text) const {
    return at(place).kind == Kind::Log &&
           std::string_view(at(place).name).substr(0, text.size()) == text;
  }
  bool isException(std::size_t place) const {
    return at(place).kind == Kind::Mark && at(place).options != 0;
  }
  void keep(const TraceEvent& event) { ++_kept.references[event.id]; }

  Fate ofLookedUp(std::size_t place);
  Fate ofWalked(std::size_t place, std::size_t walk);
  Fate ofEmpty(std::size_t place, std::size_t walk) const;
  Fate ofDisksStage(std::size_t place) const;
  Fate ofMemberSearch(std::size_t walk) const;
  void keepBridgeDevice(std::size_t place, std::size_t walk);
  void keepWalkedOver(std::size_t walk);

  const std::vector<TraceEvent>& _events;
  Kept _kept;
};

// Of an entry that was looked up by its path.
Fate Model::ofLookedUp(std::size_t place) {
  const std::size_t next = place + 1;
  if (isLog(next, "The _pciBridgePath")) return ofDisksStage(next);
  const TraceEvent& walk = at(next);
  if (walk.kind != Kind::CreateIterator) return Fate::GivenBack;  // a bridge without memory
  if (walk.options != kIORegistryIterateRecursively) return Fate::GivenBack;  // a member's slot
  if (walk.result != 0) return ofWalked(place, next);
  if (isException(next + 1)) return Fate::Unsure;
  const bool givenBack = isLog(next + 1, "AppleRAIDMember::findRegistryEntry") ||
                         isLog(next + 1, "ThunderboltDevice:: Cannot create iterator");
  return givenBack ? Fate::GivenBack : Fate::Kept;
}

// Of the entry beneath which a walk was begun: what is asked first of the first entry tells who
// walks.
Fate Model::ofWalked(std::size_t place, std::size_t walk) {
  if (at(walk + 1).result == 0) return ofEmpty(place, walk);
  const std::size_t first = walk + 2;
  if (at(first).kind == Kind::GetPath) {
    keepWalkedOver(walk);
    return Fate::Kept;
  }
  if (is(first, Kind::ConformsTo, "IOPCIDevice")) {
    keepBridgeDevice(place, walk);
    return Fate::GivenBack;
  }
  if (is(first, Kind::ConformsTo, "AppleRAIDMember")) return ofMemberSearch(walk);
  return Fate::Kept;  // AppleRAIDSet: a volume's look-up, or the search for sets
}

// Of a walk that met nothing.
Fate Model::ofEmpty(std::size_t place, std::size_t walk) const {
  if (isLog(walk + 2, "AppleRAIDMember::AppleRAIDMember - Cannot find")) return Fate::GivenBack;
  // The port's device number is read directly before the walk beneath its path.
  if (place > 0 && at(place - 1).kind == Kind::Number) return Fate::GivenBack;
  return isException(walk + 2) ? Fate::Unsure : Fate::Kept;
}

// Of the bridge that the bring-up has found, from the log line of that on: kept where no disk was.
Fate Model::ofDisksStage(std::size_t place) const {
  const std::size_t walk = place + 2;
  if (at(walk).kind != Kind::CreateIterator) return Fate::GivenBack;  // no memory
  const unsigned iterator = at(walk).result;
  if (iterator == 0) return isException(walk + 1) ? Fate::Unsure : Fate::Kept;
  for (std::size_t step = walk + 1; step < _events.size() && !isException(step); ++step) {
    const TraceEvent& event = _events[step];
    if (event.kind == Kind::Next && event.argument == iterator && event.result == 0) {
      return isException(step + 1) ? Fate::Unsure : Fate::Kept;
    }
    if (event.result != 0 && is(step, Kind::ConformsTo, "IOMediaBSDClient")) break;
  }
  return Fate::GivenBack;
}

// The search at first sight gives the bridge back, the later ones keep it. Only these ask a member
// whether it is a set; and only they say nothing louder than a debug line when there is none.
Fate Model::ofMemberSearch(std::size_t walk) const {
  const unsigned iterator = at(walk).result;
  for (std::size_t step = walk + 1; step < _events.size() && !isException(step); ++step) {
    const TraceEvent& event = _events[step];
    if (event.result != 0 && is(step, Kind::ConformsTo, "AppleRAIDMember")) {
      return is(step + 1, Kind::ConformsTo, "AppleRAIDSet") ? Fate::Kept : Fate::GivenBack;
    }
    if (event.kind == Kind::Next && event.argument == iterator && event.result == 0) {
      if (isException(step + 1)) return Fate::Unsure;
      return isLog(step + 1, "AppleRAIDMember::refresh - Cannot find") ? Fate::Kept
                                                                       : Fate::GivenBack;
    }
  }
  return Fate::Unsure;
}

// The first PCI device of the walk, unless the low byte of the port's device number occurs in the
// last component of its path.
void Model::keepBridgeDevice(std::size_t place, std::size_t walk) {
  const char low = static_cast<char>(at(place - 1).result & 0xFFU);
  for (std::size_t step = walk + 1; at(step).kind == Kind::Next && at(step).result != 0;
       step += 2) {
    if (!is(step + 1, Kind::ConformsTo, "IOPCIDevice") || at(step + 1).result == 0) continue;
    const std::string_view path = at(step + 2).name;
    if (isException(step + 3)) return;
    const auto slash = path.rfind('/');
    const bool occurs =
        slash != std::string_view::npos && path.substr(slash).find(low) != std::string_view::npos;
    if (!occurs) keep(at(step));
    return;
  }
}

// The two-bay enclosure's search for disks keeps all that it walks over; the other's, which alone
// asks for bridges, nothing.
void Model::keepWalkedOver(std::size_t walk) {
  const unsigned iterator = at(walk).result;
  KeptReferences walked;
  for (std::size_t place = walk + 1; at(place).kind != Kind::Mark; ++place) {
    const TraceEvent& event = at(place);
    if (is(place, Kind::ConformsTo, "IOPCIDevice")) return;
    if (event.kind != Kind::Next || event.argument != iterator) continue;
    if (event.result == 0) break;
    ++walked[event.id];
  }
  for (const auto& [id, references] : walked)
    _kept.references[id] += references;
}

}  // namespace

Kept keptReferences(const std::vector<TraceEvent>& events) { return Model(events).work(); }

}  // namespace FaultTest
