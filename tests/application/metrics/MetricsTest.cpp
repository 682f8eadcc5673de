#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <chrono>
#include <regex>
#include <set>

#include "tests/application/support/Program.h"
#include "tests/application/support/RenamedRecording.h"
#include "tests/application/support/TemporaryFolder.h"
#include "tests/application/support/Tool.h"

namespace ProgramTest {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

const std::string nobody = "5E700000-0000-4000-8000-000000000001";

constexpr const char* TimeSeries = "raidmonitor_last_look_timestamp_seconds ";

Result metrics(Arguments arguments) {
  arguments.insert(arguments.begin(), "metrics");
  return run(arguments);
}

double timeIn(const std::string& text) {
  const std::string line = std::string("\n") + TimeSeries;
  return std::stod(text.substr(text.find(line) + line.size()));
}

std::string withoutTime(const std::string& text) {
  return std::regex_replace(text, std::regex(std::string(TimeSeries) + "[0-9.]+"),
                            std::string(TimeSeries) + "TIME");
}

std::set<std::string> namesIn(const std::string& text, const std::string& pattern) {
  std::set<std::string> names;
  const std::regex expression(pattern);
  for (std::sregex_iterator match(text.begin(), text.end(), expression), end; match != end; ++match)
    names.insert((*match)[1]);
  return names;
}

double now() {
  return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch()).count();
}

TEST(Metrics, TellTheStateOfEverythingAtAMoment) {
  const Result result = metrics({"--until", "8000", "--expect-volumes", "3", "--expect", nobody,
                                 "--expect", "2f7a93d8-51ce-4e06-8d7b-94b6e0c3a125"});
  EXPECT_EQ(0, result.status);
  expectGolden("metrics-degraded.prom", withoutTime(result.out));
}

TEST(Metrics, NothingIsOnStandardErrorUnlessTheLogIsWanted) {
  EXPECT_EQ("", metrics({}).err);
  EXPECT_THAT(metrics({"--log"}).err, HasSubstr("[RAIDMonitor] ThunderboltDevice::waitForDisks\n"));
}

TEST(Metrics, HaveTheFormThatPrometheusAsksFor) {
  const Arguments moments[] = {
      {"--until", "0"},
      {"--until", "3000"},
      {"--until", "24000", "--expect", nobody, "--expect", "5e700000-0000-4000-8000-000000000001"},
      {"--registry", recording("odd-members")},
      {"--registry", recording("odd-switches")},
      {"--registry", recording("plug-in-in-stages/0.plist")},
      {"--registry", recording("spanning-set-leaves-through-the-other"), "--until", "4100"}};
  for (const Arguments& arguments : moments) {
    const Result checked = runTool({"promtool", "check", "metrics"}, metrics(arguments).out);
    EXPECT_EQ(0, checked.status) << arguments.back() << "\n" << checked.err;
    EXPECT_EQ("", checked.out + checked.err) << arguments.back();
  }
}

TEST(Metrics, AHostileNameIsALabelLikeAnyOther) {
  const TemporaryFolder folder;
  const std::string archive = degradedVolumeNamed(folder, "a\"} 1\nevil 1\\ {Größe}");
  const Result result = metrics({"--registry", archive});
  EXPECT_THAT(result.out, HasSubstr("name=\"a\\\"} 1\uFFFDevil 1\\\\ {Größe}\""));
  EXPECT_EQ(0, runTool({"promtool", "check", "metrics"}, result.out).status);
}

TEST(Metrics, TheTimeOfTheLookIsTheComputersAlsoOnARecording) {
  const double before = now();
  const double time = timeIn(metrics({"--until", "0"}).out);
  EXPECT_LE(before - 0.001, time);
  EXPECT_GE(now(), time);
}

TEST(Metrics, CountEventsAndNewErrorsOfARecording) {
  const std::string text = metrics({}).out;
  EXPECT_THAT(text, HasSubstr("\nraidmonitor_events_total{event=\"raid-updated\"} 10\n"));
  EXPECT_THAT(text, HasSubstr("\nraidmonitor_events_total{event=\"raid-appeared\"} 3\n"));
  EXPECT_THAT(text, HasSubstr("\nraidmonitor_degraded_member_changes_total 2\n"));
}

