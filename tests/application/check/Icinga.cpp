#include "tests/application/check/Icinga.h"

#include <grp.h>
#include <pwd.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>

#include "tests/application/support/Program.h"
#include "tests/application/support/RenamedRecording.h"
#include "tests/application/support/TemporaryFolder.h"
#include "tests/application/support/Tool.h"

namespace ProgramTest {
namespace {

// The performance data writer's format can be any; this one shows all that Icinga understood.
constexpr const char* Configuration = R"(
include "FOLDER/command.conf"
object CheckerComponent "checker" { }
object PerfdataWriter "results" {
  service_perfdata_path = "FOLDER/results"
  service_temp_path = "FOLDER/results.tmp"
  host_perfdata_path = "FOLDER/hosts"
  host_temp_path = "FOLDER/hosts.tmp"
  service_format_template = "BEGIN $service.state_id$\n$service.output$\nDATA $service.perfdata$\nEND"
  rotation_interval = 0.5s
}
object Host "mac" { check_command = "raidmonitor" }
object Service "raid" {
  host_name = "mac"
  check_command = "raidmonitor"
  check_interval = 1s
VARIABLES
}
)";

void configure(const TemporaryFolder& folder, const std::string& variables) {
  for (const char* name : {"data", "run", "cache", "log", "spool"})
    std::filesystem::create_directory(folder.file(name));
  const std::string ours =
      contentOf(std::string(RAIDMONITOR_SOURCES) + "/packaging/icinga/raidmonitor.conf");
  folder.write("command.conf", replaced(ours, "/usr/bin/raidmonitor", RAIDMONITOR_PROGRAM));
  folder.write("icinga2.conf",
               replaced(replaced(Configuration, "VARIABLES", variables), "FOLDER", folder.path()));
}

ToolCommand commandFor(const TemporaryFolder& folder) {
  ToolCommand command = {"icinga2", "daemon", "-c", folder.file("icinga2.conf"), "-DNodeName=mac"};
  const auto define = [&command](const std::string& name, const std::string& value) {
    command.push_back("-DConfiguration." + name + "=" + value);
  };
  define("RunAsUser", getpwuid(geteuid())->pw_name);
  define("RunAsGroup", getgrgid(getegid())->gr_name);
  define("ConfigDir", folder.path());
  define("DataDir", folder.file("data"));
  define("InitRunDir", folder.file("run"));
  define("CacheDir", folder.file("cache"));
  define("LogDir", folder.file("log"));
  define("SpoolDir", folder.file("spool"));
  return command;
}

// The first result that was written as a whole; empty when there is none yet.
std::vector<std::string> firstResult(const TemporaryFolder& folder) {
  for (const std::string& name : folder.names()) {
    if (name.rfind("results.", 0) != 0 || name == "results.tmp") continue;
    std::vector<std::string> lines = linesOf(contentOf(folder.file(name)));
    for (std::size_t end = 0; end < lines.size(); ++end) {
      if (lines[end] == "END") return {lines.begin(), lines.begin() + static_cast<long>(end)};
    }
  }
  return {};
}

}  // namespace

IcingaResult askIcinga(const std::string& variables) {
  const TemporaryFolder folder;
  configure(folder, variables);
  RunningTool icinga(commandFor(folder), folder.file("out"));
  std::vector<std::string> lines;
  waitUntil(
      [&] {
        lines = firstResult(folder);
        return !lines.empty() || icinga.hasEnded();
      },
      std::chrono::seconds(60));
  if (lines.size() < 3) {
    throw std::runtime_error("Icinga did not answer: " + contentOf(folder.file("out")));
  }
  IcingaResult result;
  result.state = std::stoi(lines.front().substr(std::string("BEGIN ").size()));
  result.output.assign(lines.begin() + 1, lines.end() - 1);
  result.performanceData = lines.back().substr(std::string("DATA ").size());
  return result;
}

}  // namespace ProgramTest
