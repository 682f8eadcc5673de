#include <algorithm>
#include <filesystem>
#include <memory>
#include <variant>

#include "model/MemberState.h"
#include "model/RAIDLevel.h"
#include "model/RAIDVolumeState.h"
#include "platform/registry/Vocabulary.h"
#include "platform/registry/memory/archive/Recording.h"
#include "tests/faults/Scenarios.h"

namespace FaultTest {
namespace {

using MemoryRegistry::Recording;
using MemoryRegistry::RegistryContent;
using UIDs = std::set<std::uint64_t>;

// What is true of the registry from a time on, and the devices that discovery finds there.
struct Scene {
  Pelago::Milliseconds time = 0;
  RegistryContent content;
  UIDs devices;
};

std::optional<std::uint64_t> numberOf(const MemoryRegistry::EntryDescription& entry,
                                      const std::string& key) {
  for (const auto& [name, value] : entry.properties) {
    const auto* number = std::get_if<MemoryRegistry::Number>(&value.variant());
    if (name == key && number != nullptr) return valueOf(*number);
  }
  return std::nullopt;
}

UIDs devicesIn(const RegistryContent& content) {
  UIDs devices;
  for (const auto& entry : content.entries) {
    const auto uid = numberOf(entry.description, kSwitchUIDKey);
    const bool isSwitch = entry.description.className.find(kThunderboltSwitchClass) == 0;
    if (isSwitch && uid && numberOf(entry.description, kSwitchDepthKey) != 0) devices.insert(*uid);
  }
  return devices;
}

std::string textOf(const MemoryRegistry::EntryDescription& entry, const std::string& key) {
  for (const auto& [name, value] : entry.properties) {
    const auto* text = std::get_if<std::string>(&value.variant());
    if (name == key && text != nullptr) return *text;
  }
  return {};
}

bool isMemberReadable(const MemoryRegistry::EntryDescription& entry) {
  auto state = RAIDMonitoring::MemberUnknown;
  RAIDMonitoring::readMemberState(textOf(entry, kRAIDMemberStatusKey), state);
  return state != RAIDMonitoring::MemberUnknown;
}

bool isSetReadable(const MemoryRegistry::EntryDescription& entry) {
  auto state = RAIDMonitoring::VolumeUnknown;
  auto level = RAIDMonitoring::LevelUnknown;
  RAIDMonitoring::readVolumeState(textOf(entry, kRAIDSetStatusKey), state);
  RAIDMonitoring::readRAIDLevel(textOf(entry, kRAIDLevelNameKey), level);
  return state != RAIDMonitoring::VolumeUnknown && level != RAIDMonitoring::LevelUnknown;
}

std::set<std::string> unreadableIn(const RegistryContent& content) {
  std::set<std::string> uuids;
  for (const auto& entry : content.entries) {
    const auto& description = entry.description;
    if (!isMemberReadable(description)) uuids.insert(textOf(description, kRAIDMemberUUIDKey));
    const bool isSet = !textOf(description, kRAIDLevelNameKey).empty();
    if (isSet && !isSetReadable(description)) uuids.insert(textOf(description, kRAIDSetUUIDKey));
  }
  return uuids;
}

void play(Life& life, const std::vector<Scene>& scenes) {
  UIDs present;
  for (const Scene& scene : scenes) {
    life.passUntil(scene.time);
    life.change([&] { MemoryRegistry::replaceContent(scene.content); });
    for (const std::uint64_t uid : present) {
      if (scene.devices.count(uid) == 0) life.leave(uid);
    }
    for (const std::uint64_t uid : scene.devices) {
      if (present.count(uid) == 0) life.appear(uid);
    }
    life.change([&] { present = scene.devices; });
  }
  life.pass(4000);
  life.askForSlots();
}

bool isAskedFor(const std::string& key) {
  static const std::set<std::string> keys{kSwitchUIDKey,       kSwitchDepthKey,
                                          kDeviceVendorIDKey,  kDeviceVendorNameKey,
                                          kDeviceModelIDKey,   kDeviceModelNameKey,
                                          kAdapterTypeKey,     kPCIPathKey,
                                          kPCIDeviceKey,       kNameKey,
                                          kBootDeviceKey,      kBootDevicePathKey,
                                          kRAIDSetUUIDKey,     kRAIDSetNameKey,
                                          kRAIDSetStatusKey,   kRAIDLevelNameKey,
                                          kRAIDMembersKey,     kRAIDMemberUUIDKey,
                                          kRAIDMemberStatusKey};
  return keys.count(key) != 0;
}

void leaveOutWhatNobodyAsksFor(RegistryContent& content) {
  for (auto& entry : content.entries) {
    auto& properties = entry.description.properties;
    properties.erase(std::remove_if(properties.begin(), properties.end(),
                                    [](const auto& item) { return !isAskedFor(item.first); }),
                     properties.end());
    properties.shrink_to_fit();
  }
}

Scenario scenarioOf(const std::filesystem::path& folder, bool isWhole) {
  auto scenes = std::make_shared<std::vector<Scene>>();
  Recording recording = Recording::open(folder.string());
  for (std::size_t index = 0; index < recording.times().size(); ++index) {
    RegistryContent content = recording.content(index);
    UIDs devices = devicesIn(content);
    if (!isWhole) leaveOutWhatNobodyAsksFor(content);
    scenes->push_back({recording.times()[index], std::move(content), std::move(devices)});
  }
  return {folder.filename().string(), [scenes](Life& life) { play(life, *scenes); },
          unreadableIn(scenes->back().content)};
}

const char* const demo = "demo";

std::filesystem::path folderOf(const std::string& name) {
  if (name == demo) return DEMO;
  return std::filesystem::path(RECORDINGS) / name;
}

}  // namespace

std::vector<std::string> recordingNames() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(RECORDINGS)) {
    if (entry.is_directory() && entry.path().filename() != "expected") {
      names.push_back(entry.path().filename().string());
    }
  }
  std::sort(names.begin(), names.end());
  names.insert(names.begin(), demo);
  return names;
}

Scenario recordedScenario(const std::string& name) { return scenarioOf(folderOf(name), false); }

Scenario wholeRecordedScenario(const std::string& name) { return scenarioOf(folderOf(name), true); }

}  // namespace FaultTest
