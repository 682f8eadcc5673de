#include "platform/registry/memory/Pool.h"

#include <gtest/gtest.h>

#include <vector>

#include "tests/support/FailingMemory.h"

using MemoryRegistry::Pool;

namespace {

TEST(Pool, TakesBackAllThatIsOutWithoutMemory) {
  Pool<int> pool;
  std::vector<int*> out;
  for (int i = 0; i < 9; ++i)
    out.push_back(pool.take(i));
  const auto before = TestSupport::madeAllocations();
  for (int* object : out)
    pool.give(object);
  EXPECT_EQ(before, TestSupport::madeAllocations());
}

TEST(Pool, GivesOutAgainWhatCameBack) {
  Pool<int> pool;
  int* first = pool.take(1);
  int* second = pool.take(2);
  pool.give(first);
  EXPECT_EQ(first, pool.take(3));
  EXPECT_NE(second, pool.take(4));
  EXPECT_EQ(3U, pool.all().size());
}

}  // namespace
