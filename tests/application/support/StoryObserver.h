#pragma once

#include <string>
#include <vector>

#include "application/Words.h"
#include "application/session/SessionObserver.h"
#include "model/RAIDVolume.h"
#include "platform/pelago/Application.h"

namespace ProgramTest {

// Writes down what a session tells, each with its time.
class StoryObserver : public Program::SessionObserver {
 public:
  explicit StoryObserver(bool withLog = false) : _withLog(withLog) {}

  void deviceAppeared(std::uint64_t uid) override { tell("device " + Program::hexadecimal(uid)); }
  void deviceDisappeared(std::uint64_t uid) override {
    tell("no device " + Program::hexadecimal(uid));
  }
  void logged(Pelago::Logger::Level, const std::string&, const std::string& text) override {
    if (_withLog) tell("log " + text);
  }
  void RAIDAppeared(RAIDMonitoring::RAIDVolume* volume) override { tell("new " + volume->uuid()); }
  void RAIDDisappeared(RAIDMonitoring::RAIDVolume* volume) override {
    tell("gone " + volume->uuid());
  }
  void RAIDUpdated(RAIDMonitoring::RAIDVolume* volume) override { tell("now " + volume->uuid()); }

  std::vector<std::string> story;

 private:
  void tell(const std::string& what) {
    story.push_back(std::to_string(Pelago::Application::instance()->now()) + " " + what);
  }

  bool _withLog;
};

}  // namespace ProgramTest
