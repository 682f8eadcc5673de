#include "model/RAIDHost.h"

#include "model/RAIDVolume.h"

namespace RAIDMonitoring {

RAIDHost::RAIDHost() = default;

// The filed volumes are left as they are, on purpose: their references are never given back.
RAIDHost::~RAIDHost() = default;

int RAIDHost::locationOfMember(RAIDMember* /*member*/, bool /*inferSlot*/) { return -1; }

int RAIDHost::locationOfNotMember(int /*slot*/) { return -1; }

void RAIDHost::addRAIDVolume(RAIDVolume* volume) {
  if (_volumes.emplace(volume->uuid(), volume).second) volume->ref();
}

// The reference is given back even when nothing was filed, or another volume was: callers rely on
// it, unlike those of RAIDVolume::removeRAIDMember.
void RAIDHost::removeRAIDVolume(RAIDVolume* volume) {
  _volumes.erase(volume->uuid());
  volume->deref();
}

std::vector<RAIDVolume*> RAIDHost::raidVolumes() const {
  std::vector<RAIDVolume*> volumes;
  volumes.reserve(_volumes.size());
  for (const auto& [uuid, volume] : _volumes)
    volumes.push_back(volume);
  return volumes;
}

}  // namespace RAIDMonitoring
