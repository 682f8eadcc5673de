#include "application/watch/Overview.h"

#include <set>
#include <string>

#include "application/session/Session.h"
#include "model/RAIDHost.h"
#include "model/RAIDVolume.h"

namespace Program {

Overview overviewOf(const Session& session) {
  Overview overview;
  overview.lastLook = session.lastDue();
  std::set<std::string> seen;
  for (const RAIDMonitoring::RAIDHost* host : session.hosts()) {
    overview.enclosures.push_back(deviceOf(*host));
    for (const RAIDMonitoring::RAIDVolume* volume : host->raidVolumes()) {
      if (seen.insert(volume->uuid()).second) ++overview.volumes[volume->state()];
    }
  }
  return overview;
}

}  // namespace Program
