#include "application/metrics/SlotMemory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "application/session/Session.h"
#include "application/session/SessionObserver.h"
#include "tests/application/support/StagedSource.h"
#include "tests/support/EnclosureBuilder.h"

namespace ProgramTest {
namespace {

using namespace Program;
using testing::ElementsAre;
using TestSupport::EnclosureBuilder;
using TestSupport::HostTree;

// What is known of a mirror at the end of each moment, and what it took to know it.
class Watcher : public SessionObserver {
 public:
  void instantEnded(const Session& session) override {
    const std::uint64_t before = MemoryRegistry::calls();
    const auto enclosures = memory.volumesOf(session.hosts());
    calls.push_back(MemoryRegistry::calls() - before);
    std::string line;
    for (const MemberSnapshot& member : enclosures.at(0).volumes.at(0).members)
      line +=
          std::to_string(*member.slot) + (member.state == RAIDMonitoring::MemberOnline ? "+" : "-");
    bays.push_back(line);
  }

  SlotMemory memory;
  std::vector<std::string> bays;
  std::vector<std::uint64_t> calls;
};

TEST(SlotMemory, AsksAgainOnlyWhenSomethingHasChanged) {
  MemoryRegistry::reset();
  const HostTree host;
  EnclosureBuilder enclosure(host, TestSupport::twoBay(7));
  enclosure.complete().addDisks({1, 2}).addSet({"SET", {1, 2}});
  StagedSource source({{0, [] {}},
                       {3000, [&] { enclosure.setMemberStatus(2, "Failed"); }},
                       {5000, [&] { enclosure.pullDisk(2); }},
                       {7000, [&] { enclosure.returnDisk(2); }}});
  Watcher watcher;
  {
    Session session(source, watcher, 8000);
    session.run();
  }
  MemoryRegistry::reset();
  // At 0, 2, 3, 4, 5, 6, 7 and 8 seconds, and at the end.
  EXPECT_THAT(watcher.bays,
              ElementsAre("1+2+", "1+2+", "1+2+", "1+2-", "1+2-", "1+2-", "1+2-", "1+2+", "1+2+"));
  std::vector<bool> asked;
  for (const std::uint64_t calls : watcher.calls)
    asked.push_back(calls > 0);
  EXPECT_THAT(asked, ElementsAre(true, false, false, true, false, true, false, true, false));
}

}  // namespace
}  // namespace ProgramTest
