#pragma once

#include <functional>
#include <string>
#include <vector>

#include "model/RAIDVolumeState.h"
#include "monitor/RAIDMonitorClient.h"

namespace TestSupport {

// "online", "cross-device" and so on.
std::string nameOf(RAIDMonitoring::RAIDVolumeState state);

// Writes down what a monitor tells, in order: "appeared UUID STATE", "updated UUID STATE",
// "disappeared UUID".
class RecordingClient : public RAIDMonitoring::RAIDMonitorClient {
 public:
  using Hook = std::function<void(const std::string& line, RAIDMonitoring::RAIDVolume* volume)>;

  RecordingClient() = default;
  // A client that writes into a story shared with others, each line begun with its name.
  RecordingClient(std::string name, std::vector<std::string>& story);

  void RAIDAppeared(RAIDMonitoring::RAIDVolume* volume) override;
  void RAIDDisappeared(RAIDMonitoring::RAIDVolume* volume) override;
  void RAIDUpdated(RAIDMonitoring::RAIDVolume* volume) override;

  const std::vector<std::string>& story() const { return _story != nullptr ? *_story : _own; }

  // The lines up to now, which are forgotten.
  std::vector<std::string> take();

  // Called inside each callback, with the line just written.
  void onEvent(Hook hook) { _hook = std::move(hook); }

 private:
  void write(const std::string& line, RAIDMonitoring::RAIDVolume* volume);

  std::string _name;
  std::vector<std::string> _own;
  std::vector<std::string>* _story = nullptr;
  Hook _hook;
};

}  // namespace TestSupport
