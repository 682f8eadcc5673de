#include "tests/layers/LayerRules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace LayersTest {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

std::vector<std::string> violationsOf(const std::string& path, const std::string& content) {
  return violationsIn({{path, content}});
}

std::vector<std::string> violationsOfInclude(const std::string& path, const std::string& included) {
  return violationsOf(path, "#include \"" + included + "\"\n");
}

TEST(LayerRules, IncludesGoDownwardsOnly) {
  const struct {
    const char* from;
    const char* included;
    bool allowed;
  } rows[] = {
      {"monitor/RAIDMonitor.cpp", "monitor/UpdateTimer.h", true},
      {"monitor/RAIDMonitor.cpp", "model/RAIDHost.h", true},
      {"monitor/RAIDMonitor.cpp", "platform/pelago/Logger.h", true},
      {"monitor/RAIDMonitor.cpp", "RAIDMonitoringExport.h", true},
      {"monitor/RAIDMonitor.cpp", "thunderbolt/ThunderboltDevice.h", false},
      {"monitor/RAIDMonitor.cpp", "platform/registry/Registry.h", false},
      {"monitor/RAIDMonitor.cpp", "application/Words.h", false},
      {"monitor/RAIDMonitorMac.cpp", "thunderbolt/ThunderboltDevice.h", true},
      {"monitor/RAIDMonitorMac.cpp", "platform/registry/Registry.h", false},
      {"monitor/RAIDMonitorMac.cpp", "monitor/RAIDMonitorMac.h", true},
      {"monitor/RAIDMonitorMac.cpp", "application/Words.h", false},
      {"thunderbolt/ThunderboltDevice.cpp", "thunderbolt/PollingEvent.h", true},
      {"thunderbolt/ThunderboltDevice.cpp", "model/RAIDVolume.h", true},
      {"thunderbolt/ThunderboltDevice.cpp", "platform/pelago/Logger.h", true},
      {"thunderbolt/ThunderboltDevice.cpp", "platform/registry/Registry.h", true},
      {"thunderbolt/ThunderboltDevice.cpp", "platform/registry/memory/MemoryRegistry.h", false},
      {"thunderbolt/ThunderboltDevice.cpp", "monitor/RAIDMonitor.h", false},
      {"model/RAIDVolume.cpp", "model/RAIDHost.h", true},
      {"model/RAIDVolume.cpp", "platform/pelago/Object.h", true},
      {"model/RAIDVolume.cpp", "platform/registry/Vocabulary.h", true},
      {"model/RAIDVolume.cpp", "platform/registry/iokit/SystemRegistry.h", false},
      {"model/RAIDVolume.cpp", "thunderbolt/ThunderboltDevice.h", false},
      {"model/RAIDVolume.cpp", "monitor/RAIDMonitor.h", false},
      {"platform/pelago/Object.cpp", "platform/pelago/Application.h", true},
      {"platform/pelago/Object.cpp", "platform/registry/Registry.h", false},
      {"platform/pelago/Object.cpp", "model/RAIDVolume.h", false},
      {"platform/registry/Registry.h", "platform/registry/iokit/SystemRegistry.h", true},
      {"platform/registry/Registry.h", "platform/registry/memory/MemoryRegistrySeam.h", true},
      {"platform/registry/IOKitUtilities.cpp", "platform/pelago/Logger.h", false},
      {"platform/registry/memory/Entry.cpp", "platform/registry/memory/Entry.h", true},
      {"platform/registry/memory/Entry.cpp", "platform/registry/Registry.h", true},
      {"platform/registry/memory/Entry.cpp", "platform/registry/iokit/SystemRegistry.h", false},
      {"platform/registry/memory/Entry.cpp", "platform/pelago/Object.h", false},
      {"platform/registry/iokit/SystemRegistry.h", "platform/registry/memory/Entry.h", false},
      {"platform/stray.cpp", "platform/pelago/Object.h", false},
      {"application/main.cpp", "application/Words.h", true},
      {"application/main.cpp", "monitor/RAIDMonitor.h", true},
      {"application/main.cpp", "model/RAIDVolume.h", true},
      {"application/main.cpp", "platform/pelago/Application.h", true},
      {"application/main.cpp", "platform/registry/Vocabulary.h", true},
      {"application/main.cpp", "platform/registry/memory/MemoryRegistry.h", true},
      {"application/main.cpp", "platform/registry/iokit/SystemRegistry.h", false},
      {"application/main.cpp", "thunderbolt/ThunderboltDevice.h", false},
      {"tests/model/RAIDVolumeTest.cpp", "tests/support/EventPump.h", true},
      {"tests/model/RAIDVolumeTest.cpp", "thunderbolt/ThunderboltDevice.h", true},
      {"bench/bench_refresh.cpp", "platform/registry/memory/MemoryRegistry.h", true},
  };
  for (const auto& row : rows) {
    std::vector<std::string> found = violationsIn(
        {{row.from, std::string("#pragma once\n#include \"") + row.included + "\"\n"}});
    EXPECT_EQ(row.allowed ? 0U : 1U, found.size()) << row.from << " includes " << row.included;
  }
}

