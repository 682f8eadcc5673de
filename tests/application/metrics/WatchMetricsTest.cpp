#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

#include "tests/application/support/Program.h"
#include "tests/application/support/TemporaryFolder.h"
#include "tests/application/support/Tool.h"

namespace ProgramTest {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

// From the first volume on.
std::string statesIn(const std::string& text) {
  return text.substr(text.find("# HELP raidmonitor_devices"));
}

TEST(WatchMetrics, TheFileEndsAsTheMetricsOfTheSameRecording) {
  const TemporaryFolder folder;
  const std::string file = folder.file("raidmonitor.prom");
  for (const char* until : {"0", "3000", "10000", "24000", "30000"}) {
    const Result watched = run({"watch", "--until", until, "--metrics", file});
    EXPECT_EQ(0, watched.status) << watched.err;
    EXPECT_EQ(statesIn(run({"metrics", "--until", until}).out), statesIn(contentOf(file)));
  }
}

TEST(WatchMetrics, TheEventsThatAreShownStayTheSame) {
  const TemporaryFolder folder;
  for (const Arguments& plain : std::vector<Arguments>{{"watch"}, {"watch", "--json"}}) {
    Arguments withMetrics = plain;
    withMetrics.insert(withMetrics.end(), {"--metrics", folder.file("raidmonitor.prom")});
    EXPECT_EQ(run(plain).out, run(withMetrics).out);
  }
}

TEST(WatchMetrics, CountsOnForAsLongAsItWatches) {
  const TemporaryFolder folder;
  const std::string file = folder.file("raidmonitor.prom");
  run({"watch", "--metrics", file});
  EXPECT_THAT(contentOf(file), HasSubstr("\nraidmonitor_degraded_member_changes_total 2\n"));
}

TEST(WatchMetrics, ExpectationsGoWithIt) {
  const TemporaryFolder folder;
  const std::string file = folder.file("raidmonitor.prom");
  const std::string nobody = "5E700000-0000-4000-8000-000000000001";
  EXPECT_EQ(0,
            run({"watch", "--metrics", file, "--expect", nobody, "--expect-volumes", "3"}).status);
  EXPECT_THAT(contentOf(file),
              HasSubstr("\nraidmonitor_expected_volume_present{volume=\"" + nobody + "\"} 0\n"));
  const Result without = run({"watch", "--expect-volumes", "0"});
  EXPECT_EQ(2, without.status);
  EXPECT_THAT(without.err, HasSubstr("needs --metrics"));
}

TEST(WatchMetrics, AFolderThatIsNotThereIsAnErrorBeforeAnythingIsWatched) {
  const Result result = run({"watch", "--metrics", "/nowhere/raidmonitor.prom"});
  EXPECT_EQ(1, result.status);
  EXPECT_EQ("", result.out);
  EXPECT_EQ(
      "raidmonitor: /nowhere/raidmonitor.prom: cannot be written: No such file or directory\n",
      result.err);
}

TEST(WatchMetrics, AFolderThatVanishesEndsNothingAndIsStatusOneInTheEnd) {
  const TemporaryFolder folder;
  std::filesystem::create_directory(folder.file("in"));
  const std::string file = folder.file("in/raidmonitor.prom");
  RunningProgram watch({"watch", "--pace", "--until", "60000", "--metrics", file});
  watch.waitForLines(3);
  ASSERT_TRUE(waitUntil([&] { return std::filesystem::exists(file); }, std::chrono::seconds(30)));
  std::filesystem::remove_all(folder.file("in"));
  watch.waitForLines(4);  // what comes after it is still shown
  watch.send(SIGTERM);
  const Result result = watch.finish();
  EXPECT_EQ(1, result.status);
  EXPECT_THAT(result.err, EndsWith("raidmonitor: " + file +
                                   ": cannot be written: No such file or directory\n"));
}

TEST(WatchMetrics, ASignalLeavesTheLastState) {
  const TemporaryFolder folder;
  const std::string file = folder.file("raidmonitor.prom");
  RunningProgram watch({"watch", "--pace", "--until", "60000", "--metrics", file});
  watch.waitForLines(3);
  watch.send(SIGINT);
  EXPECT_EQ(0, watch.finish().status);
  EXPECT_THAT(contentOf(file), HasSubstr("\nraidmonitor_volumes 2\n"));
}

}  // namespace
}  // namespace ProgramTest
