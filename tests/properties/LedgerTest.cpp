#include <gmock/gmock.h>

#include "model/RAIDHost.h"
#include "tests/faults/Restoration.h"
#include "tests/properties/Ledger.h"
#include "tests/properties/Play.h"

// The judges are judged: whatever is wrong about what a client is told, or about a reference, they
// have to complain of.

namespace PropertyTest {
namespace {

using FaultTest::AddingClient;
using FaultTest::Life;
using RAIDMonitoring::RAIDVolume;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr std::uint64_t UID = 0x0005000000000001;

// A monitor with one announced volume, of which all is told.
class Judges : public testing::Test {
 protected:
  Judges() {
    const FaultTest::NoOutput silence;
    enclosure.complete().addDisks({1}).addSet({"SET-A", {1}});
    life.appear(UID);
    life.passUntil(2050);
  }

  RAIDVolume* volume() { return life.hosts().at(0)->raidVolumes().front(); }
  std::vector<std::string> unbalanced() { return ledger.differences(life); }

  Life life{true};
  TestSupport::HostTree host;
  TestSupport::EnclosureBuilder enclosure{host, TestSupport::twoBay(UID)};
  Ledger ledger;
  AddingClient client{false};  // another, which is told lies
};

TEST_F(Judges, HaveNothingAgainstWhatIsInOrder) {
  EXPECT_THAT(unbalanced(), IsEmpty());
  EXPECT_THAT(life.client().complaints(), IsEmpty());
  EXPECT_THAT(FaultTest::unreported(life.view()), IsEmpty());
}

TEST_F(Judges, NoticeAReferenceTooMany) {
  volume()->ref();
  EXPECT_THAT(unbalanced(), ElementsAre("'SET-A' has 4 references instead of 3"));
  volume()->deref();
}

TEST_F(Judges, NoticeAReferenceTooFew) {
  volume()->deref();
  EXPECT_THAT(unbalanced(), ElementsAre("'SET-A' has 2 references instead of 3"));
  volume()->ref();
}

TEST_F(Judges, NoticeAnAnnouncementWithoutAReference) {
  life.client().RAIDAppeared(volume());
  EXPECT_THAT(unbalanced(), ElementsAre("'SET-A' has 3 references instead of 4"));
  EXPECT_THAT(life.client().complaints(), ElementsAre("announced twice: 'SET-A'"));
}

TEST_F(Judges, NoticeAWithdrawalWithoutADeparture) {
  life.client().RAIDDisappeared(volume());
  EXPECT_THAT(unbalanced(), ElementsAre("'SET-A' has 3 references instead of 2"));
  EXPECT_THAT(FaultTest::unreported(life.view()), ElementsAre("there and not announced: SET-A"));
}

TEST_F(Judges, NoticeAnEncounterThatKeptNothing) {
  ledger.noteBeforeRefresh(life);
  ledger.noteRefresh([](std::uint64_t, const std::string&) { return 2; });
  EXPECT_THAT(unbalanced(), ElementsAre("'SET-A' has 3 references instead of 4"));
}

TEST_F(Judges, NoticeAHostWhoseVolumesAreGivenBack) {
  ledger.noteLeaving(life, UID);
  EXPECT_THAT(unbalanced(), ElementsAre("'SET-A' has 3 references instead of 4"));
}

TEST_F(Judges, NoticeWhatIsToldOfAVolumeThatWasNotAnnounced) {
  client.RAIDUpdated(volume());
  client.RAIDDisappeared(volume());
  EXPECT_THAT(client.complaints(),
              ElementsAre("updated unannounced: 'SET-A'", "withdrawn unannounced: 'SET-A'"));
}

TEST_F(Judges, NoticeWhatIsAnnouncedAndNotThere) {
  FaultTest::View view = life.view();
  view.announced.insert("SET-B");
  EXPECT_THAT(FaultTest::unreported(view), ElementsAre("announced and not there: SET-B"));
}

}  // namespace
}  // namespace PropertyTest
