#pragma once

#include <map>
#include <string>

namespace ProgramTest {

// What a Nagios core made of one run of a plugin: its own words, from its status file.
struct NagiosStatus {
  int state = -1;
  std::string output;
  std::string longOutput;
  std::string performanceData;
};

// Runs a real Nagios core, without network, until it has asked `raidmonitor check` once with each
// of these arguments, by the command definition that the project brings along. An entry per
// service.
std::map<std::string, NagiosStatus> askNagios(const std::map<std::string, std::string>& arguments);

}  // namespace ProgramTest
