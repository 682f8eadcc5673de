#include "application/report/StoryCollector.h"

#include <utility>

#include "application/session/Session.h"
#include "model/RAIDHost.h"
#include "model/RAIDVolume.h"
#include "platform/pelago/Application.h"

namespace Program {

using RAIDMonitoring::RAIDHost;
using RAIDMonitoring::RAIDVolume;

namespace {

Story::Moment now() { return Pelago::Application::instance()->now(); }

}  // namespace

void StoryCollector::tell(Story::Happening what, std::uint64_t device, VolumeSnapshot volume) {
  _story.events.push_back({now(), what, device, std::move(volume)});
}

void StoryCollector::deviceAppeared(std::uint64_t uid) {
  tell(Story::Happening::DeviceAppeared, uid);
}

void StoryCollector::deviceDisappeared(std::uint64_t uid) {
  tell(Story::Happening::DeviceDisappeared, uid);
}

void StoryCollector::logged(Pelago::Logger::Level level, const std::string& category,
                            const std::string& text) {
  if (!_asking) _story.log.push_back({now(), level, category, text});
}

void StoryCollector::RAIDAppeared(RAIDVolume* volume) {
  tellWithSlots(Story::Happening::VolumeAppeared, *volume);
}

void StoryCollector::RAIDUpdated(RAIDVolume* volume) {
  tellWithSlots(Story::Happening::VolumeUpdated, *volume);
}

void StoryCollector::tellWithSlots(Story::Happening what, const RAIDVolume& volume) {
  VolumeSnapshot snapshot = volumeWithSlots(volume);
  const std::uint64_t device = snapshot.device;
  _lastDevices[snapshot.uuid] = device;
  tell(what, device, std::move(snapshot));
}

void StoryCollector::RAIDDisappeared(RAIDVolume* volume) {
  const std::uint64_t device = _lastDevices[volume->uuid()];
  tell(Story::Happening::VolumeDisappeared, device, volumeWithoutSlots(*volume, device));
}

void StoryCollector::settled(const std::vector<RAIDHost*>& hosts) { settledAt(now(), hosts); }

void StoryCollector::settledAt(Story::Moment time, const std::vector<RAIDHost*>& hosts) {
  Story::Frame frame;
  frame.time = time;
  for (RAIDHost* host : hosts)
    frame.enclosures.push_back(pictureOf(*host, frame.enclosures.size()));
  const bool news = _story.frames.empty() || frame.enclosures != _story.frames.back().enclosures;
  if (news) _story.frames.push_back(std::move(frame));
}

// The picture of the frame before, when it still is right: frames then compare by address.
std::shared_ptr<const Picture> StoryCollector::pictureOf(RAIDHost& host, std::size_t place) {
  _asking = true;
  Picture picture = _taker.pictureOf(slotsOf(host));
  _asking = false;
  if (!_story.frames.empty() && place < _story.frames.back().enclosures.size()) {
    const auto& last = _story.frames.back().enclosures[place];
    if (*last == picture) return last;
  }
  return std::make_shared<const Picture>(std::move(picture));
}

Story StoryCollector::finished(const Session& session) {
  _story.end = session.lastDue();
  settledAt(_story.end, session.hosts());
  return std::move(_story);
}

}  // namespace Program