TEST(LayerRules, NothingOfTheProductIncludesTestsOrBenchmarks) {
  for (const char* folder : {"monitor", "thunderbolt", "model", "platform/pelago",
                             "platform/registry", "platform/registry/memory", "application"}) {
    for (const char* included : {"tests/support/EventPump.h", "bench/Bench.h"}) {
      EXPECT_THAT(violationsOfInclude(std::string(folder) + "/x.cpp", included), testing::SizeIs(1))
          << folder << " includes " << included;
    }
  }
}

TEST(LayerRules, AViolationNamesFileLineAndWhatIsWrong) {
  EXPECT_THAT(violationsOf("model/RAIDVolume.cpp",
                           "#include <string>\n\n  #  include \"thunderbolt/PollingEvent.h\"\n"),
              ElementsAre("model/RAIDVolume.cpp:3: model/ may not include "
                          "thunderbolt/PollingEvent.h"));
}

TEST(LayerRules, AngleBracketsAndShortPathsAreNoWayRound) {
  EXPECT_THAT(violationsOf("model/a.cpp", "#include <monitor/RAIDMonitor.h>\n"),
              ElementsAre("model/a.cpp:1: model/ may not include monitor/RAIDMonitor.h"));
  EXPECT_THAT(violationsOf("model/a.cpp", "#include <tests/support/EventPump.h>\n"),
              ElementsAre("model/a.cpp:1: model/ may not include tests/support/EventPump.h"));
  EXPECT_THAT(violationsOfInclude("model/a.cpp", "RAIDVolume.h"),
              ElementsAre("model/a.cpp:1: model/ may not include RAIDVolume.h"));
  EXPECT_THAT(violationsOfInclude("model/a.cpp", "../monitor/RAIDMonitor.h"),
              ElementsAre("model/a.cpp:1: model/ may not include ../monitor/RAIDMonitor.h"));
}

TEST(LayerRules, OtherLibrariesAreNotTheRulesConcern) {
  EXPECT_THAT(violationsOf("application/main.cpp", "#include <CLI/CLI.hpp>\n#include <vector>\n"),
              IsEmpty());
}

TEST(LayerRules, OneFileOfTheApplicationMayKnowTheInMemoryRegistry) {
  const std::string load = "#include \"platform/registry/memory/MemoryRegistry.h\"\n";
  EXPECT_THAT(violationsIn({{"application/Load.cpp", load}, {"application/main.cpp", "\n"}}),
              IsEmpty());
  EXPECT_THAT(
      violationsIn({{"application/Load.cpp", load}, {"application/main.cpp", load}}),
      ElementsAre("application/main.cpp: application/Load.cpp already is the application's one "
                  "file that includes platform/registry/memory/"));
}

TEST(LayerRules, OnlyTheRegistryTestsForMacOSAndIncludesItsFrameworks) {
  for (const char* line :
       {"#ifdef __APPLE__", "#ifndef __APPLE__", "# if defined(__APPLE__) && x", "#elif __APPLE__",
        "#include <IOKit/IOKitLib.h>", "#include <CoreFoundation/CoreFoundation.h>"}) {
    for (const char* path :
         {"monitor/a.cpp", "thunderbolt/a.cpp", "model/a.cpp", "platform/pelago/a.cpp",
          "application/a.cpp", "tests/a.cpp", "bench/a.cpp"}) {
      EXPECT_THAT(violationsOf(path, line), testing::SizeIs(1)) << path << ": " << line;
    }
    EXPECT_THAT(violationsOf("platform/registry/iokit/a.cpp", line), IsEmpty()) << line;
  }
  EXPECT_THAT(violationsOf("model/a.cpp", "// __APPLE__ is tested elsewhere\n"), IsEmpty());
}

TEST(LayerRules, AHeaderHasPragmaOnce) {
  EXPECT_THAT(violationsOf("model/a.h", "#pragma once\n"), IsEmpty());
  EXPECT_THAT(violationsOf("model/a.h", "// #pragma once\n"),
              ElementsAre("model/a.h: a header without #pragma once"));
  EXPECT_THAT(violationsOf("tests/a.h", ""),
              ElementsAre("tests/a.h: a header without #pragma once"));
  EXPECT_THAT(violationsOf("model/a.cpp", ""), IsEmpty());
}

TEST(LayerRules, AProductFileHasAtMostFiveHundredLines) {
  std::string content;
  for (int line = 0; line < 500; ++line)
    content += "\n";
  EXPECT_THAT(violationsOf("model/a.cpp", content), IsEmpty());
  content += "\n";
  EXPECT_THAT(violationsOf("model/a.cpp", content),
              ElementsAre("model/a.cpp: has 501 lines, more than 500"));
  EXPECT_THAT(violationsOf("tests/a.cpp", content), IsEmpty());
}

}  // namespace
}  // namespace LayersTest
