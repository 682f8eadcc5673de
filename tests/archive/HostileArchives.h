#pragma once

#include <functional>
#include <string>
#include <vector>

// An archive of ten megabytes that asks for as much memory or time as it can.
struct HostileArchive {
  std::string name;
  std::function<std::string()> make;
};

std::vector<HostileArchive> hostileXML();
std::vector<HostileArchive> hostileBinaries();
std::vector<HostileArchive> hostileTexts();
std::vector<HostileArchive> hostileGzip();
