#include "platform/pelago/Reference.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <utility>

#include "platform/pelago/Object.h"

namespace PelagoTest {
namespace {

class Kept : public Pelago::Object {
 public:
  void destroy() override { ++destroyed; }
  int destroyed = 0;
};
using KeptReference = Pelago::Reference<Kept>;

TEST(Reference, KeepsOneReferenceForAsLongAsItLives) {
  Kept object;
  object.ref();
  {
    const KeptReference reference(&object);
    EXPECT_EQ(2, object.references());
    EXPECT_EQ(&object, reference.get());
    EXPECT_EQ(&object, reference.operator->());
    EXPECT_TRUE(reference);
  }
  EXPECT_EQ(1, object.references());
}

TEST(Reference, GivesItBackWhenAnExceptionPasses) {
  Kept object;
  try {
    const KeptReference reference(&object);
    throw std::runtime_error("passing");
  } catch (const std::runtime_error&) {
    EXPECT_EQ(1, object.destroyed);
  }
  EXPECT_EQ(0, object.references());
}

TEST(Reference, OfNothingIsEmpty) {
  const KeptReference none;
  const KeptReference null(nullptr);
  EXPECT_FALSE(none);
  EXPECT_FALSE(null);
  EXPECT_EQ(nullptr, none.get());
}

TEST(Reference, ReleaseHandsTheReferenceToTheCaller) {
  Kept object;
  {
    KeptReference reference(&object);
    EXPECT_EQ(&object, reference.release());
    EXPECT_FALSE(reference);
  }
  EXPECT_EQ(1, object.references());
  object.deref();
}

TEST(Reference, MovesWithoutCounting) {
  Kept object;
  KeptReference first(&object);
  const KeptReference second(std::move(first));
  EXPECT_EQ(1, object.references());
  EXPECT_EQ(&object, second.get());
  EXPECT_FALSE(first);  // NOLINT(bugprone-use-after-move): a moved-from reference is empty
}

TEST(Reference, AssignmentGivesTheOldOneBack) {
  Kept old;
  Kept replacing;
  KeptReference reference(&old);
  reference = KeptReference(&replacing);
  EXPECT_EQ(1, old.destroyed);
  EXPECT_EQ(1, replacing.references());
  KeptReference& self = reference;
  reference = std::move(self);
  EXPECT_EQ(1, replacing.references());
}

TEST(Reference, ResetGivesBackOnce) {
  Kept object;
  KeptReference reference(&object);
  reference.reset();
  reference.reset();
  EXPECT_EQ(0, object.references());
  EXPECT_EQ(1, object.destroyed);
}

}  // namespace
}  // namespace PelagoTest
