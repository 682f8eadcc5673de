#include "tests/faults/RecordedShares.h"

#include <algorithm>
#include <map>
#include <ostream>

namespace FaultTest {

std::vector<RecordedShare> recordedShares() {
  const std::map<std::string, unsigned> longOnes{
      {"demo", 8}, {"five-bay-bridges", 12}, {"five-bay-five-disks", 4}, {"cross-device-marks", 2}};
  std::vector<RecordedShare> shares;
  for (const std::string& name : recordingNames()) {
    const auto found = longOnes.find(name);
    const unsigned of = found == longOnes.end() ? 1 : found->second;
    for (unsigned number = 0; number < of; ++number)
      shares.push_back({name, {number, of}});
  }
  return shares;
}

std::ostream& operator<<(std::ostream& stream, const RecordedShare& share) {
  return stream << share.recording;
}

std::string nameOfShare(const testing::TestParamInfo<RecordedShare>& info) {
  std::string name = info.param.recording;
  std::replace(name.begin(), name.end(), '-', '_');
  const Share& share = info.param.share;
  if (share.of == 1) return name;
  return name + "_" + std::to_string(share.number + 1) + "_of_" + std::to_string(share.of);
}

}  // namespace FaultTest
