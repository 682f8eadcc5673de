#include "tests/thunderbolt/SlotTest.h"

namespace RAIDMonitoring {

void SlotTest::TearDown() {
  for (const auto& entry : _before.entries)
    expectKept(entry.id, entry.references);
  for (const auto& [entry, references] : _since)
    expectKept(entry, references);
  DeviceTest::TearDown();
}

int SlotTest::slotOf(const HeldDevice& device, const std::string& uuid, bool inferSlot) {
  RAIDMember* member = memberOf(device, uuid);
  start();
  return device->locationOfMember(member, inferSlot);
}

void SlotTest::start() {
  log().clear();
  _before = MemoryRegistry::accounts();
  _since.clear();
}

std::uint64_t SlotTest::keptSince(EntryID entry) const {
  std::uint64_t before = 0;
  for (const auto& known : _before.entries) {
    if (known.id == entry) before = known.references;
  }
  return kept(entry) - before;
}

void SlotTest::expectKeptSince(const std::vector<EntryID>& entries) {
  for (const EntryID entry : entries)
    ++_since[entry];
  for (const auto& [entry, references] : _since) {
    EXPECT_EQ(references, keptSince(entry)) << MemoryRegistry::path(entry);
  }
}

}  // namespace RAIDMonitoring
