#pragma once

#include <set>
#include <utility>

#include "model/RAIDVolume.h"
#include "platform/pelago/Reference.h"

namespace RAIDMonitoring {

// Volumes ordered by address, with one reference on each, which is given back when the volume is
// taken out or the holder ends.
class HeldVolumes {
 public:
  HeldVolumes() = default;
  // Takes over one reference on each.
  explicit HeldVolumes(std::set<RAIDVolume*> volumes) : _volumes(std::move(volumes)) {}
  HeldVolumes(const HeldVolumes&) = delete;
  HeldVolumes& operator=(const HeldVolumes&) = delete;
  ~HeldVolumes() {
    while (takeFirst()) {
    }
  }

  // Takes a reference each time. A volume that is held already is not held twice, and the second
  // reference stays taken for good: that is how sets which hang under several disks are counted.
  void add(RAIDVolume* volume) {
    Pelago::Reference<RAIDVolume> reference(volume);
    _volumes.insert(volume);
    static_cast<void>(reference.release());
  }

  // The first volume with its reference, or none.
  Pelago::Reference<RAIDVolume> takeFirst() {
    if (_volumes.empty()) return {};
    auto first = Pelago::Reference<RAIDVolume>::adopt(*_volumes.begin());
    _volumes.erase(_volumes.begin());
    return first;
  }

  // All of them; their references are the caller's.
  std::set<RAIDVolume*> release() { return std::exchange(_volumes, {}); }

 private:
  std::set<RAIDVolume*> _volumes;
};

}  // namespace RAIDMonitoring
