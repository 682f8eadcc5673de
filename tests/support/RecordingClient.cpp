#include "tests/support/RecordingClient.h"

#include <utility>

#include "model/RAIDVolume.h"

namespace TestSupport {

using RAIDMonitoring::RAIDVolume;

std::string nameOf(RAIDMonitoring::RAIDVolumeState state) {
  static const char* const names[] = {"cross-device", "unknown", "failed",   "terminating",
                                      "initializing", "online",  "degraded", "offline"};
  const int index = static_cast<int>(state) + 2;
  return index >= 0 && index < 8 ? names[index] : "state " + std::to_string(index - 2);
}

RecordingClient::RecordingClient(std::string name, std::vector<std::string>& story)
    : _name(std::move(name)), _story(&story) {}

void RecordingClient::RAIDAppeared(RAIDVolume* volume) {
  write("appeared " + volume->uuid() + " " + nameOf(volume->state()), volume);
}

void RecordingClient::RAIDDisappeared(RAIDVolume* volume) {
  write("disappeared " + volume->uuid(), volume);
}

void RecordingClient::RAIDUpdated(RAIDVolume* volume) {
  write("updated " + volume->uuid() + " " + nameOf(volume->state()), volume);
}

std::vector<std::string> RecordingClient::take() {
  return std::exchange(_story != nullptr ? *_story : _own, {});
}

void RecordingClient::write(const std::string& line, RAIDVolume* volume) {
  const std::string written = _name.empty() ? line : _name + " " + line;
  (_story != nullptr ? *_story : _own).push_back(written);
  if (_hook) _hook(written, volume);
}

}  // namespace TestSupport
