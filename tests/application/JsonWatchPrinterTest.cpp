#include "application/json/JsonWatchPrinter.h"

#include <gtest/gtest.h>

namespace ProgramTest {
namespace {

using Program::JsonWatchPrinter;
using VolumeEvent = Program::WatchPrinter::VolumeEvent;

Program::VolumeSnapshot volume() {
  Program::VolumeSnapshot snapshot;
  snapshot.uuid = "SET";
  snapshot.name = "Projects";
  snapshot.level = RAIDMonitoring::LevelMirror;
  snapshot.state = RAIDMonitoring::VolumeOnline;
  snapshot.device = 7;
  return snapshot;
}

TEST(JsonWatchPrinter, Devices) {
  JsonWatchPrinter printer;
  EXPECT_EQ(R"({"time": 12, "event": "device-appeared", "device": {"uid": "0x0000000000000007"}})",
            printer.deviceAppeared(12, 7));
  EXPECT_EQ(
      R"({"time": 13, "event": "device-disappeared", "device": {"uid": "0x0000000000000007"}})",
      printer.deviceDisappeared(13, 7));
}

TEST(JsonWatchPrinter, Volumes) {
  const struct {
    VolumeEvent event;
    const char* name;
  } rows[] = {{VolumeEvent::Appeared, "raid-appeared"},
              {VolumeEvent::Updated, "raid-updated"},
              {VolumeEvent::Disappeared, "raid-disappeared"}};
  JsonWatchPrinter printer;
  for (const auto& row : rows) {
    EXPECT_EQ(std::string(R"({"time": 5, "event": ")") + row.name +
                  R"(", "volume": {"uuid": "SET", "name": "Projects", "level": "mirror", )" +
                  R"("state": "online", "device": "0x0000000000000007", "members": []}})",
              printer.volumeChanged(5, row.event, volume(), {}));
  }
}

TEST(JsonWatchPrinter, LogLines) {
  JsonWatchPrinter printer;
  EXPECT_EQ(R"({"time": 5, "event": "log", "level": "info", "category": "C", "text": "T"})",
            printer.logged(5, {Pelago::Logger::Level::Info, "C", "T"}));
}

TEST(JsonWatchPrinter, Handles) {
  Program::HandleAccounts accounts;
  accounts.kept = {{0x1000001a7, 128}, {0x10000020b, 9}};
  accounts.objects = 1;
  accounts.values = 2;
  JsonWatchPrinter printer;
  EXPECT_EQ(R"({"time": 14000, "event": "handles", "kept": [)"
            R"({"id": "0x00000001000001a7", "references": 128}, )"
            R"({"id": "0x000000010000020b", "references": 9}], "objects": 1, "values": 2})",
            printer.handles(14000, accounts));
}

}  // namespace
}  // namespace ProgramTest
