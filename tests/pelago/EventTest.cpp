#include "platform/pelago/Event.h"

#include <gtest/gtest.h>

#include "tests/pelago/Doubles.h"

namespace PelagoTest {
namespace {

TEST(Event, KeepsTypeAndData) {
  int data = 0;
  const Pelago::Event event(0xffffffffU, &data);
  EXPECT_EQ(0xffffffffU, event.type());
  EXPECT_EQ(&data, event.data());
  EXPECT_EQ(nullptr, Pelago::Event(3, nullptr).data());
}

TEST(Event, DestroyDeletesTheEvent) {
  Story story;
  Pelago::Event* event = new ToldEvent(story, "it");
  event->destroy();
  EXPECT_EQ(Story{"end of it"}, story);
}

TEST(Event, DestroyLeavesTheDataToThePoster) {
  Story story;
  ToldEvent data(story, "data");
  (new Pelago::Event(0, &data))->destroy();
  EXPECT_EQ(Story{}, story);
}

}  // namespace
}  // namespace PelagoTest
