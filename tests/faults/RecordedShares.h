#pragma once

#include <gtest/gtest.h>

#include <iosfwd>
#include <string>
#include <vector>

#include "tests/faults/FaultLoop.h"

namespace FaultTest {

// The faults of the recordings, dealt out to tests of about the same length.
struct RecordedShare {
  std::string recording;
  Share share;
};

std::vector<RecordedShare> recordedShares();
std::ostream& operator<<(std::ostream& stream, const RecordedShare& share);

// "cross_device_marks", or "demo_2_of_4".
std::string nameOfShare(const testing::TestParamInfo<RecordedShare>& info);

}  // namespace FaultTest
