#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/application/support/Program.h"

namespace ProgramTest {
namespace {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// The recording changes at 0, 3000, 3400, 3900, 4350, 4900 and 5300, a bring-up looks every 100 ms
// from 3000 to 4400, and the refresh is due every 2000.
TEST(Until, HandlesHasTheTimeOfTheLastThingThatWasDue) {
  const struct {
    const char* until;
    const char* time;
  } rows[] = {{"0", "0"},        {"1999", "0"},    {"2000", "2000"}, {"2999", "2000"},
              {"3000", "3000"},  {"3099", "3000"}, {"3100", "3100"}, {"3350", "3300"},
              {"3400", "3400"},  {"4360", "4350"}, {"4399", "4350"}, {"4899", "4400"},
              {"5299", "4900"},  {"5999", "5300"}, {"6000", "6000"}, {"9999", "8000"},
              {"10000", "10000"}};
  for (const auto& row : rows) {
    const Result result = run({"watch", "--json", "--handles", "--until", row.until, "--registry",
                               recording("plug-in-in-stages")});
    ASSERT_EQ(0, result.status);
    EXPECT_THAT(linesOf(result.out).back(),
                StartsWith(std::string(R"({"time": )") + row.time + R"(, "event": "handles")"))
        << row.until;
  }
}

TEST(Until, WithoutItAWatchEndsTwoSecondsAfterTheRefreshThatFollowsTheLastChange) {
  const Result result =
      run({"watch", "--json", "--handles", "--registry", recording("plug-in-in-stages")});
  EXPECT_THAT(linesOf(result.out).back(), StartsWith(R"({"time": 8000, "event": "handles")"));
}

TEST(Until, ASingleArchiveIsRefreshedOnce) {
  const Result result = run(
      {"watch", "--json", "--handles", "--registry", recording("two-bay-mirror-degrades/0.plist")});
  EXPECT_THAT(linesOf(result.out).back(), StartsWith(R"({"time": 2000, "event": "handles")"));
}

TEST(Until, NothingThatIsDueLaterHappens) {
  const std::string folder = recording("two-bay-mirror-degrades");
  EXPECT_THAT(run({"watch", "--json", "--until", "5999", "--registry", folder}).out,
              Not(HasSubstr("degraded")));
  EXPECT_THAT(run({"watch", "--json", "--until", "6000", "--registry", folder}).out,
              HasSubstr("degraded"));
}

TEST(Until, ListAndSlotsShowTheStateOfThatMoment) {
  const std::string folder = recording("two-bay-mirror-degrades");
  EXPECT_THAT(run({"list", "--json", "--until", "5999", "--registry", folder}).out,
              HasSubstr(R"("state": "online", "device")"));
  EXPECT_THAT(run({"list", "--json", "--until", "6000", "--registry", folder}).out,
              HasSubstr(R"("state": "degraded", "device")"));
  EXPECT_THAT(run({"slots", "--json", "--until", "6000", "--registry", folder}).out,
              HasSubstr(R"("slot": -1, "inferred": 2})"));
  EXPECT_EQ(
      "{\"devices\": []}\n",
      run({"list", "--json", "--until", "2999", "--registry", recording("plug-in-in-stages")}).out);
}

TEST(Until, ADeviceThatIsComingUpHasNoBridgeYet) {
  EXPECT_THAT(
      run({"list", "--json", "--until", "4000", "--registry", recording("plug-in-in-stages")}).out,
      HasSubstr(R"("bridge": "", "volumes": []})"));
}

}  // namespace
}  // namespace ProgramTest
