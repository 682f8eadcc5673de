#pragma once

#include <string>
#include <vector>

#include "tests/support/EnclosureBuilder.h"
#include "tests/support/HeldDevice.h"
#include "tests/support/HostTree.h"
#include "tests/support/RegistryFixture.h"

namespace RAIDMonitoring {

class RAIDMember;

using MemoryRegistry::EntryID;
using MemoryRegistry::Failure;
using MemoryRegistry::Operation;
using MemoryRegistry::Repeat;
using TestSupport::debug;
using TestSupport::HeldDevice;
using TestSupport::LogLine;
using TestSupport::message;

// A computer and, at choice, one enclosure on it, of which nothing is plugged in yet.
class DeviceTest : public TestSupport::RegistryFixture {
 protected:
  static constexpr std::uint64_t UID = 0x00030712abcd0042;

  // References held on the entry right now.
  static std::uint64_t kept(EntryID entry) { return MemoryRegistry::references(entry); }

  static void fail(Operation operation, std::uint64_t n, Failure failure = Failure::Error) {
    MemoryRegistry::failCall(operation, n, Repeat::Once, failure);
  }

  // A member with its partition scheme and the rest left out, straight beneath `parent`.
  static EntryID addBareMember(EntryID parent, const std::string& uuid);
  // A set of such members beneath the first of them.
  static EntryID addBareSet(EntryID parent, const std::string& uuid,
                            const std::vector<std::string>& memberUUIDs,
                            const std::string& level = "Mirror");

  // The device's member with the UUID; fails the test when it has none.
  static RAIDMember* memberOf(const HeldDevice& device, const std::string& uuid);

  TestSupport::HostTree host;
  TestSupport::EnclosureBuilder two{host, TestSupport::twoBay(UID)};
  TestSupport::EnclosureBuilder five{host, TestSupport::fiveBay(UID)};
};

// What the bring-up of the device UID logs on its way.
LogLine lookingForPort();
LogLine waitingForPCIPath();
LogLine lookingForBridge();
LogLine bridgeFound(const std::string& path);
LogLine lookingForDisks();

// What findRAIDs keeps of the bridge at the first sight of a set: one reference for each parent
// under which the walk meets the set. At later sights, each of its members keeps one, too.
std::uint64_t keptAtFirstSight(std::uint64_t parents);
std::uint64_t keptAtLaterSight(std::uint64_t parents, std::uint64_t members);

// The operations that can be asked for "success with a null handle" as well as for an error.
struct FailureRow {
  Failure failure;
  const char* name;
};
inline constexpr FailureRow bothFailures[] = {{Failure::Error, "error"},
                                              {Failure::NullSuccess, "success with a null handle"}};

// The entries beneath one, as a recursive walk yields them: an entry at every encounter, what is
// beneath it at the first.
std::vector<EntryID> encountersBeneath(EntryID entry);

}  // namespace RAIDMonitoring
