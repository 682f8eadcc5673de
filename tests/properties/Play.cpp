#include "tests/properties/Play.h"

#include <ostream>

#include "model/RAIDHost.h"
#include "tests/faults/KeptModel.h"
#include "tests/faults/Restoration.h"

namespace PropertyTest {

using MemoryRegistry::EntryID;
using TestSupport::fiveBay;
using TestSupport::twoBay;

namespace {

constexpr std::uint64_t FirstUID = 0x0005000000000001;
constexpr Pelago::Milliseconds Period = 2000;
constexpr Pelago::Milliseconds Turn = 100;
// Reports fall between the turns, so that no look of a bring-up coincides with a refresh.
constexpr Pelago::Milliseconds Offset = 50;

const char* const States[] = {"Online", "Degraded", "Offline", "Failed", "Initializing", "?"};
const char* const MemberStates[] = {"Online", "Failed", "Offline", "Standby", "?"};
const char* const UUIDs[] = {"SET-A", "SET-B"};

std::uint64_t uidOf(int enclosure) { return FirstUID + static_cast<std::uint64_t>(enclosure); }

bool isThere(EntryID entry) { return entry != 0 && MemoryRegistry::contains(entry); }

bool hangsBeneath(EntryID entry, EntryID parent) {
  for (const EntryID child : MemoryRegistry::children(parent)) {
    if (child == entry) return true;
  }
  return false;
}

// As a recursive walk meets them: every encounter counts, the way on is taken at the first.
void countEncounters(EntryID beneath, std::set<EntryID>& known, std::map<EntryID, int>& met) {
  for (const EntryID child : MemoryRegistry::children(beneath)) {
    ++met[child];
    if (known.insert(child).second) countEncounters(child, known, met);
  }
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, const Change& change) {
  return stream << "{" << change.kind << ", " << change.enclosure << ", " << change.bay << ", "
                << change.choice << "}";
}

Play::Play(bool clientKeepsVolumes)
    : _life(clientKeepsVolumes), _clientKeepsVolumes(clientKeepsVolumes) {
  _enclosures.push_back(std::make_unique<Builder>(_host, twoBay(uidOf(0), 0)));
  _enclosures.push_back(std::make_unique<Builder>(_host, twoBay(uidOf(1), 1)));
  _enclosures.push_back(std::make_unique<Builder>(_host, fiveBay(uidOf(2), 2)));
  _life.passUntil(Offset);
}

void Play::make(const Change& change) {
  Builder& builder = enclosure(change);
  switch (change.kind) {
    case 0:
    case 1:
      _life.appear(uidOf(change.enclosure));  // again, when it is there
      ++_reported[change.enclosure];
      break;
    case 2:
      _ledger.noteLeaving(_life, uidOf(change.enclosure));
      _life.leave(uidOf(change.enclosure));
      break;
    case 3:
      builder.unplug();
      break;
    case 4:
    case 5:
      stage(builder);
      break;
    case 6:
      builder.complete();
      break;
    case 7:
      _life.pass(Turn);
      break;
    case 8:
    case 9:
      refresh();
      break;
    case 10:
    case 11:
      changeDisks(change);
      break;
    case 15:
      hang(change);
      break;
    default:
      changeSets(change);
  }
  forgetDeadSets();
}

void Play::stage(Builder& builder) {
  if (!isThere(builder.switchEntry())) {
    builder.addSwitch();
  } else if (!isThere(builder.upstreamBridge())) {
    builder.addPCIPath().addUpstreamBridge();
  } else if (!isThere(builder.bridge())) {
    builder.addBridges();
  }
}

void Play::changeDisks(const Change& change) {
  Builder& builder = enclosure(change);
  const int bay = 1 + change.bay % (change.enclosure == 2 ? 5 : 2);
  if (!isThere(builder.bridge())) return;
  if (isThere(builder.disk(bay))) {
    builder.pullDisk(bay);
  } else {
    builder.returnDisk(bay, MemberStates[change.choice % 5]);
  }
}

void Play::changeSets(const Change& change) {
  Builder& builder = enclosure(change);
  if (!isThere(builder.bridge()) || !isThere(builder.disk(1))) return;
  const std::string uuid = UUIDs[change.bay % 2];
  EntryID old = 0;
  for (const auto& [entry, name] : _sets) {
    if (name == uuid && isThere(entry) && isThere(builder.member(1)) &&
        hangsBeneath(entry, builder.member(1))) {
      old = entry;
    }
  }
  if (old != 0 && change.kind == 14) {
    MemoryRegistry::terminate(old);
  } else if (old != 0) {
    MemoryRegistry::setProperty(old, "AppleRAID-SetStatus", States[change.choice % 6]);
  } else {
    std::vector<int> bays{1};
    if (isThere(builder.disk(2))) bays.push_back(2);
    const char* level = change.choice % 2 == 0 ? "Mirror" : "Stripe";
    builder.addSet({uuid, bays, "Projects", level, States[change.choice % 6]});
    _sets[builder.set(uuid)] = uuid;
  }
}

// A set of one enclosure beneath a member in another, as spanning ones are; or beneath a further
// member of its own.
void Play::hang(const Change& change) {
  if (_sets.empty()) return;
  auto place = _sets.begin();
  std::advance(place, change.choice % static_cast<int>(_sets.size()));
  Builder& builder = enclosure(change);
  const int bay = 1 + change.bay % 2;
  if (!isThere(place->first) || !isThere(builder.bridge()) || !isThere(builder.disk(bay))) return;
  if (!isThere(builder.member(bay))) builder.addMember(bay, place->second);
  if (!hangsBeneath(place->first, builder.member(bay))) {
    try {
      MemoryRegistry::attach(place->first, builder.member(bay));
    } catch (const std::invalid_argument&) {  // it would hang beneath itself
    }
  }
}

void Play::forgetDeadSets() {
  for (auto place = _sets.begin(); place != _sets.end();) {
    place = isThere(place->first) ? std::next(place) : _sets.erase(place);
  }
}

void Play::refresh() {
  const Pelago::Milliseconds due = (_life.now() / Period + 1) * Period;
  _life.passUntil(due);
  _ledger.noteBeforeRefresh(_life);
  _life.passUntil(due + 1);
  _ledger.noteRefresh(
      [this](std::uint64_t uid, const std::string& uuid) { return encounters(uid, uuid); });
  _life.passUntil(due + Offset);
  ++_refreshes;
  check();
}

int Play::encounters(std::uint64_t uid, const std::string& uuid) const {
  const Builder& builder = *_enclosures[uid - FirstUID];
  if (!isThere(builder.bridge())) return 0;
  std::set<EntryID> known;
  std::map<EntryID, int> met;
  countEncounters(builder.bridge(), known, met);
  int count = 0;
  for (const auto& [entry, name] : _sets) {
    if (name == uuid) count += met[entry];
  }
  return count;
}

void Play::check() {
  for (const auto& lines : {FaultTest::unreported(_life.view()), _life.client().complaints()})
    _complaints.insert(_complaints.end(), lines.begin(), lines.end());
  if (!_clientKeepsVolumes) return;
  const auto lines = _ledger.differences(_life);
  _complaints.insert(_complaints.end(), lines.begin(), lines.end());
}

void Play::end() {
  _life.end();
  const auto accounts = MemoryRegistry::accounts();
  if (accounts.iterators + accounts.values != 0) _complaints.emplace_back("values are left");
  FaultTest::KeptReferences held;
  for (const auto& entry : accounts.entries)
    held[entry.id] += entry.references;
  if (held != _life.kept().references) {
    _complaints.emplace_back("the registry's accounts do not balance");
  }
}

}  // namespace PropertyTest
