#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "tests/faults/Life.h"

namespace PropertyTest {

// The plain model of who holds references on volumes: the host one on each that is filed, the
// monitor one for each announcement, the client that keeps one on each it was told of; and those
// that are kept for good: of a host that has ended, and one for every further encounter of a set
// that is on file.
class Ledger {
 public:
  // What is on file just before a refresh.
  void noteBeforeRefresh(FaultTest::Life& life);
  // After it; `encounters(uid, uuid)` says how often a search beneath the device meets such a set.
  template <class Count>
  void noteRefresh(const Count& encounters) {
    for (const auto& [volume, place] : _onFile) {
      const int met = encounters(place.uid, place.uuid);
      if (met > 1) _keptForGood[volume] += met - 1;
    }
  }
  void noteLeaving(FaultTest::Life& life, std::uint64_t uid);

  // What does not balance, one line each.
  std::vector<std::string> differences(FaultTest::Life& life) const;

 private:
  struct Place {
    std::uint64_t uid = 0;
    std::string uuid;
  };
  std::map<RAIDMonitoring::RAIDVolume*, Place> _onFile;
  std::map<RAIDMonitoring::RAIDVolume*, int> _keptForGood;
};

}  // namespace PropertyTest
