#include "application/json/JsonEvent.h"

#include <gtest/gtest.h>

namespace ProgramTest {
namespace {

using Program::DeviceEvent;
using Program::jsonOf;
using Program::VolumeEvent;

Program::VolumeSnapshot volume() {
  Program::VolumeSnapshot snapshot;
  snapshot.uuid = "SET";
  snapshot.name = "Projects";
  snapshot.level = RAIDMonitoring::LevelMirror;
  snapshot.state = RAIDMonitoring::VolumeOnline;
  snapshot.device = 7;
  return snapshot;
}

TEST(JsonEvent, Devices) {
  EXPECT_EQ(R"({"time": 12, "event": "device-appeared", "device": {"uid": "0x0000000000000007"}})",
            jsonOf({12, DeviceEvent{DeviceEvent::Kind::Appeared, 7}}));
  EXPECT_EQ(
      R"({"time": 13, "event": "device-disappeared", "device": {"uid": "0x0000000000000007"}})",
      jsonOf({13, DeviceEvent{DeviceEvent::Kind::Disappeared, 7}}));
}

TEST(JsonEvent, Volumes) {
  const struct {
    VolumeEvent::Kind kind;
    const char* name;
  } rows[] = {{VolumeEvent::Kind::Appeared, "raid-appeared"},
              {VolumeEvent::Kind::Updated, "raid-updated"},
              {VolumeEvent::Kind::Disappeared, "raid-disappeared"}};
  for (const auto& row : rows) {
    EXPECT_EQ(std::string(R"({"time": 5, "event": ")") + row.name +
                  R"(", "volume": {"uuid": "SET", "name": "Projects", "level": "mirror", )" +
                  R"("state": "online", "device": "0x0000000000000007", "members": []}})",
              jsonOf({5, VolumeEvent{row.kind, volume(), {}}}));
  }
}

TEST(JsonEvent, LogLines) {
  EXPECT_EQ(R"({"time": 5, "event": "log", "level": "info", "category": "C", "text": "T"})",
            jsonOf({5, Program::LogEvent{Pelago::Logger::Level::Info, "C", "T"}}));
}

TEST(JsonEvent, Handles) {
  Program::HandleAccounts accounts;
  accounts.kept = {{0x1000001a7, 128}, {0x10000020b, 9}};
  accounts.objects = 1;
  accounts.values = 2;
  EXPECT_EQ(R"({"time": 14000, "event": "handles", "kept": [)"
            R"({"id": "0x00000001000001a7", "references": 128}, )"
            R"({"id": "0x000000010000020b", "references": 9}], "objects": 1, "values": 2})",
            jsonOf({14000, Program::HandlesEvent{accounts}}));
}

TEST(JsonEvent, DroppedEvents) {
  EXPECT_EQ(R"({"time": 5, "event": "dropped", "count": 3})",
            jsonOf({5, Program::DroppedEvent{3}}));
}

}  // namespace
}  // namespace ProgramTest
