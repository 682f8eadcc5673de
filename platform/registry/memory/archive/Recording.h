#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/registry/memory/RegistryContent.h"
#include "platform/registry/memory/archive/ArchiveError.h"

namespace MemoryRegistry {

// What a registry held over time: archives, each in force from its time (in milliseconds since the
// recording's start) to the next one's. A single archive is a recording of time 0.
//
// Ownership: holds no more than the first content, until it is asked for.
// Thread:    one at a time.
// Failure:   ArchiveError.
class Recording {
 public:
  // An archive (a file) or a folder of archives named "<milliseconds>.plist"; other files in it are
  // ignored. Reads every archive, so that none is found bad later, unless it changes.
  // `readOne`, if any, is called after each, with how many of how many have been read.
  using ReadOne = std::function<void(std::size_t count, std::size_t all)>;
  static Recording open(const std::string& path, const ReadOne& readOne = {});

  // From texts that are made when they are asked for, so that one is in memory at a time.
  using MakeText = std::function<std::string()>;
  static Recording fromMemory(std::vector<std::pair<std::int64_t, MakeText>> archives);

  // Ascending; the first is 0.
  const std::vector<std::int64_t>& times() const { return _times; }

  // The content from times()[index] on, read now.
  RegistryContent content(std::size_t index);

 private:
  Recording() = default;
  RegistryContent read(std::size_t index) const;

  std::vector<std::int64_t> _times;
  std::vector<std::string> _names;  // files, or what stands for them in messages
  std::vector<MakeText> _texts;     // empty when the archives are files
  std::optional<RegistryContent> _first;
};

}  // namespace MemoryRegistry
