#pragma once

#include <string>
#include <vector>

namespace ProgramTest {

// What an Icinga made of one run of a plugin.
struct IcingaResult {
  int state = -1;
  std::vector<std::string> output;  // line by line
  std::string performanceData;
};

// Runs a real Icinga 2, without network, until it has asked `raidmonitor check` once, by the
// command definition that the project brings along. `variables` are lines that configure the
// service.
IcingaResult askIcinga(const std::string& variables);

}  // namespace ProgramTest
