#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace MemoryRegistry {

// Which entries a walk has met: for each slot of the handle table the epoch in which it was marked
// last. A new walk takes a new epoch, so nothing is cleared for it until the epochs have been used
// up.
template <class Epoch>
class EpochMarks {
 public:
  // No mark is set from here on.
  void begin(std::size_t slots) {
    reach(slots);
    if (++_epoch == 0) startOver();
  }

  // Makes room for as many slots as there are by now.
  void reach(std::size_t slots) {
    if (_epochs.size() < slots) _epochs.resize(slots);
  }

  // Whether the mark was not set yet. The slot must have been reached.
  bool set(std::uint32_t slot) {
    if (_epochs[slot] == _epoch) return false;
    _epochs[slot] = _epoch;
    return true;
  }

  void forget(std::uint32_t slot) noexcept {
    if (slot < _epochs.size()) _epochs[slot] = 0;
  }

 private:
  [[gnu::cold]] void startOver() {
    std::fill(_epochs.begin(), _epochs.end(), Epoch{0});
    _epoch = 1;
  }

  std::vector<Epoch> _epochs;
  Epoch _epoch = 0;
};

using DoneMarks = EpochMarks<std::uint32_t>;

}  // namespace MemoryRegistry
