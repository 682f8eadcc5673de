#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "platform/registry/memory/MemoryRegistry.h"
#include "platform/registry/memory/archive/Archive.h"

namespace {

// What is said against an archive is one line that is fit for a terminal.
void checkReason(const std::string& reason) {
  for (const char character : reason) {
    const auto code = static_cast<unsigned char>(character);
    if (code < 0x20 || code == 0x7F) std::abort();
  }
}

}  // namespace

// Any bytes are read or refused; and what the reader returns is content that the registry takes.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  try {
    MemoryRegistry::RegistryContent content =
        MemoryRegistry::parseArchive(reinterpret_cast<const char*>(data), size, "input");
    MemoryRegistry::reset();
    MemoryRegistry::replaceContent(std::move(content));
  } catch (const MemoryRegistry::ArchiveError& error) {
    checkReason(error.what());
  }
  return 0;
}
