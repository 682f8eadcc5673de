#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "tests/faults/Life.h"
#include "tests/properties/Ledger.h"
#include "tests/support/EnclosureBuilder.h"
#include "tests/support/HostTree.h"

namespace PropertyTest {

// One change, made of numbers so that it can be drawn at random; what makes no sense at the moment
// is passed over.
struct Change {
  int kind = 0;  // 0 to Kinds - 1
  int enclosure = 0;
  int bay = 0;
  int choice = 0;
};
constexpr int Kinds = 16;
std::ostream& operator<<(std::ostream& stream, const Change& change);

// Three enclosures and a monitor that watches them, changed at random. After every refresh all that
// has to hold is looked at.
class Play {
 public:
  explicit Play(bool clientKeepsVolumes);

  void make(const Change& change);
  // Up to the next refresh, and over it.
  void refresh();
  // Ends the monitor, and settles the registry's accounts.
  void end();

  const std::vector<std::string>& complaints() const { return _complaints; }
  std::size_t refreshes() const { return _refreshes; }

 private:
  using EntryID = MemoryRegistry::EntryID;
  using Builder = TestSupport::EnclosureBuilder;

  Builder& enclosure(const Change& change) { return *_enclosures[std::size_t(change.enclosure)]; }
  void stage(Builder& builder);
  void changeDisks(const Change& change);
  void changeSets(const Change& change);
  void hang(const Change& change);
  void forgetDeadSets();
  int encounters(std::uint64_t uid, const std::string& uuid) const;
  void check();

  FaultTest::Life _life;
  TestSupport::HostTree _host;
  std::vector<std::unique_ptr<Builder>> _enclosures;
  std::map<EntryID, std::string> _sets;  // their UUIDs
  std::map<int, int> _reported;          // how often each enclosure is reported
  Ledger _ledger;
  bool _clientKeepsVolumes;
  std::size_t _refreshes = 0;
  std::vector<std::string> _complaints;
};

}  // namespace PropertyTest
