#include <gmock/gmock.h>

#include "tests/monitor/MonitorFixture.h"

// The three notifications: what is told, what is held, and in which order.

namespace MonitorTest {
namespace {

using namespace RAIDMonitoring;
using testing::ElementsAre;
using testing::IsEmpty;

class RAIDMonitorNotificationsTest : public MonitorFixture {
 protected:
  static constexpr int Unfiled = 1;

  RAIDMonitorNotificationsTest()
      : host(scene.makeHost(1)),
        a(scene.makeVolume(host, "A")),
        sameUUID(scene.makeVolume(host, "A")) {
    log().clear();
  }

  // Whether the monitor has the UUID on record: only then it passes over a volume that arrives.
  bool onRecord(const std::string& uuid) {
    auto* probe = scene.makeHost(1000);
    auto* volume = scene.file(probe, uuid);
    probing = true;
    scene.appear(probe);
    const bool announced = volume->references() == Scene::Announced;
    if (!announced) volume->setState(VolumeUnknown);  // leaves without a word
    scene.disappear(probe);
    probe->removeRAIDVolume(volume);
    probing = false;
    return !announced;
  }

  ScriptedHost* host;
  RAIDVolume* a;
  RAIDVolume* sameUUID;
  bool probing = false;
};

TEST_F(RAIDMonitorNotificationsTest, AnApparitionIsRecordedReferencedAndTold) {
  scene.monitor().notifyRAIDApparition(a);
  EXPECT_EQ(Story{"appeared A online"}, scene.told());
  EXPECT_EQ(Unfiled + 1, a->references());
  EXPECT_TRUE(onRecord("A"));
  EXPECT_FALSE(onRecord("B"));
}

TEST_F(RAIDMonitorNotificationsTest, AnApparitionIsRecordedAndReferencedBeforeItIsTold) {
  bool recorded = false;
  int references = 0;
  scene.client().onEvent([&](const std::string&, RAIDVolume* volume) {
    if (probing) return;
    references = volume->references();
    recorded = onRecord("A");
  });
  scene.monitor().notifyRAIDApparition(a);
  EXPECT_TRUE(recorded);
  EXPECT_EQ(Unfiled + 1, references);
}

TEST_F(RAIDMonitorNotificationsTest, AnApparitionOverwritesARecordWhichKeepsItsReference) {
  scene.monitor().notifyRAIDApparition(a);
  scene.monitor().notifyRAIDApparition(sameUUID);
  EXPECT_EQ((Story{"appeared A online", "appeared A online"}), scene.told());
  EXPECT_EQ(Unfiled + 1, a->references());
  EXPECT_EQ(Unfiled + 1, sameUUID->references());
  // It is the second one that is on record now.
  scene.monitor().refresh();
  EXPECT_EQ(Story{"disappeared A"}, scene.told());
  EXPECT_EQ(Unfiled + 1, a->references());
  EXPECT_EQ(Unfiled, sameUUID->references());
  a->deref();
}

TEST_F(RAIDMonitorNotificationsTest, AnApparitionToldTwiceIsReferencedTwice) {
  scene.monitor().notifyRAIDApparition(a);
  scene.monitor().notifyRAIDApparition(a);
  EXPECT_EQ(Unfiled + 2, a->references());
  a->deref();
}

TEST_F(RAIDMonitorNotificationsTest, AnApparitionDoesNotAskForTheState) {
  a->setState(VolumeUnknown);
  scene.monitor().notifyRAIDApparition(a);
  EXPECT_EQ(Story{"appeared A unknown"}, scene.told());
  EXPECT_EQ(Unfiled + 1, a->references());
}

TEST_F(RAIDMonitorNotificationsTest, ADisparitionIsToldErasedAndReleased) {
  scene.monitor().notifyRAIDApparition(a);
  scene.told();
  scene.monitor().notifyRAIDDisparition(a);
  EXPECT_EQ(Story{"disappeared A"}, scene.told());
  EXPECT_EQ(Unfiled, a->references());
  EXPECT_FALSE(onRecord("A"));
}

TEST_F(RAIDMonitorNotificationsTest, ADisparitionIsToldWhileTheVolumeIsStillOnRecordAndHeld) {
  scene.monitor().notifyRAIDApparition(a);
  bool recorded = false;
  int references = 0;
  scene.client().onEvent([&](const std::string&, RAIDVolume* volume) {
    if (probing) return;
    references = volume->references();
    recorded = onRecord("A");
  });
  scene.monitor().notifyRAIDDisparition(a);
  EXPECT_TRUE(recorded);
  EXPECT_EQ(Unfiled + 1, references);
  scene.client().onEvent({});
  EXPECT_FALSE(onRecord("A"));
}

TEST_F(RAIDMonitorNotificationsTest, ADisparitionReleasesTheObjectPassedInAndNotTheRecordedOne) {
  scene.monitor().notifyRAIDApparition(a);
  sameUUID->ref();
  scene.monitor().notifyRAIDDisparition(sameUUID);
  EXPECT_EQ(Unfiled + 1, a->references());
  EXPECT_EQ(Unfiled, sameUUID->references());
  EXPECT_FALSE(onRecord("A"));
  a->deref();
}

TEST_F(RAIDMonitorNotificationsTest, ADisparitionOfAVolumeThatIsNotOnRecordReleasesItAllTheSame) {
  a->ref();
  scene.monitor().notifyRAIDDisparition(a);
  EXPECT_EQ(Story{"disappeared A"}, scene.told());
  EXPECT_EQ(Unfiled, a->references());
}

TEST_F(RAIDMonitorNotificationsTest, ADisparitionErasesItsOwnUUIDOnly) {
  auto* b = scene.makeVolume(host, "B");
  scene.monitor().notifyRAIDApparition(a);
  scene.monitor().notifyRAIDApparition(b);
  scene.monitor().notifyRAIDDisparition(a);
  EXPECT_TRUE(onRecord("B"));
  EXPECT_EQ(Unfiled + 1, b->references());
}

TEST_F(RAIDMonitorNotificationsTest, AVolumeKeptByNobodyElseEndsAfterItsDisparition) {
  auto* volume = new RAIDVolume(host, "C");
  bool ended = false;
  addMember(volume, "M")->onEnd([&](const StubMember&) { ended = true; });
  scene.monitor().notifyRAIDApparition(volume);
  scene.client().onEvent([&](const std::string&, RAIDVolume*) { EXPECT_FALSE(ended); });
  scene.monitor().notifyRAIDDisparition(volume);
  EXPECT_TRUE(ended);
}

TEST_F(RAIDMonitorNotificationsTest, AVolumeIsOffTheRecordWhenItEnds) {
  auto* volume = new RAIDVolume(host, "C");
  bool recorded = true;
  addMember(volume, "M")->onEnd([&](const StubMember&) { recorded = onRecord("C"); });
  scene.monitor().notifyRAIDApparition(volume);
  scene.monitor().notifyRAIDDisparition(volume);
  EXPECT_FALSE(recorded);
}

TEST_F(RAIDMonitorNotificationsTest, AClientThatKeepsAVolumeHasItAfterItsDisparition) {
  auto* volume = new RAIDVolume(host, "C");
  Pelago::Reference<RAIDVolume> kept;
  scene.client().onEvent([&](const std::string&, RAIDVolume* told) {
    if (!kept) kept = Pelago::Reference<RAIDVolume>(told);
  });
  scene.monitor().notifyRAIDApparition(volume);
  scene.monitor().notifyRAIDDisparition(volume);
  EXPECT_EQ("C", kept->uuid());
  EXPECT_EQ(1, kept->references());
}

TEST_F(RAIDMonitorNotificationsTest, AnUpdateIsToldAndNothingElse) {
  scene.monitor().notifyRAIDUpdate(a);
  EXPECT_EQ(Story{"updated A online"}, scene.told());
  EXPECT_EQ(Unfiled, a->references());
  EXPECT_FALSE(onRecord("A"));
}

TEST_F(RAIDMonitorNotificationsTest, NothingIsLogged) {
  scene.monitor().notifyRAIDApparition(a);
  scene.monitor().notifyRAIDUpdate(a);
  scene.monitor().notifyRAIDDisparition(a);
  EXPECT_THAT(log().lines(), IsEmpty());
}

}  // namespace
}  // namespace MonitorTest
