#pragma once

#include <vector>

#include "application/report/Story.h"
#include "application/session/SessionObserver.h"

namespace Program {

class Session;

// Writes down what a session tells, as `watch` would print it, and takes pictures of the enclosures
// in between. Asking for bays is logged by the library and keeps references in the registry; it
// changes nothing that any later answer depends on. What the pictures' own questions log is left
// out, so that the log is the run's.
class StoryCollector : public SessionObserver {
 public:
  void deviceAppeared(std::uint64_t uid) override;
  void deviceDisappeared(std::uint64_t uid) override;
  void logged(Pelago::Logger::Level level, const std::string& category,
              const std::string& text) override;

  void RAIDAppeared(RAIDMonitoring::RAIDVolume* volume) override;
  void RAIDUpdated(RAIDMonitoring::RAIDVolume* volume) override;
  void RAIDDisappeared(RAIDMonitoring::RAIDVolume* volume) override;

  // Everything that was due has happened: what is so now becomes a frame, if it is news.
  void settled(const std::vector<RAIDMonitoring::RAIDHost*>& hosts);

  // The story of a session that has ended. Last.
  Story finished(const Session& session);

 private:
  void tell(Story::Happening what, std::uint64_t device, VolumeSnapshot volume = {});
  void tellWithSlots(Story::Happening what, const RAIDMonitoring::RAIDVolume& volume);
  void settledAt(Story::Moment time, const std::vector<RAIDMonitoring::RAIDHost*>& hosts);
  std::shared_ptr<const Picture> pictureOf(RAIDMonitoring::RAIDHost& host, std::size_t place);

  Story _story;
  PictureTaker _taker;
  bool _asking = false;
  std::map<std::string, std::uint64_t> _lastDevices;  // by UUID: a volume may outlive its host
};

}  // namespace Program
