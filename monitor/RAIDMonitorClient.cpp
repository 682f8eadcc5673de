#include "monitor/RAIDMonitorClient.h"

#include <cinttypes>
#include <cstdint>
#include <cstdio>

namespace RAIDMonitoring {

RAIDMonitorClient::~RAIDMonitorClient() = default;

std::string RAIDMonitorClient::identifier() {
  // Ten bytes on purpose: the name is always cut to nine characters. The compiler sees the cut, and
  // is told that it is meant.
  char text[10];
  const auto address = static_cast<unsigned long long>(reinterpret_cast<std::uintptr_t>(this));
#pragma GCC diagnostic push
#if defined(__clang__)
#if __has_warning("-Wformat-truncation")
#pragma GCC diagnostic ignored "-Wformat-truncation"
#endif
#elif defined(__GNUC__)
#pragma GCC diagnostic ignored "-Wformat-truncation"
#endif
  std::snprintf(text, sizeof text, "0x%016llx", address);
#pragma GCC diagnostic pop
  return text;
}

}  // namespace RAIDMonitoring
