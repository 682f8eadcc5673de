#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace MemoryRegistry {

struct RecordedArchive {
  std::int64_t time;  // milliseconds
  std::string file;   // with the folder
};

// The archives of a recording's folder, ascending by time. Throws ArchiveError when the folder
// can't be read or its times are none of a recording.
std::vector<RecordedArchive> listRecording(const std::string& folder);

// The ascending times of a recording begin with 0, and no two are the same.
void checkTimes(const std::string& name, const std::vector<std::int64_t>& times);

}  // namespace MemoryRegistry
