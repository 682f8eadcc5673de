#include <gtest/gtest.h>

#include <chrono>

#include "tests/application/support/Program.h"

namespace ProgramTest {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

milliseconds timeOf(const Arguments& arguments) {
  const auto start = steady_clock::now();
  EXPECT_EQ(0, run(arguments).status);
  return std::chrono::duration_cast<milliseconds>(steady_clock::now() - start);
}

TEST(Pace, MakesAReplayLastAsLongAsWhatItReplays) {
  EXPECT_GE(timeOf({"watch", "--pace", "--until", "120"}), milliseconds(120));
}

TEST(Pace, ChangesNothingElse) {
  const Arguments arguments = {
      "watch",   "--json", "--log",      "--handles",
      "--until", "80",     "--registry", recording("two-bay-mirror-degrades")};
  Arguments paced = arguments;
  paced.push_back("--pace");
  EXPECT_EQ(run(arguments).out, run(paced).out);
}

TEST(Pace, WithoutItAReplayNeverWaits) {
  // An hour of a recording.
  EXPECT_LT(timeOf({"watch", "--until", "3600000"}), milliseconds(600000));
}

}  // namespace
}  // namespace ProgramTest
