#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
constexpr bool isSanitized = true;
#elif defined(__has_feature)
constexpr bool isSanitized = __has_feature(address_sanitizer);
#else
constexpr bool isSanitized = false;
#endif

// Ten megabytes; one under sanitizers, where neither memory nor time can be judged.
constexpr std::size_t hostileSize = isSanitized ? 1'000'000 : 10'000'000;

// An archive of that size that asks for as much memory or time as it can.
struct HostileArchive {
  std::string name;
  std::function<std::string()> make;
};

std::vector<HostileArchive> hostileXML();
std::vector<HostileArchive> hostileBinaries();
std::vector<HostileArchive> hostileTexts();
std::vector<HostileArchive> hostileGzip();
