#include "platform/registry/memory/archive/Recording.h"

#include <sys/stat.h>

#include <algorithm>

#include "platform/registry/memory/archive/Archive.h"
#include "platform/registry/memory/archive/RecordingFolder.h"

namespace MemoryRegistry {
namespace {

bool isFolder(const std::string& path) {
  struct stat status {};
  return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

Recording Recording::open(const std::string& path, const ReadOne& readOne) {
  Recording recording;
  if (isFolder(path)) {
    for (RecordedArchive& archive : listRecording(path)) {
      recording._times.push_back(archive.time);
      recording._names.push_back(std::move(archive.file));
    }
  } else {
    recording._times.push_back(0);
    recording._names.push_back(path);
  }
  // The first one last: it is kept, and only one content is in memory at a time.
  const std::size_t all = recording._times.size();
  for (std::size_t i = all - 1; i > 0; --i) {
    recording.read(i);
    if (readOne) readOne(all - i, all);
  }
  recording._first = recording.read(0);
  return recording;
}

Recording Recording::fromMemory(std::vector<std::pair<std::int64_t, MakeText>> archives) {
  std::stable_sort(archives.begin(), archives.end(),
                   [](const auto& a, const auto& b) { return a.first < b.first; });
  Recording recording;
  for (auto& [time, text] : archives) {
    recording._times.push_back(time);
    recording._names.push_back("built-in archive for time " + std::to_string(time));
    recording._texts.push_back(std::move(text));
  }
  checkTimes("built-in recording", recording._times);
  return recording;
}

RegistryContent Recording::content(std::size_t index) {
  if (index != 0 || !_first) return read(index);
  RegistryContent first = std::move(*_first);
  _first.reset();
  return first;
}

RegistryContent Recording::read(std::size_t index) const {
  if (_texts.empty()) return readArchive(_names.at(index));
  const std::string text = _texts.at(index)();
  return parseArchive(text.data(), text.size(), _names.at(index));
}

}  // namespace MemoryRegistry
