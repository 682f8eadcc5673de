#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/pelago/Logger.h"
#include "tests/thunderbolt/DeviceTest.h"

namespace RAIDMonitoring {
namespace {

using testing::ElementsAre;

// What the bring-up holds while it logs a line.
struct Moment {
  LogLine line;
  std::uint64_t switchEntry;
  std::uint64_t port;
  std::uint64_t pathEntry;
  std::uint64_t bridge;
  std::size_t iterators;
};

bool operator==(const Moment& a, const Moment& b) {
  return a.line == b.line && a.switchEntry == b.switchEntry && a.port == b.port &&
         a.pathEntry == b.pathEntry && a.bridge == b.bridge && a.iterators == b.iterators;
}

std::ostream& operator<<(std::ostream& stream, const Moment& moment) {
  return stream << moment.line << ": switch " << moment.switchEntry << ", port " << moment.port
                << ", path " << moment.pathEntry << ", bridge " << moment.bridge << ", iterators "
                << moment.iterators;
}

// A stage gives back what it has before the next one begins.
class StageHandOver : public DeviceTest {
 protected:
  void SetUp() override {
    two.complete().addDisks({1, 2});
    Pelago::Logger::setSink(
        [this](Pelago::Logger::Level level, const std::string& category, const std::string& text) {
          moments.push_back({{level, category, text},
                             kept(two.switchEntry()),
                             kept(two.upstreamPort()),
                             kept(two.upstreamBridge()),
                             kept(two.bridge()),
                             MemoryRegistry::accounts().iterators});
        });
  }
  // Before the members that the sink writes to are gone.
  void TearDown() override {
    Pelago::Logger::setSink({});
    DeviceTest::TearDown();
  }

  std::vector<Moment> moments;
};

TEST_F(StageHandOver, EachStageHasItsOwnEntryAndNoIteratorOfTheOneBefore) {
  fail(Operation::IORegistryEntryFromPath, 3);  // the search for sets, which says so
  const HeldDevice device(UID);
  // The bridge's number is no character of its name: that keeps one reference from then on.
  EXPECT_THAT(
      moments,
      ElementsAre(
          Moment{lookingForPort(), 1, 0, 0, 0, 0}, Moment{lookingForBridge(), 0, 1, 0, 0, 0},
          Moment{bridgeFound(two.bridgePath()), 0, 1, 0, 2, 0},
          Moment{lookingForDisks(), 0, 0, 0, 2, 0},
          Moment{message("ThunderboltDevice::findRAIDs - Cannot find back the PCI Bridge object"),
                 0, 0, 0, 1, 0}));
  expectKept(two.bridge(), 1);
}

TEST_F(StageHandOver, OfALaterLookIsTheSame) {
  MemoryRegistry::removeProperty(two.upstreamPort(), "PCI Path");
  const HeldDevice device(UID);
  pump().turn();
  two.addPCIPath();
  moments.clear();
  pump().turn();
  EXPECT_THAT(moments, ElementsAre(Moment{lookingForPort(), 1, 0, 0, 0, 0},
                                   Moment{lookingForBridge(), 0, 1, 0, 0, 0},
                                   Moment{bridgeFound(two.bridgePath()), 0, 1, 0, 2, 0},
                                   Moment{lookingForDisks(), 0, 0, 0, 2, 0}));
  expectKept(two.bridge(), 2);  // the name again; the search for sets
}

TEST_F(StageHandOver, TheBridgesPathIsKnownWhenItIsLogged) {
  two.unplug();
  two.addSwitch();
  const HeldDevice device(UID);
  two.complete().addDisk(1);
  std::string known;
  Pelago::Logger::setSink(
      [&](Pelago::Logger::Level, const std::string& category, const std::string&) {
        if (category == "Thunderbolt device") known = device->pciBridgePath();
      });
  pump().turn();
  Pelago::Logger::setSink({});
  EXPECT_EQ(two.bridgePath(), known);
  expectKept(two.bridge(), 2);
}

}  // namespace
}  // namespace RAIDMonitoring
