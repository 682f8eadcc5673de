#include "application/watch/WatchObserver.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "application/StandardOutput.h"
#include "application/session/Session.h"
#include "tests/application/support/StagedSource.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/EnclosureBuilder.h"

namespace ProgramTest {
namespace {

using Program::DeviceSnapshot;
using Program::VolumeSnapshot;
using TestSupport::EnclosureBuilder;
using TestSupport::HostTree;
using TestSupport::twoBay;

// Keeps what it is given to print.
class KeepingPrinter : public Program::WatchPrinter {
 public:
  struct VolumeLine {
    VolumeEvent event;
    VolumeSnapshot volume;
    DeviceSnapshot enclosure;
  };

  std::string deviceAppeared(Moment, std::uint64_t) override { return ""; }
  std::string deviceDisappeared(Moment, std::uint64_t) override { return ""; }
  std::string volumeChanged(Moment, VolumeEvent event, const VolumeSnapshot& volume,
                            const DeviceSnapshot& enclosure) override {
    volumes.push_back({event, volume, enclosure});
    return "";
  }
  std::string logged(Moment, const LogLine& line) override {
    log.push_back(line.text);
    return "";
  }
  std::string handles(Moment, const Program::HandleAccounts&) override { return ""; }

  std::vector<VolumeLine> volumes;
  std::vector<std::string> log;
};

class WatchObserverTest : public testing::Test {
 protected:
  WatchObserverTest() : first(host, twoBay(7, 0)), second(host, twoBay(8, 1)) {}
  ~WatchObserverTest() override { MemoryRegistry::reset(); }

  void watch(std::vector<StagedSource::Change> changes, Pelago::Milliseconds end,
             bool log = false) {
    StagedSource source(std::move(changes));
    Program::WatchObserver observer(printer, output, log);
    Program::Session session(source, observer, end);
    session.run();
  }

  HostTree host = (MemoryRegistry::reset(), HostTree());
  EnclosureBuilder first;
  EnclosureBuilder second;
  KeepingPrinter printer;
  TestSupport::CapturedOutput captured;  // what StandardOutput does to the process is undone
  Program::StandardOutput output;
};

using VolumeEvent = Program::WatchPrinter::VolumeEvent;

TEST_F(WatchObserverTest, AsksForSlotsWhenAVolumeAppearsAndNotWhenItDisappears) {
  first.complete().addDisks({1, 2}).addSet({"SET", {1, 2}});
  watch({{0, [] {}}, {500, [this] { first.unplug(); }}}, 500);
  ASSERT_EQ(2U, printer.volumes.size());
  EXPECT_EQ(1, printer.volumes[0].volume.members.at(0).slot);
  EXPECT_EQ(2, printer.volumes[0].volume.members.at(1).slot);
  EXPECT_EQ(VolumeEvent::Disappeared, printer.volumes[1].event);
  for (const auto& member : printer.volumes[1].volume.members)
    EXPECT_FALSE(member.slot);
}

// The set is announced through the first enclosure and updated through both; when the first one has
// left, whoever prints the set's end says what was said last, and touches no host.
TEST_F(WatchObserverTest, AVolumeDisappearsFromTheDeviceOfItsLastLine) {
  first.complete().addDisks({1, 2}).addSet({"SET", {1, 2}});
  second.complete().addDisks({1, 2}).addSet({"SET", {1, 2}});
  watch({{0, [] {}}, {2500, [this] { first.unplug(); }}}, 2500);
  ASSERT_GE(printer.volumes.size(), 3U);
  const auto& last = printer.volumes[printer.volumes.size() - 2];
  const auto& gone = printer.volumes.back();
  EXPECT_EQ(VolumeEvent::Updated, last.event);
  EXPECT_EQ(VolumeEvent::Disappeared, gone.event);
  EXPECT_EQ(last.volume.device, gone.volume.device);
  EXPECT_EQ(last.enclosure.uid, gone.enclosure.uid);
}

TEST_F(WatchObserverTest, DropsTheLogUnlessItIsWanted) {
  first.addSwitch();
  watch({{0, [] {}}}, 0);
  EXPECT_TRUE(printer.log.empty());
  watch({{0, [] {}}}, 0, true);
  EXPECT_FALSE(printer.log.empty());
}

}  // namespace
}  // namespace ProgramTest
