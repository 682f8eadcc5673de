#include "application/metrics/MetricsFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "application/files/AtomicFile.h"
#include "application/metrics/MetricsObserver.h"
#include "application/session/Session.h"
#include "application/session/SessionObservers.h"
#include "tests/application/support/Program.h"
#include "tests/application/support/StagedSource.h"
#include "tests/application/support/TemporaryFolder.h"
#include "tests/support/EnclosureBuilder.h"

namespace ProgramTest {
namespace {

using namespace Program;
using testing::HasSubstr;
using testing::IsEmpty;
using TestSupport::EnclosureBuilder;
using TestSupport::HostTree;

// Changes the file's surroundings at given moments, in between what the file's owner does.
class MetricsFileTest : public testing::Test {
 protected:
  ~MetricsFileTest() override { MemoryRegistry::reset(); }

  // What is told on standard error. The clock is the session's, as on the live registry.
  std::string play(std::vector<StagedSource::Change> changes, Pelago::Milliseconds end) {
    EnclosureBuilder enclosure(host, TestSupport::twoBay(7));
    enclosure.complete().addDisks({1, 2}).addSet({"SET", {1, 2}});
    StagedSource source(std::move(changes));
    MetricsObserver counts({});
    MetricsFile file(path, "live", counts, [&source] {
      return std::chrono::steady_clock::time_point(std::chrono::milliseconds(source.clock().now()));
    });
    SessionObservers observers;
    observers.add(counts);
    observers.add(file);
    Session session(source, observers, end);
    testing::internal::CaptureStderr();
    session.run();
    written = file.write(session);
    return testing::internal::GetCapturedStderr();
  }

  // Says which of the times from 0 on, a second apart, found a new file.
  std::vector<int> timesOfWriting(Pelago::Milliseconds end) {
    std::vector<int> times;
    std::vector<StagedSource::Change> changes;
    // A look that comes just after a moment finds what was written at it.
    for (int second = 0; second * 1000 + 1 <= end; ++second) {
      changes.emplace_back(second == 0 ? 0 : second * 1000 + 1, [this, second, &times] {
        if (std::filesystem::remove(path)) times.push_back(second);
      });
    }
    play(std::move(changes), end);
    return times;
  }

  const HostTree host = (MemoryRegistry::reset(), HostTree());
  const TemporaryFolder folder;
  std::string path = folder.file("raidmonitor.prom");
  bool written = false;
};

TEST_F(MetricsFileTest, IsThereAfterTheFirstMoment) {
  std::string text;
  play({{0, [] {}}, {1, [&] { text = contentOf(path); }}}, 1);
  EXPECT_THAT(text, HasSubstr("name=\"Projects\",level=\"mirror\",state=\"online\"} 1\n"));
  EXPECT_THAT(text, HasSubstr("\nraidmonitor_info{version=\"" RAIDMONITOR_VERSION_EXPECTED
                              "\",source=\"live\"} 1\n"));
}

TEST_F(MetricsFileTest, IsWrittenAnewWithEachRefreshAndNotMoreOften) {
  EXPECT_THAT(timesOfWriting(8001), testing::ElementsAre(1, 2, 4, 6, 8));
}

TEST_F(MetricsFileTest, WhatWasThereStaysUntilThereIsSomethingToTell) {
  folder.write("raidmonitor.prom", "old");
  MetricsObserver counts({});
  const MetricsFile file(path, "live", counts);
  EXPECT_EQ("old", contentOf(path));
}

TEST_F(MetricsFileTest, ANameThatCannotBeWrittenIsAnErrorAtOnce) {
  MetricsObserver counts({});
  EXPECT_THROW(MetricsFile(folder.file("missing/file"), "live", counts), FileError);
  EXPECT_THROW(MetricsFile(folder.path(), "live", counts), FileError);
}

TEST_F(MetricsFileTest, AFolderThatVanishesIsToldOnceAndSoIsItsReturn) {
  std::filesystem::create_directory(folder.file("in"));
  path = folder.file("in/raidmonitor.prom");
  const auto vanish = [this] { std::filesystem::remove_all(folder.file("in")); };
  const auto comeBack = [this] { std::filesystem::create_directory(folder.file("in")); };
  const std::string told = play({{0, [] {}}, {1000, vanish}, {9000, comeBack}}, 12000);
  EXPECT_EQ("raidmonitor: " + path + ": cannot be written: No such file or directory\n" +
                "raidmonitor: " + path + ": is written again\n",
            told);
  EXPECT_TRUE(written);
  EXPECT_THAT(contentOf(path), HasSubstr("\nraidmonitor_volumes 1\n"));
}

TEST_F(MetricsFileTest, AnotherCauseIsToldToo) {
  std::filesystem::create_directory(folder.file("in"));
  path = folder.file("in/raidmonitor.prom");
  const auto vanish = [this] { std::filesystem::remove_all(folder.file("in")); };
  const auto becomeAFile = [this] { folder.write("in", ""); };
  const std::string told = play({{0, [] {}}, {1000, vanish}, {5000, becomeAFile}}, 8000);
  EXPECT_EQ("raidmonitor: " + path + ": cannot be written: No such file or directory\n" +
                "raidmonitor: " + path + ": cannot be written: Not a directory\n",
            told);
  EXPECT_FALSE(written);
}

TEST_F(MetricsFileTest, CountsWhatHappened) {
  EXPECT_THAT(play({{0, [] {}}}, 4000), IsEmpty());
  const std::string text = contentOf(path);
  EXPECT_THAT(text, HasSubstr("\nraidmonitor_events_total{event=\"device-appeared\"} 1\n"));
  EXPECT_THAT(text, HasSubstr("\nraidmonitor_events_total{event=\"raid-appeared\"} 1\n"));
}

}  // namespace
}  // namespace ProgramTest