TEST(Metrics, ALookThatMissedSomethingIsNotComplete) {
  const std::string lost = recording("bridge-lost-while-the-switch-stays");
  EXPECT_THAT(metrics({"--registry", lost, "--until", "2000"}).out,
              HasSubstr("\nraidmonitor_last_look_complete 1\n"));
  EXPECT_THAT(metrics({"--registry", lost, "--until", "4000"}).out,
              HasSubstr("\nraidmonitor_last_look_complete 0\n"));
}

TEST(Metrics, AFileIsWrittenInsteadOfStandardOutputAndReadableByEverybody) {
  const TemporaryFolder folder;
  const std::string file = folder.file("raidmonitor.prom");
  const Result result = metrics({"--until", "8000", "--output", file});
  EXPECT_EQ(0, result.status) << result.err;
  EXPECT_EQ("", result.out);
  EXPECT_EQ(withoutTime(metrics({"--until", "8000"}).out), withoutTime(contentOf(file)));
  struct stat status {};
  ASSERT_EQ(0, stat(file.c_str(), &status));
  EXPECT_EQ(0644U, status.st_mode & 07777U);
  EXPECT_THAT(folder.names(), ElementsAre("raidmonitor.prom"));
}

TEST(Metrics, ARegistryThatCannotBeReadLeavesTheFileAsItWas) {
  const TemporaryFolder folder;
  const std::string file = folder.write("raidmonitor.prom", "old\n");
  const Result result = metrics({"--registry", folder.file("missing"), "--output", file});
  EXPECT_EQ(1, result.status);
  EXPECT_EQ("old\n", contentOf(file));
  EXPECT_EQ("", result.out);
}

TEST(Metrics, AFileThatCannotBeWrittenIsOneLineAndStatusOne) {
  const TemporaryFolder folder;
  const std::string file = folder.file("missing/raidmonitor.prom");
  const Result result = metrics({"--output", file});
  EXPECT_EQ(1, result.status);
  EXPECT_THAT(result.err, EndsWith("raidmonitor: " + file +
                                   ": cannot be written: No such file or directory\n"));
}

TEST(Metrics, AFullStandardOutputIsStatusOne) {
  Launch launch;
  launch.output = Launch::Output::File;
  launch.file = "/dev/full";
  EXPECT_EQ(1, run({"metrics"}, launch).status);
}

std::string packaged(const std::string& file) {
  return std::string(RAIDMONITOR_SOURCES) + "/packaging/prometheus/" + file;
}

TEST(AlertRules, AreWellFormed) {
  const Result result =
      runTool({"promtool", "check", "rules", "--lint-fatal", packaged("raidmonitor.rules.yml")});
  EXPECT_EQ(0, result.status) << result.out << result.err;
}

TEST(AlertRules, FireWhenTheyShould) {
  const Result result = runTool(
      {"promtool", "test", "rules",
       std::string(RAIDMONITOR_SOURCES) + "/tests/application/metrics/raidmonitor.rules.test.yml"});
  EXPECT_EQ(0, result.status) << result.out << result.err;
}

TEST(AlertRules, EachIsTested) {
  const std::string tests = contentOf(std::string(RAIDMONITOR_SOURCES) +
                                      "/tests/application/metrics/raidmonitor.rules.test.yml");
  const auto rules = namesIn(contentOf(packaged("raidmonitor.rules.yml")), "- alert: (\\w+)");
  EXPECT_THAT(rules, Not(IsEmpty()));
  EXPECT_EQ(rules, namesIn(tests, "alertname: (\\w+)"));
}

TEST(AlertRules, SpeakOfNothingButWhatTheProgramWrites) {
  const std::string rules = contentOf(packaged("raidmonitor.rules.yml"));
  const std::string written = metrics({"--expect", nobody, "--expect-volumes", "1"}).out;
  for (const std::string& name : namesIn(rules, "(raidmonitor_[a-z_]+)"))
    EXPECT_THAT(written, HasSubstr("\n# TYPE " + name + " ")) << name;
  auto labels = namesIn(rules, "labels\\.([a-z]+)");
  labels.erase("instance");  // Prometheus' own
  for (const std::string& label : labels)
    EXPECT_THAT(written, testing::ContainsRegex("[{,]" + label + "=")) << label;
  for (const char* state : {"degraded", "failed", "offline", "not-found", "coming-up"}) {
    EXPECT_THAT(rules, HasSubstr(state));
    EXPECT_THAT(written, HasSubstr(std::string("state=\"") + state + "\""));
  }
}

}  // namespace
}  // namespace ProgramTest
