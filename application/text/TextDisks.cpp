#include "application/text/TextDisks.h"

#include <algorithm>
#include <iterator>

#include "application/text/TextModel.h"

namespace Program {
namespace {

using RAIDMonitoring::MemberOnline;

std::string placeOf(const DiskNews& disk) {
  if (disk.bay < 1) return "disk " + shortened(disk.uuid) + ", bay not known";
  return "bay " + std::to_string(disk.bay) + (disk.former ? ", was" : "");
}

std::string newsOf(const DiskNews& disk) {
  switch (disk.kind) {
    case DiskNews::Kind::Added:
      return "added, " + wordsFor(disk.state);
    case DiskNews::Kind::Removed:
      return "removed";
    case DiskNews::Kind::Moved:
      return "moved from bay " + std::to_string(disk.from) + ", " + wordsFor(disk.state);
    case DiskNews::Kind::None:
    case DiskNews::Kind::State:
      break;
  }
  return wordsFor(disk.state);
}

bool isNew(const DiskNews& disk) { return disk.kind != DiskNews::Kind::None; }
bool isWell(const DiskNews& disk) {
  return !isNew(disk) && disk.bay >= 1 && disk.state == MemberOnline;
}

// "bays 1 2, were"
std::string baysOfAll(const std::vector<DiskNews>& disks) {
  std::string bays;
  for (const DiskNews& disk : disks)
    bays += " " + std::to_string(disk.bay);
  if (disks.size() == 1) return "bay" + bays + (disks.front().former ? ", was" : "");
  return "bays" + bays + (disks.front().former ? ", were" : "");
}

}  // namespace

std::string disksText(const std::vector<DiskNews>& disks) {
  std::vector<DiskNews> well;
  std::vector<DiskNews> rest;
  std::partition_copy(disks.begin(), disks.end(), std::back_inserter(well),
                      std::back_inserter(rest), isWell);
  if (rest.empty()) return well.empty() ? "no disks" : baysOfAll(well);
  std::stable_partition(rest.begin(), rest.end(), isNew);

  std::string text;
  for (const DiskNews& disk : rest) {
    if (!text.empty()) text += "; ";
    text += placeOf(disk) + ": " + newsOf(disk);
  }
  return well.empty() ? text : text + "; " + baysOfAll(well) + ": online";
}

}  // namespace Program
