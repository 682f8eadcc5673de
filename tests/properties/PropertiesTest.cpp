#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "tests/properties/Play.h"

namespace PropertyTest {
namespace {

#if defined(__SANITIZE_ADDRESS__)
constexpr const char* OrdinaryCases = "400";
#elif defined(__has_feature)
constexpr const char* OrdinaryCases = __has_feature(address_sanitizer) ? "400" : "3000";
#else
constexpr const char* OrdinaryCases = "3000";
#endif

// PROPERTY_CASES in the environment asks for a longer run. Has to be said before the first check.
std::string configuration() {
  const char* cases = std::getenv("PROPERTY_CASES");
  return std::string("max_size=160 max_success=") + (cases != nullptr ? cases : OrdinaryCases);
}
const int configured = setenv("RC_PARAMS", configuration().c_str(), 0);

std::vector<Change> anyChanges() {
  return *rc::gen::container<std::vector<Change>>(
      rc::gen::build<Change>(rc::gen::set(&Change::kind, rc::gen::inRange(0, Kinds)),
                             rc::gen::set(&Change::enclosure, rc::gen::inRange(0, 3)),
                             rc::gen::set(&Change::bay, rc::gen::inRange(0, 5)),
                             rc::gen::set(&Change::choice, rc::gen::inRange(0, 12))));
}

// Two enclosures are there at once, so that few changes are enough to get far.
void playAll(Play& play, const std::vector<Change>& changes) {
  for (const int enclosure : {0, 1}) {
    play.make({6, enclosure, 0, 0});
    play.make({10, enclosure, 0, 0});
    play.make({10, enclosure, 1, 0});
    play.make({12, enclosure, 0, enclosure});
  }
  for (const Change& change : changes)
    play.make(change);
  play.refresh();
  play.refresh();
  play.end();
  RC_TAG(play.refreshes() > 8 ? "many refreshes" : "few refreshes");
}

void hold(bool clientKeepsVolumes) {
  const FaultTest::NoOutput silence;
  EXPECT_TRUE(rc::check([clientKeepsVolumes] {
    const std::vector<Change> changes = anyChanges();
    Play play(clientKeepsVolumes);
    playAll(play, changes);
    for (const auto& complaint : play.complaints())
      RC_LOG() << complaint << "\n";
    RC_ASSERT(play.complaints().empty());
  }));
}

// Told: what the hosts report is announced, once, and withdrawn when it is gone. Balanced: the
// references on every volume, and the registry's accounts at the end.
TEST(Properties, WhatAClientIsToldAddsUpAndAllReferencesBalance) {
  ASSERT_EQ(0, configured);
  hold(true);
}

// Without a client's references volumes end as soon as they may.
TEST(Properties, NoClientSeesAVolumeThatHasEnded) { hold(false); }

}  // namespace
}  // namespace PropertyTest
