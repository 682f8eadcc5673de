#include "application/check/Assessment.h"

#include <fmt/format.h>

#include <algorithm>

#include "application/Words.h"
#include "application/check/FindingText.h"
#include "application/text/TextModel.h"

namespace Program {

using namespace RAIDMonitoring;

namespace {

// Among volumes of one severity.
int weightOf(RAIDVolumeState state) {
  switch (state) {
    case VolumeFailed:
      return 5;
    case VolumeOffline:
      return 4;
    case VolumeDegraded:
      return 2;
    default:
      return 1;
  }
}

constexpr int WeightOfAbsence = 3;  // between a volume that is of no use and one that is still

Finding findingOf(const VolumeSnapshot& volume, const DeviceSnapshot& device) {
  Finding finding;
  finding.severity = severityOf(volume);
  finding.weight = weightOf(volume.state);
  for (const MemberSnapshot& member : volume.members)
    finding.severity = std::max(finding.severity, severityOf(member, volume));
  finding.headline = headlineOf(volume, device);
  finding.details = detailsOf(volume, device);
  return finding;
}

void assessEnclosure(const EnclosureVolumes& enclosure, std::vector<Finding>& findings) {
  for (const VolumeSnapshot& volume : enclosure.volumes)
    findings.push_back(findingOf(volume, enclosure.device));
  if (enclosure.device.bridge.empty()) {
    const std::string text =
        enclosureName(enclosure.device) + " " + hexadecimal(enclosure.device.uid);
    findings.push_back({Severity::Warning, 0, text + " is coming up",
                        text + " is coming up: its disks cannot be seen yet"});
  }
}

void assessExpectations(const std::vector<EnclosureVolumes>& enclosures,
                        const Expectations& expected, std::vector<Finding>& findings) {
  for (const std::string& uuid : expected.uuids) {
    const std::string text = "volume " + uuid + " is missing";
    if (!isThere(uuid, enclosures)) {
      findings.push_back({Severity::Critical, WeightOfAbsence, text, text});
    }
  }
  const std::size_t count = volumesIn(enclosures);
  if (expected.volumes && count < *expected.volumes) {
    const std::string text =
        fmt::format("{} where {} expected", countOf(count, "volume"),
                    *expected.volumes == 1 ? "1 is" : fmt::format("{} are", *expected.volumes));
    findings.push_back({Severity::Critical, WeightOfAbsence, text, text});
  }
}

}  // namespace

Severity severityOf(const VolumeSnapshot& volume) {
  switch (volume.state) {
    case VolumeOnline:
      return Severity::Ok;
    case VolumeDegraded:
    case VolumeInitializing:
    case VolumeTerminating:
      return Severity::Warning;
    case VolumeFailed:
    case VolumeOffline:
      return Severity::Critical;
    case VolumeCrossDevice:
    case VolumeUnknown:
      break;
  }
  return Severity::Unknown;
}

Severity severityOf(const MemberSnapshot& member, const VolumeSnapshot& volume) {
  switch (member.state) {
    case MemberFailed:
    case MemberNotFound:
    case MemberOffline:
      return Severity::Critical;
    case MemberOnline:
      return Severity::Ok;
    case MemberStandby:
    case MemberUnknown:
      break;
  }
  return volume.state == VolumeOnline ? Severity::Warning : Severity::Ok;
}

std::vector<Finding> assess(const std::vector<EnclosureVolumes>& enclosures,
                            const Expectations& expected,
                            const std::vector<std::string>& lookFailures) {
  std::vector<Finding> findings;
  for (const EnclosureVolumes& enclosure : enclosures)
    assessEnclosure(enclosure, findings);
  assessExpectations(enclosures, expected, findings);
  for (const std::string& failure : lookFailures)
    findings.push_back({Severity::Unknown, 1, failure, failure});
  const bool comingUp = std::any_of(
      enclosures.begin(), enclosures.end(),
      [](const EnclosureVolumes& enclosure) { return enclosure.device.bridge.empty(); });
  if (volumesIn(enclosures) == 0 && !comingUp && expected.uuids.empty() && !expected.volumes) {
    findings.push_back({Severity::Unknown, 0, "no RAID volume is connected",
                        "no RAID volume is connected; if that is right, say --expect-volumes 0"});
  }
  std::stable_sort(findings.begin(), findings.end(), [](const Finding& a, const Finding& b) {
    return a.severity != b.severity ? a.severity > b.severity : a.weight > b.weight;
  });
  return findings;
}

}  // namespace Program
