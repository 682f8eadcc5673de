#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace MemoryRegistry {

// Which entries a walk has met: for each slot of the handle table the epoch in which it was marked
// last. A new walk takes a new epoch, so nothing is ever cleared for it.
class DoneMarks {
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
  void startOver();

  std::vector<std::uint32_t> _epochs;
  std::uint32_t _epoch = 0;
};

}  // namespace MemoryRegistry
