// What the seam's constants are is the operating system's decision: programs were compiled with
// them.

#include <gtest/gtest.h>

#include "platform/registry/memory/MemoryRegistrySeam.h"

namespace {

TEST(SeamConstants, ResultsAreTheSystems) {
  EXPECT_EQ(0, KERN_SUCCESS);
  EXPECT_EQ(15, KERN_INVALID_NAME);
  EXPECT_EQ(268435459, MACH_SEND_INVALID_DEST);
  EXPECT_EQ(0, kIOReturnSuccess);
  EXPECT_EQ(-536870212, kIOReturnError);
  EXPECT_EQ(-536870210, kIOReturnNoResources);
  EXPECT_EQ(-536870208, kIOReturnNoDevice);
  EXPECT_EQ(-536870206, kIOReturnBadArgument);
  EXPECT_EQ(-536870160, kIOReturnNotFound);
}

TEST(SeamConstants, OptionsAndTypesAreTheSystems) {
  EXPECT_EQ(0U, kIOMasterPortDefault);
  EXPECT_EQ(1U, kIORegistryIterateRecursively);
  EXPECT_EQ(2U, kIORegistryIterateParents);
  EXPECT_EQ(nullptr, kCFAllocatorDefault);
  EXPECT_EQ(134217984U, kCFStringEncodingUTF8);
  EXPECT_EQ(3, kCFNumberSInt32Type);
  EXPECT_EQ(4, kCFNumberSInt64Type);
  EXPECT_EQ(6, kCFNumberFloat64Type);
  EXPECT_EQ(9, kCFNumberIntType);
  EXPECT_EQ(11, kCFNumberLongLongType);
  EXPECT_EQ(-1, kCFCompareLessThan);
  EXPECT_EQ(0, kCFCompareEqualTo);
  EXPECT_EQ(1, kCFCompareGreaterThan);
}

TEST(SeamConstants, TextsHaveTheRoomThatTheSystemFills) {
  EXPECT_EQ(128U, sizeof(io_name_t));
  EXPECT_EQ(512U, sizeof(io_string_t));
}

}  // namespace
