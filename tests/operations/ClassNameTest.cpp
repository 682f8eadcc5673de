// Class names are remembered by their address, for speed. What counts is their text.

#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "platform/registry/Registry.h"
#include "platform/registry/memory/MemoryRegistry.h"

namespace {

// Of each length that is compared in another way, and such that they differ at one place alone.
const char* const names[] = {"A",
                             "B",
                             "IOMedia",
                             "IOMedib",
                             "IOMediaX",
                             "IOMediaY",
                             "AppleRAIDSet",
                             "AppleRBIDSet",
                             "AppleRAIDMemberXX",
                             "AppleRAIXMemberXX",
                             "AppleRAIDMemberXXAppleRA",
                             "AppleRAIDMembeYXAppleRA",
                             "AppleRAIDMemberXXAppleRAID",
                             "AppleRAIDMemberXXAppleRAIE",
                             ""};

}  // namespace

TEST(ClassNames, AreJudgedByTheirTextWhateverWasAtTheirAddressBefore) {
  MemoryRegistry::reset();
  char address[64];
  for (const std::string held : names) {
    if (held.empty()) continue;
    MemoryRegistry::EntryDescription description;
    description.className = held;
    const auto entry = MemoryRegistry::add(MemoryRegistry::root(), description);
    const unsigned int handle = MemoryRegistry::handle(entry);
    for (int round = 0; round < 2; ++round) {
      for (const std::string asked : names) {
        std::memcpy(address, asked.c_str(), asked.size() + 1);
        EXPECT_EQ(held == asked, IOObjectConformsTo(handle, address) != 0)
            << held << " is a " << asked;
      }
    }
    IOObjectRelease(handle);
  }
  MemoryRegistry::reset();
}
