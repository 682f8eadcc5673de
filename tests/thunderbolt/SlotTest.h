#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "tests/thunderbolt/DeviceTest.h"

namespace RAIDMonitoring {

inline constexpr const char* CannotFindMember =
    "ThunderboltDevice::locationOfMember - cannot find member registry entry";
inline constexpr const char* CannotIterateParents =
    "ThunderboltDevice::locationOfMember - Cannot get parent iterator for member entry";
inline constexpr const char* CannotIterateBridge =
    "ThunderboltDevice::entryFromUUID - couldn't create iterator on PCI Bridge";

// Asks devices for slots. What was kept before start() has its tests elsewhere.
class SlotTest : public DeviceTest {
 protected:
  void TearDown() override;

  // The slot of the member, with the question's own account: nothing is kept, and the state of the
  // device is untouched.
  int slotOf(const HeldDevice& device, const std::string& uuid, bool inferSlot = false);

  // Forgets what has been logged and kept so far.
  void start();
  // References kept on the entry since start().
  std::uint64_t keptSince(EntryID entry) const;
  // Since start(), each of the entries was kept once for each of its occurrences here, and no
  // others.
  void expectKeptSince(const std::vector<EntryID>& entries);

 private:
  MemoryRegistry::Accounts _before;
  std::map<EntryID, std::uint64_t> _since;
};

// The enclosures that are not located, by what they say of themselves.
struct UnlocatedRow {
  std::uint64_t vendor;
  std::uint64_t model;
};
inline constexpr UnlocatedRow unlocated[] = {
    {4, 1}, {4, 2}, {4, 6}, {2, 6}, {0, 2},           {3, 0},          {3, 3},
    {3, 4}, {3, 5}, {3, 7}, {3, 8}, {3, 0x100000002}, {0x100000003, 6}};

}  // namespace RAIDMonitoring
