#include "application/check/Expectations.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <charconv>
#include <set>
#include <string_view>
#include <utility>

namespace Program {
namespace {

bool isSame(char a, char b) {
  return std::toupper(static_cast<unsigned char>(a)) == std::toupper(static_cast<unsigned char>(b));
}

bool isSameUUID(const std::string& a, const std::string& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), isSame);
}

bool isUUID(std::string_view text) {
  constexpr std::string_view form = "XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX";
  const auto fits = [](char c, char place) {
    return place == '-' ? c == '-' : std::isxdigit(static_cast<unsigned char>(c)) != 0;
  };
  return std::equal(text.begin(), text.end(), form.begin(), form.end(), fits);
}

std::string reasonAgainst(const std::string& uuid) {
  if (isUUID(uuid)) return "";
  return uuid.empty() ? "the UUID is missing"
                      : "'" + uuid + "' is no UUID: 'raidmonitor list --json' tells them";
}

// Decimal digits alone: the option parser itself would read 010 as octal.
std::size_t parseCount(const std::string& text) {
  std::size_t count = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), count);
  if (error != std::errc() || end != text.data() + text.size()) {
    throw CLI::ValidationError("--expect-volumes", "'" + text + "' is not a number of volumes");
  }
  return count;
}

}  // namespace

void addExpectationOptions(CLI::App& parser, Expectations& expected) {
  parser.add_option("--expect", expected.uuids, "A volume that has to be there; repeatable")
      ->type_name("UUID")
      ->allow_extra_args(false)
      ->check(reasonAgainst);
  const auto setCount = [&expected](const std::string& text) {
    expected.volumes = parseCount(text);
  };
  parser
      .add_option_function<std::string>("--expect-volumes", setCount,
                                        "At least so many volumes have to be there")
      ->type_name("N");
}

std::vector<std::string> distinctUUIDs(const Expectations& expected) {
  std::set<std::string> uuids;
  for (std::string uuid : expected.uuids) {
    for (char& c : uuid)
      c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    uuids.insert(std::move(uuid));
  }
  return {uuids.begin(), uuids.end()};
}

bool isThere(const std::string& uuid, const std::vector<EnclosureVolumes>& enclosures) {
  return std::any_of(enclosures.begin(), enclosures.end(), [&uuid](const auto& enclosure) {
    return std::any_of(
        enclosure.volumes.begin(), enclosure.volumes.end(),
        [&uuid](const VolumeSnapshot& volume) { return isSameUUID(uuid, volume.uuid); });
  });
}

std::size_t volumesIn(const std::vector<EnclosureVolumes>& enclosures) {
  std::set<std::string> uuids;
  for (const EnclosureVolumes& enclosure : enclosures) {
    for (const VolumeSnapshot& volume : enclosure.volumes)
      uuids.insert(volume.uuid);
  }
  return uuids.size();
}

}  // namespace Program
