#include "model/AscendingStorage.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <functional>

namespace ModelTest {
namespace {

struct Thing {
  std::uint64_t words[4];
};

class AscendingStorageTest : public testing::Test {
 protected:
  static constexpr std::size_t Places = 4;

  // Used from one end to the other, so that a sanitizer sees whether it may be.
  void* take(std::size_t size = sizeof(Thing)) {
    return std::memset(storage.allocate(size), 0xA5, size);
  }
  bool isWithin(const void* memory) const {
    const std::less<> before;
    return !before(memory, &storage) && before(memory, &storage + 1);
  }

  RAIDMonitoring::AscendingStorage<Thing, Places> storage;
};

TEST_F(AscendingStorageTest, AddressesAscendInTheOrderOfMaking) {
  const void* last = &storage;
  for (std::size_t place = 0; place < Places; ++place) {
    const void* const made = take();
    EXPECT_TRUE(isWithin(made)) << place;
    EXPECT_TRUE(place == 0 || std::less<>()(last, made)) << place;
    last = made;
  }
}

TEST_F(AscendingStorageTest, WhatFindsNoPlaceGetsOrdinaryMemory) {
  void* const large = take(sizeof(Thing) + 1);
  EXPECT_FALSE(isWithin(large));
  for (std::size_t place = 0; place < Places; ++place)
    EXPECT_TRUE(isWithin(take()));
  void* const further = take();
  EXPECT_FALSE(isWithin(further));
  storage.release(large);
  storage.release(further);
}

TEST_F(AscendingStorageTest, PlacesAboveAllThatAreInUseAreUsedAgain) {
  void* const first = take();
  void* const second = take();
  void* const third = take();
  storage.release(second);
  EXPECT_TRUE(std::less<>()(third, take())) << "a place between two others stays empty";
  storage.release(third);
  storage.release(first);
}

TEST_F(AscendingStorageTest, WithNothingInUseTheFirstPlaceIsTheNext) {
  void* const first = take();
  void* const second = take();
  storage.release(first);
  storage.release(second);
  EXPECT_EQ(first, take());
  EXPECT_EQ(second, take());
}

}  // namespace
}  // namespace ModelTest
