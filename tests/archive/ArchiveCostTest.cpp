#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "tests/archive/HostileArchives.h"
#include "tests/archive/Support.h"

namespace {

constexpr rlim_t mostSeconds = isSanitized ? 60 : 5;
constexpr std::size_t mostMemory = 20;  // times the size

struct Outcome {
  int status = 0;
  double seconds = 0;
  std::size_t memory = 0;
};

[[noreturn]] void beProbe(const std::string& archive) {
  const rlimit seconds{mostSeconds, mostSeconds};
  setrlimit(RLIMIT_CPU, &seconds);
  execl(PROBE, PROBE, archive.c_str(), nullptr);
  _exit(127);
}

Outcome probe(const std::string& archive) {
  const pid_t child = fork();
  if (child == 0) beProbe(archive);
  Outcome outcome;
  rusage usage{};
  wait4(child, &outcome.status, 0, &usage);
  const auto seconds = [](const timeval& time) {
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
  };
  outcome.seconds = seconds(usage.ru_utime) + seconds(usage.ru_stime);
  outcome.memory = static_cast<std::size_t>(usage.ru_maxrss) * 1024;
  return outcome;
}

// The processor's time is limited, which doesn't depend on what else the machine does; memory is
// what the process had resident at most.
void expectWithinLimits(const HostileArchive& hostile) {
  const TemporaryFolder folder;
  const std::string file = folder.write("archive.plist", hostile.make());
  const std::size_t size = std::filesystem::file_size(file);
  const Outcome outcome = probe(file);
  std::printf("%-45s %5.2f s, %5.1f times its size\n", hostile.name.c_str(), outcome.seconds,
              static_cast<double>(outcome.memory) / static_cast<double>(size));
  ASSERT_LT(hostileSize - hostileSize / 100, size) << hostile.name;
  ASSERT_TRUE(WIFEXITED(outcome.status)) << hostile.name << " was ended";
  EXPECT_GE(1, WEXITSTATUS(outcome.status)) << hostile.name;
  if (!isSanitized) {
    EXPECT_GE(mostMemory * size, outcome.memory) << hostile.name;
  }
}

}  // namespace

// No archive of ten megabytes takes more than twenty times its size in memory, or more than 5 s.
TEST(ArchiveCost, StaysWithinItsLimitsForXML) {
  for (const HostileArchive& hostile : hostileXML())
    expectWithinLimits(hostile);
}

TEST(ArchiveCost, StaysWithinItsLimitsForBinaryLists) {
  for (const HostileArchive& hostile : hostileBinaries())
    expectWithinLimits(hostile);
}

TEST(ArchiveCost, StaysWithinItsLimitsForTexts) {
  for (const HostileArchive& hostile : hostileTexts())
    expectWithinLimits(hostile);
}

TEST(ArchiveCost, StaysWithinItsLimitsForWhatIsPacked) {
  for (const HostileArchive& hostile : hostileGzip())
    expectWithinLimits(hostile);
}
