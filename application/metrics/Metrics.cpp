#include "application/metrics/Metrics.h"

#include "application/Version.h"
#include "application/Words.h"
#include "application/metrics/MetricsText.h"

namespace Program {

using namespace RAIDMonitoring;
using Labels = MetricsText::Labels;
using Type = MetricsText::Type;

namespace {

constexpr RAIDVolumeState VolumeStates[] = {
    VolumeOnline,       VolumeDegraded,    VolumeFailed,      VolumeOffline,
    VolumeInitializing, VolumeTerminating, VolumeCrossDevice, VolumeUnknown};
constexpr MemberState MemberStates[] = {MemberOnline,  MemberFailed,   MemberOffline,
                                        MemberStandby, MemberNotFound, MemberUnknown};

Labels labelsOf(const DeviceSnapshot& device) {
  const bool known = device.status == 0;
  return {{"device", hexadecimal(device.uid)},
          {"vendor", known ? labelName(device.vendor) : ""},
          {"model", known ? labelName(device.model) : ""}};
}

Labels labelsOf(const VolumeSnapshot& volume) {
  return {{"device", hexadecimal(volume.device)},
          {"volume", labelIdentifier(volume.uuid)},
          {"name", labelName(volume.name)},
          {"level", wordFor(volume.level)}};
}

Labels labelsOf(const VolumeSnapshot& volume, const MemberSnapshot& member) {
  const int slot = member.slot.value_or(-1);
  Labels labels = labelsOf(volume);
  labels.emplace_back("member", labelIdentifier(member.uuid));
  labels.emplace_back("bay", slot < 1 ? "unknown" : std::to_string(slot));
  return labels;
}

// One sample per state there is, 1 for the one it is in.
void writeState(MetricsText& text, const Labels& labels, const char* state, bool isIn) {
  Labels all = labels;
  all.emplace_back("state", state);
  text.sample(all, isIn ? 1 : 0);
}

void writeLook(MetricsText& text, const Metrics& metrics) {
  text.family("raidmonitor_info", Type::Gauge,
              "The program's version, and what it looks at: live, archive or demonstration.");
  text.sample({{"version", RAIDMONITOR_VERSION}, {"source", metrics.source}}, 1);
  text.family("raidmonitor_last_look_timestamp_seconds", Type::Gauge,
              "When the program last looked at the registry, by this computer's clock.");
  text.seconds(metrics.time);
  text.family("raidmonitor_last_look_complete", Type::Gauge,
              "Whether nothing kept the last look from seeing everything.");
  text.sample(metrics.complete ? 1 : 0);
}

void writeEvents(MetricsText& text, const EventCounts& events) {
  text.family("raidmonitor_events_total", Type::Counter,
              "Events since the program's start, by kind.");
  text.sample({{"event", "device-appeared"}}, events.deviceAppeared);
  text.sample({{"event", "device-disappeared"}}, events.deviceDisappeared);
  text.sample({{"event", "raid-appeared"}}, events.raidAppeared);
  text.sample({{"event", "raid-updated"}}, events.raidUpdated);
  text.sample({{"event", "raid-disappeared"}}, events.raidDisappeared);
  text.family("raidmonitor_degraded_member_changes_total", Type::Counter,
              "Changes of disks' states, for better or worse, while a volume of their enclosure "
              "stayed degraded or offline, counted for each such volume. The library logs each as "
              "a new error.");
  text.sample(events.degradedMemberChanges);
}

void writeDevices(MetricsText& text, const Metrics& metrics) {
  text.family("raidmonitor_devices", Type::Gauge, "Enclosures that are connected.");
  text.sample(metrics.enclosures.size());
  text.family(
      "raidmonitor_device_state", Type::Gauge,
      "1 for the state that an enclosure is in: its disks can be seen, or it is coming up.");
  for (const EnclosureVolumes& enclosure : metrics.enclosures) {
    const bool up = !enclosure.device.bridge.empty();
    writeState(text, labelsOf(enclosure.device), "up", up);
    writeState(text, labelsOf(enclosure.device), "coming-up", !up);
  }
  text.family("raidmonitor_device_bays", Type::Gauge,
              "How many disks an enclosure takes; 0 when the model is not known.");
  for (const EnclosureVolumes& enclosure : metrics.enclosures)
    text.sample(labelsOf(enclosure.device), enclosure.device.bayCount);
}

template <class Action>
void forEachVolume(const Metrics& metrics, Action action) {
  for (const EnclosureVolumes& enclosure : metrics.enclosures) {
    for (const VolumeSnapshot& volume : enclosure.volumes)
      action(volume);
  }
}

void writeVolumes(MetricsText& text, const Metrics& metrics) {
  text.family("raidmonitor_volumes", Type::Gauge, "RAID volumes that are there.");
  text.sample(volumesIn(metrics.enclosures));
  text.family("raidmonitor_volume_state", Type::Gauge, "1 for the state that a volume is in.");
  forEachVolume(metrics, [&text](const VolumeSnapshot& volume) {
    for (const RAIDVolumeState state : VolumeStates)
      writeState(text, labelsOf(volume), wordFor(state), volume.state == state);
  });
  text.family("raidmonitor_member_state", Type::Gauge,
              "1 for the state that a volume's disk is in, with the bay that it sits in.");
  forEachVolume(metrics, [&text](const VolumeSnapshot& volume) {
    for (const MemberSnapshot& member : volume.members) {
      for (const MemberState state : MemberStates)
        writeState(text, labelsOf(volume, member), wordFor(state), member.state == state);
    }
  });
}

void writeExpectations(MetricsText& text, const Metrics& metrics) {
  if (metrics.expected.volumes) {
    text.family("raidmonitor_expected_volumes", Type::Gauge,
                "How many volumes have to be there at least.");
    text.sample(*metrics.expected.volumes);
  }
  if (metrics.expected.uuids.empty()) return;
  text.family("raidmonitor_expected_volume_present", Type::Gauge,
              "Whether a volume that has to be there is there.");
  for (const std::string& uuid : distinctUUIDs(metrics.expected)) {
    text.sample({{"volume", labelIdentifier(uuid)}}, isThere(uuid, metrics.enclosures) ? 1 : 0);
  }
}

}  // namespace

std::string metricsText(const Metrics& metrics) {
  MetricsText text;
  writeLook(text, metrics);
  writeEvents(text, metrics.events);
  writeDevices(text, metrics);
  writeVolumes(text, metrics);
  writeExpectations(text, metrics);
  return text.text();
}

}  // namespace Program
