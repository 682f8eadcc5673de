#include "application/exec/EventEnvironment.h"

#include <unistd.h>

#include <algorithm>
#include <string_view>

#include "application/Words.h"
#include "application/json/JsonEvent.h"
#include "application/text/TextCharacters.h"
#include "application/text/TextModel.h"

// Not every system's header declares it. To be had by this name in a program, not in a library.
extern char** environ;

namespace Program {
namespace {

constexpr std::string_view Prefix = "RAIDMONITOR_";
// The system refuses to start a program whose environment is too long.
constexpr int LongestText = 1000;
constexpr std::size_t MostMembers = 100;

using Variables = std::vector<std::string>;

// Without what a watch above this one may have set.
Variables inherited() {
  Variables variables;
  for (char** variable = environ; *variable != nullptr; ++variable) {
    const std::string text = *variable;
    if (text.compare(0, Prefix.size(), Prefix) != 0) variables.push_back(text);
  }
  return variables;
}

void set(Variables& variables, const char* name, const std::string& value) {
  variables.push_back(std::string(Prefix) + name + "=" + value);
}

std::string safe(const std::string& text) {
  return clipped(printable(text, Charset::Unicode), LongestText, Charset::Unicode);
}

std::string bayOf(const MemberSnapshot& member) {
  const int slot = member.slot.value_or(-1);
  return slot < 1 ? "?" : std::to_string(slot);
}

// A UUID is whatever a disk calls one.
std::string wordOf(const std::string& uuid) {
  std::string word = clipped(printable(uuid, Charset::Unicode), 40, Charset::Unicode);
  std::replace(word.begin(), word.end(), ' ', '_');
  return word;
}

void describeMembers(Variables& variables, const VolumeEvent& event) {
  std::string bays;
  std::string all;
  std::vector<const MemberSnapshot*> members = membersByBay(event.volume);
  members.resize(std::min(members.size(), MostMembers));
  for (const MemberSnapshot* member : members) {
    const std::string blank = all.empty() ? "" : " ";
    bays += blank + bayOf(*member);
    all += blank + bayOf(*member) + ":" + wordFor(member->state) + ":" + wordOf(member->uuid);
  }
  if (event.kind != VolumeEvent::Kind::Disappeared) set(variables, "BAYS", bays);
  set(variables, "MEMBERS", all);
}

void describe(Variables& variables, const DeviceEvent& event) {
  set(variables, "DEVICE", hexadecimal(event.uid));
}

void describe(Variables& variables, const VolumeEvent& event) {
  set(variables, "DEVICE", hexadecimal(event.volume.device));
  set(variables, "ENCLOSURE", safe(enclosureName(event.enclosure)));
  set(variables, "VOLUME_NAME", safe(event.volume.name));
  set(variables, "VOLUME_UUID", safe(event.volume.uuid));
  set(variables, "LEVEL", wordFor(event.volume.level));
  set(variables, "STATE", wordFor(event.volume.state));
  describeMembers(variables, event);
}

void describe(Variables& variables, const DroppedEvent& event) {
  set(variables, "COUNT", std::to_string(event.count));
}

// No program is run for the log and the final account.
void describe(Variables&, const LogEvent&) {}
void describe(Variables&, const HandlesEvent&) {}

}  // namespace

std::vector<std::string> environmentFor(const WatchEvent& event) {
  Variables variables = inherited();
  set(variables, "EVENT", nameOf(event));
  set(variables, "TIME", std::to_string(event.time));
  std::visit([&variables](const auto& what) { describe(variables, what); }, event.what);
  return variables;
}

}  // namespace Program
