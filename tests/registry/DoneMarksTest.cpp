#include "platform/registry/memory/DoneMarks.h"

#include <gtest/gtest.h>

#include <cstdint>

namespace {

// Of epochs that are soon used up.
using Marks = MemoryRegistry::EpochMarks<std::uint8_t>;
constexpr int Epochs = UINT8_MAX;

TEST(DoneMarks, EachSlotIsMarkedOnceInAnEpoch) {
  Marks marks;
  marks.begin(2);
  EXPECT_TRUE(marks.set(0));
  EXPECT_FALSE(marks.set(0));
  EXPECT_TRUE(marks.set(1));
  marks.begin(2);
  EXPECT_TRUE(marks.set(0));
}

TEST(DoneMarks, AForgottenSlotIsMarkedAnewAndOneThatWasNeverReachedMayBeForgotten) {
  Marks marks;
  marks.begin(1);
  EXPECT_TRUE(marks.set(0));
  marks.forget(0);
  EXPECT_TRUE(marks.set(0));
  marks.forget(1);
  marks.reach(2);
  EXPECT_TRUE(marks.set(1));
}

TEST(DoneMarks, NoMarkOutlivesItsEpochHoweverManyFollow) {
  for (const int markedIn : {1, 2, Epochs - 1, Epochs}) {
    Marks marks;
    for (int epoch = 1; epoch <= markedIn; ++epoch)
      marks.begin(1);
    ASSERT_TRUE(marks.set(0));
    for (int later = 1; later <= 2 * Epochs; ++later) {
      marks.begin(1);
      Marks looked = marks;
      ASSERT_TRUE(looked.set(0)) << "marked in " << markedIn << ", looked at " << later << " later";
    }
  }
}

}  // namespace
