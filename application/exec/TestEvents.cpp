#include "application/exec/TestEvents.h"

#include <fmt/format.h>

#include "application/StandardOutput.h"
#include "application/exec/EventEnvironment.h"
#include "application/exec/ProgramQueue.h"
#include "application/json/JsonEvent.h"

namespace Program {
namespace {

constexpr std::uint64_t Device = 1;

VolumeSnapshot testVolume(RAIDMonitoring::RAIDVolumeState state,
                          RAIDMonitoring::MemberState second) {
  VolumeSnapshot volume;
  volume.uuid = "00000000-0000-4000-8000-000000000000";
  volume.name = "Test";
  volume.level = RAIDMonitoring::LevelMirror;
  volume.state = state;
  volume.device = Device;
  volume.members = {{"00000000-0000-4000-8000-000000000001", RAIDMonitoring::MemberOnline,
                     "IOService:/test/1", 1},
                    {"00000000-0000-4000-8000-000000000002", second, "IOService:/test/2", 2}};
  return volume;
}

VolumeSnapshot withoutSlots(VolumeSnapshot volume) {
  for (MemberSnapshot& member : volume.members)
    member.slot.reset();
  return volume;
}

DeviceSnapshot testEnclosure() {
  DeviceSnapshot enclosure;
  enclosure.uid = Device;
  enclosure.vendor = "Test";
  enclosure.model = "Enclosure";
  enclosure.bayCount = 2;
  return enclosure;
}

}  // namespace

std::vector<WatchEvent> testEvents() {
  const DeviceSnapshot enclosure = testEnclosure();
  const auto sound = testVolume(RAIDMonitoring::VolumeOnline, RAIDMonitoring::MemberOnline);
  const auto degraded = testVolume(RAIDMonitoring::VolumeDegraded, RAIDMonitoring::MemberFailed);
  return {{0, DeviceEvent{DeviceEvent::Kind::Appeared, Device}},
          {0, VolumeEvent{VolumeEvent::Kind::Appeared, sound, enclosure}},
          {2000, VolumeEvent{VolumeEvent::Kind::Updated, degraded, enclosure}},
          {4000, DeviceEvent{DeviceEvent::Kind::Disappeared, Device}},
          {4000, VolumeEvent{VolumeEvent::Kind::Disappeared, withoutSlots(degraded), enclosure}},
          {4000, DroppedEvent{1}}};
}

bool sendTestEvents(const std::vector<std::string>& command, const ProgramLimits& limits,
                    StandardOutput& output) {
  // Until the queue is drained, its thread alone uses the two; this one waits.
  bool taken = true;
  const auto finished = [&](const ProgramCall& call, const Outcome& outcome) {
    taken = taken && outcome.taken();
    output.writeLine(fmt::format("{:<18} {}", call.event, reasonOf(outcome, limits)));
  };
  ProgramQueue queue(command, limits, finished);
  for (const WatchEvent& event : testEvents()) {
    ProgramCall call{nameOf(event), jsonOf(event) + "\n", environmentFor(event)};
    call.environment.emplace_back(TestMark);
    queue.add(std::move(call));
  }
  queue.drain([] { return false; });
  return taken;
}

}  // namespace Program
