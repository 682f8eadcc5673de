#include "platform/registry/memory/archive/RecordingFolder.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <tuple>

#include "platform/registry/memory/archive/ArchiveError.h"

namespace MemoryRegistry {
namespace {

bool isDigit(char c) { return c >= '0' && c <= '9'; }

// The digits of "<digits>.plist"; empty for any other name.
std::string_view digitsOf(std::string_view name) {
  constexpr std::string_view suffix = ".plist";
  if (name.size() <= suffix.size()) return {};
  const std::string_view digits = name.substr(0, name.size() - suffix.size());
  const bool matches =
      name.substr(digits.size()) == suffix && std::all_of(digits.begin(), digits.end(), isDigit);
  return matches ? digits : std::string_view();
}

std::int64_t parseTime(std::string_view digits, const std::string& file) {
  std::int64_t time = 0;
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), time);
  if (error != std::errc() || end != digits.data() + digits.size()) {
    throw ArchiveError(file, "is named after a time that is too large");
  }
  return time;
}

}  // namespace

std::vector<RecordedArchive> listRecording(const std::string& folder) {
  std::vector<RecordedArchive> archives;
  std::error_code error;
  std::filesystem::directory_iterator entry(folder, error);
  for (const std::filesystem::directory_iterator end; !error && entry != end;
       entry.increment(error)) {
    const std::string file = entry->path().string();
    const std::string name = entry->path().filename().string();
    const std::string_view digits = digitsOf(name);
    if (!digits.empty()) archives.push_back({parseTime(digits, file), file});
  }
  if (error) throw ArchiveError(folder, "cannot be read: " + error.message());

  std::sort(archives.begin(), archives.end(), [](const auto& a, const auto& b) {
    return std::tie(a.time, a.file) < std::tie(b.time, b.file);
  });
  std::vector<std::int64_t> times;
  times.reserve(archives.size());
  for (const RecordedArchive& archive : archives)
    times.push_back(archive.time);
  checkTimes(folder, times);
  return archives;
}

void checkTimes(const std::string& name, const std::vector<std::int64_t>& times) {
  if (times.empty()) {
    throw ArchiveError(name, "has no archive: a recording's files are named <milliseconds>.plist");
  }
  if (times.front() != 0) throw ArchiveError(name, "has no archive for time 0");
  const auto twice = std::adjacent_find(times.begin(), times.end());
  if (twice != times.end()) {
    throw ArchiveError(name, "has two archives for time " + std::to_string(*twice));
  }
}

}  // namespace MemoryRegistry
