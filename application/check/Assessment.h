#pragma once

#include <string>
#include <vector>

#include "application/check/Expectations.h"
#include "application/check/Severity.h"
#include "application/session/Snapshot.h"

namespace Program {

// One thing that was looked at, and how it is. The texts are made of what a registry says, and not
// printable yet.
struct Finding {
  Severity severity = Severity::Ok;
  int weight = 0;        // among findings of one severity the heavier one is the worse one
  std::string headline;  // what is wrong and where, in short
  std::string details;
};

// How an enclosure's volumes, and their disks, are.
//
//   critical  a volume that has failed or is offline; a disk that has failed, is offline or missing
//   warning   a volume that is degraded, being made or being taken down; a disk of an online volume
//             that is on standby or says nothing known; an enclosure that is still coming up
//   unknown   a volume that can't be judged here, as it spans enclosures
Severity severityOf(const VolumeSnapshot& volume);
Severity severityOf(const MemberSnapshot& member, const VolumeSnapshot& volume);

// Everything worth a line, the worst first: every volume, every enclosure that is coming up, every
// expectation that is not met, every failure to look. Nothing to look at, and nothing said about
// it, is unknown: nobody shall take it for good news.
std::vector<Finding> assess(const std::vector<EnclosureVolumes>& enclosures,
                            const Expectations& expected,
                            const std::vector<std::string>& lookFailures);

}  // namespace Program
