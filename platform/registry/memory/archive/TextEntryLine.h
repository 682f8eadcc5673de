#pragma once

#include <cstddef>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/registry/memory/RegistryContent.h"

namespace MemoryRegistry {

// What the line of an entry says: "+-o Name@location  <class C, id 0x..., registered, ...>". The
// texts belong to the line.
struct TextEntryLine {
  std::string_view name;
  std::string_view location;                  // empty: none
  std::vector<std::string_view> inheritance;  // root first; the class alone unless made with -i
  EntryID id = 0;
  std::optional<std::uint32_t> state;  // none for an entry that is no service
};

// True when the line ends as the one of an entry does: a name may hold the end of a line.
bool endsEntryLine(std::string_view line);

// Of the text from behind "+-o " to the ">". Throws UnreadableText.
TextEntryLine readEntryLine(std::string_view text);

}  // namespace MemoryRegistry
