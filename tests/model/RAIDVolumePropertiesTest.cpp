#include <gmock/gmock.h>

#include <tuple>

#include "tests/model/ModelFixture.h"

// What a volume reads from its set's entry.

namespace ModelTest {
namespace {

using namespace RAIDMonitoring;
using MemoryRegistry::removeProperty;
using MemoryRegistry::setProperty;
using testing::IsEmpty;

constexpr RAIDVolumeState States[] = {VolumeCrossDevice, VolumeUnknown,      VolumeFailed,
                                      VolumeTerminating, VolumeInitializing, VolumeOnline,
                                      VolumeDegraded,    VolumeOffline};

class RAIDVolumePropertiesTest : public ModelFixture {
 protected:
  RAIDVolumePropertiesTest() : set(addSet(bridge(), {"SET", {}})), volume(makeVolume("SET")) {
    expectLookUps(1);
    log().clear();
  }

  void read() { volume->readProperties(handleOn(set).get()); }

  EntryID set;
  VolumeReference volume;
};

TEST_F(RAIDVolumePropertiesTest, AreReadAtConstruction) {
  EXPECT_EQ("SET", volume->uuid());
  EXPECT_EQ("Projects", volume->name());
  EXPECT_EQ(LevelMirror, volume->level());
  EXPECT_EQ(VolumeOnline, volume->state());
  EXPECT_EQ(device(), volume->host());
}

TEST_F(RAIDVolumePropertiesTest, EachStatusTextIsReadAtConstructionAndAtRefresh) {
  const struct {
    const char* text;
    RAIDVolumeState state;
  } rows[] = {{"Failed", VolumeFailed},
              {"Terminating", VolumeTerminating},
              {"Initializing", VolumeInitializing},
              {"Online", VolumeOnline},
              {"Degraded", VolumeDegraded},
              {"Offline", VolumeOffline}};
  for (const auto& row : rows) {
    setProperty(set, "AppleRAID-SetStatus", row.text);
    EXPECT_EQ(row.state, makeVolume("SET")->state()) << row.text;
    volume->refresh();
    EXPECT_EQ(row.state, volume->state()) << row.text;
  }
  expectLookUps(2 * std::size(rows));
}

TEST_F(RAIDVolumePropertiesTest, EachLevelTextIsRead) {
  const struct {
    const char* text;
    RAIDLevel level;
  } rows[] = {{"Stripe", LevelStripe}, {"Mirror", LevelMirror}, {"Concat", LevelConcat}};
  for (const auto& row : rows) {
    setProperty(set, "AppleRAID-LevelName", row.text);
    read();
    EXPECT_EQ(row.level, volume->level()) << row.text;
  }
}

TEST_F(RAIDVolumePropertiesTest, AStatusThatMatchesNoneOfTheSixLeavesEveryState) {
  for (const RAIDVolumeState state : States) {
    volume->setState(state);
    for (const char* text : {"online", "Rebuilding", "Online ", ""}) {
      setProperty(set, "AppleRAID-SetStatus", text);
      read();
      EXPECT_EQ(state, volume->state()) << '"' << text << '"';
    }
    setProperty(set, "AppleRAID-SetStatus", MemoryRegistry::Array{"Online"});
    read();
    EXPECT_EQ(state, volume->state()) << "no text";
    removeProperty(set, "AppleRAID-SetStatus");
    read();
    EXPECT_EQ(state, volume->state()) << "missing";
  }
}

TEST_F(RAIDVolumePropertiesTest, ALevelThatMatchesNoneOfTheThreeLeavesTheLevel) {
  for (const char* text : {"mirror", "LVG", ""}) {
    setProperty(set, "AppleRAID-LevelName", text);
    read();
    EXPECT_EQ(LevelMirror, volume->level()) << '"' << text << '"';
  }
  setProperty(set, "AppleRAID-LevelName", 0);
  read();
  EXPECT_EQ(LevelMirror, volume->level());
  removeProperty(set, "AppleRAID-LevelName");
  read();
  EXPECT_EQ(LevelMirror, volume->level());
}

TEST_F(RAIDVolumePropertiesTest, BeforeAnyKnownTextAVolumeIsInitializingAndItsLevelUnknown) {
  setProperty(set, "AppleRAID-SetStatus", "Rebuilding");
  removeProperty(set, "AppleRAID-LevelName");
  const auto fresh = makeVolume("SET");
  EXPECT_EQ(VolumeInitializing, fresh->state());
  EXPECT_EQ(LevelUnknown, fresh->level());
  EXPECT_EQ("Projects", fresh->name());
  expectLookUps(1);
}

TEST_F(RAIDVolumePropertiesTest, TheNameFollowsTheEntryAndIsEmptyWhenThatHasNone) {
  setProperty(set, "AppleRAID-SetName", "B\xC3\xBCro");
  read();
  EXPECT_EQ("B\xC3\xBCro", volume->name());
  setProperty(set, "AppleRAID-SetName", 5);
  read();
  EXPECT_EQ("", volume->name());
  setProperty(set, "AppleRAID-SetName", "Again");
  read();
  removeProperty(set, "AppleRAID-SetName");
  read();
  EXPECT_EQ("", volume->name());
}

TEST_F(RAIDVolumePropertiesTest, TheUUIDIsReplacedByTheEntrysToo) {
  const EntryID other = addSet(bridge(), {"OTHER", {}, "Offline", "Concat", "Archive"});
  volume->readProperties(handleOn(other).get());
  EXPECT_EQ("OTHER", volume->uuid());
  EXPECT_EQ("Archive", volume->name());
  EXPECT_EQ(VolumeOffline, volume->state());
  EXPECT_EQ(LevelConcat, volume->level());
  removeProperty(other, "AppleRAID-SetUUID");
  volume->readProperties(handleOn(other).get());
  EXPECT_EQ("", volume->uuid());
}

TEST_F(RAIDVolumePropertiesTest, AreReadUUIDFirstThenNameStatusAndLevel) {
  using Properties = std::tuple<std::string, std::string, RAIDVolumeState, RAIDLevel>;
  const Properties rows[] = {{"", "Archive", VolumeOffline, LevelConcat},
                             {"OTHER", "", VolumeOffline, LevelConcat},
                             {"OTHER", "Archive", VolumeOnline, LevelConcat},
                             {"OTHER", "Archive", VolumeOffline, LevelMirror}};
  const EntryID other = addSet(bridge(), {"OTHER", {}, "Offline", "Concat", "Archive"});
  std::uint64_t failing = 0;
  for (const Properties& expected : rows) {
    read();
    MemoryRegistry::failCall(MemoryRegistry::Operation::IORegistryEntryCreateCFProperty, ++failing,
                             MemoryRegistry::Repeat::Once);
    volume->readProperties(handleOn(other).get());
    EXPECT_EQ(expected,
              Properties(volume->uuid(), volume->name(), volume->state(), volume->level()))
        << "read " << failing << " fails";
  }
}

TEST_F(RAIDVolumePropertiesTest, AreReadWithoutTakingOverTheEntryAndWithoutALine) {
  const auto held = handleOn(set);
  volume->readProperties(held.get());
  EXPECT_EQ(1U, MemoryRegistry::references(set));
  EXPECT_THAT(log().lines(), IsEmpty());
}

TEST_F(RAIDVolumePropertiesTest, TheStateCanBeSetFromOutside) {
  for (const RAIDVolumeState state : States) {
    volume->setState(state);
    EXPECT_EQ(state, volume->state());
  }
}

}  // namespace
}  // namespace ModelTest
