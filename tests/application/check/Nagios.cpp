#include "tests/application/check/Nagios.h"

#include <grp.h>
#include <pwd.h>
#include <unistd.h>

#include <filesystem>
#include <sstream>
#include <stdexcept>

#include "tests/application/support/Program.h"
#include "tests/application/support/RenamedRecording.h"
#include "tests/application/support/TemporaryFolder.h"
#include "tests/application/support/Tool.h"

namespace ProgramTest {
namespace {

// One second is one unit of time; every check is made at once.
const char* const mainFile = R"(
cfg_file=FOLDER/command.cfg
cfg_file=FOLDER/objects.cfg
log_file=FOLDER/nagios.log
object_cache_file=FOLDER/objects.cache
precached_object_file=FOLDER/objects.precache
status_file=FOLDER/status.dat
status_update_interval=1
state_retention_file=FOLDER/retention.dat
retain_state_information=0
nagios_user=USER
nagios_group=GROUP
check_external_commands=0
command_file=FOLDER/nagios.cmd
query_socket=FOLDER/nagios.qh
lock_file=FOLDER/nagios.lock
temp_file=FOLDER/nagios.tmp
temp_path=FOLDER
check_result_path=FOLDER/results
check_workers=1
check_for_updates=0
enable_notifications=0
execute_service_checks=1
service_inter_check_delay_method=n
interval_length=1
use_syslog=0
)";

const char* const hostObjects = R"(
define timeperiod {
 timeperiod_name always
 alias always
 sunday 00:00-24:00
 monday 00:00-24:00
 tuesday 00:00-24:00
 wednesday 00:00-24:00
 thursday 00:00-24:00
 friday 00:00-24:00
 saturday 00:00-24:00
}
define contact {
 contact_name nobody
 host_notification_period always
 service_notification_period always
 host_notification_commands check_raidmonitor
 service_notification_commands check_raidmonitor
}
define host {
 host_name mac
 address 127.0.0.1
 max_check_attempts 1
 contacts nobody
 check_period always
 notification_period always
}
)";

std::string serviceObject(const std::string& name, const std::string& arguments) {
  return "define service {\n host_name mac\n service_description " + name +
         "\n check_command check_raidmonitor!" + arguments +
         "\n max_check_attempts 1\n check_interval 600\n retry_interval 600\n"
         " check_period always\n notification_period always\n notification_interval 600\n"
         " contacts nobody\n}\n";
}

void configure(const TemporaryFolder& folder, const std::map<std::string, std::string>& arguments) {
  std::string main = replaced(mainFile, "FOLDER", folder.path());
  main = replaced(main, "USER", getpwuid(geteuid())->pw_name);
  folder.write("nagios.cfg", replaced(main, "GROUP", getgrgid(getegid())->gr_name));
  const std::string ours =
      contentOf(std::string(RAIDMONITOR_SOURCES) + "/packaging/nagios/raidmonitor.cfg");
  folder.write("command.cfg", replaced(ours, "/usr/bin/raidmonitor", RAIDMONITOR_PROGRAM));
  std::string objects = hostObjects;
  for (const auto& [name, argument] : arguments)
    objects += serviceObject(name, argument);
  folder.write("objects.cfg", objects);
  std::filesystem::create_directory(folder.file("results"));
}

// The lines "key=value" of each block "servicestatus { ... }".
std::map<std::string, NagiosStatus> statusesIn(const std::string& file) {
  std::map<std::string, NagiosStatus> statuses;
  if (!std::filesystem::exists(file)) return statuses;
  std::istringstream stream(contentOf(file));
  std::map<std::string, std::string> block;
  for (std::string line; std::getline(stream, line);) {
    if (line == "servicestatus {") block.clear();
    const std::size_t equals = line.find('=');
    if (equals != std::string::npos && line.front() == '\t') {
      block[line.substr(1, equals - 1)] = line.substr(equals + 1);
    }
    if (line != "\t}" || block["has_been_checked"] != "1") continue;
    if (block.count("service_description") == 0) continue;
    statuses[block["service_description"]] = {std::stoi(block["current_state"]),
                                              block["plugin_output"], block["long_plugin_output"],
                                              block["performance_data"]};
  }
  return statuses;
}

}  // namespace

std::map<std::string, NagiosStatus> askNagios(const std::map<std::string, std::string>& arguments) {
  const TemporaryFolder folder;
  configure(folder, arguments);
  RunningTool nagios({"nagios4", folder.file("nagios.cfg")}, folder.file("out"));
  std::map<std::string, NagiosStatus> statuses;
  const bool all = waitUntil(
      [&] {
        statuses = statusesIn(folder.file("status.dat"));
        return statuses.size() == arguments.size() || nagios.hasEnded();
      },
      std::chrono::seconds(60));
  if (!all || statuses.size() != arguments.size()) {
    throw std::runtime_error("Nagios did not finish: " + contentOf(folder.file("out")));
  }
  return statuses;
}

}  // namespace ProgramTest
