#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "platform/registry/memory/MemoryRegistry.h"
#include "platform/registry/memory/archive/ArchiveLimits.h"
#include "platform/registry/memory/archive/Refusal.h"
#include "platform/registry/memory/archive/RegistryText.h"

namespace {

struct Outcome {
  std::string reason;
  std::size_t entries = 0;
};

// Whatever is read is content that the registry takes.
Outcome read(std::string_view text) {
  Outcome outcome;
  try {
    auto content = MemoryRegistry::readRegistryText(text, MemoryRegistry::memoryLimit(text.size()));
    outcome.entries = content.entries.size();
    MemoryRegistry::reset();
    MemoryRegistry::replaceContent(std::move(content));
  } catch (const MemoryRegistry::Refusal& refusal) {
    outcome.reason = refusal.what();
  }
  return outcome;
}

std::string asOnAPC(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (c == '\n') result += '\r';
    result += c;
  }
  return result;
}

}  // namespace

// Any text is read or refused with one line, and the same with the line ends of a PC. Without the
// look at how the bytes begin, which would keep the fuzzer busy.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const Outcome plain = read(text);
  if (plain.reason.find('\n') != std::string::npos) std::abort();
  if (text.find('\r') != std::string_view::npos) return 0;
  const Outcome converted = read(asOnAPC(text));
  if (converted.reason != plain.reason || converted.entries != plain.entries) std::abort();
  return 0;
}
