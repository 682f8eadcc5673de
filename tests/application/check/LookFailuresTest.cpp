#include "application/session/LookFailures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>

#include "application/check/Assessment.h"
#include "application/session/Session.h"
#include "application/session/SessionObservers.h"
#include "model/RAIDHost.h"
#include "tests/application/support/StagedSource.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/EnclosureBuilder.h"

namespace ProgramTest {
namespace {

using namespace Program;
using MemoryRegistry::Operation;
using MemoryRegistry::Repeat;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using TestSupport::EnclosureBuilder;
using TestSupport::HostTree;

struct Answer {
  std::vector<std::string> failures;
  Severity severity = Severity::Ok;
  std::vector<std::string> details;
  std::uint64_t calls = 0;
};

// One look as `check` makes it on the live registry, at a mirror of two disks.
Answer look(
    const std::string& status, const std::function<void()>& order = [] {},
    Pelago::Milliseconds end = 2000) {
  MemoryRegistry::reset();
  const TestSupport::CapturedOutput quiet;
  const HostTree host;
  EnclosureBuilder enclosure(host, TestSupport::twoBay(7));
  enclosure.complete().addDisks({1, 2}).addSet({"SET", {1, 2}, "Projects", "Mirror", status});
  StagedSource source({{0, order}, {1000, [] {}}, {2000, [] {}}});
  LookFailures failures;
  SessionObservers observers;
  observers.add(failures);
  Answer answer;
  {
    Session session(source, observers, end);
    session.run();
    answer.calls = MemoryRegistry::calls();
    std::vector<EnclosureVolumes> enclosures;
    for (RAIDMonitoring::RAIDHost* each : session.hosts())
      enclosures.push_back(volumesOf(*each));
    answer.failures = failures.ofLastLook(session);
    for (const Finding& finding : assess(enclosures, {}, answer.failures)) {
      answer.severity = std::max(answer.severity, finding.severity);
      answer.details.push_back(finding.details);
    }
  }
  MemoryRegistry::reset();
  return answer;
}

std::function<void()> failing(Operation operation, std::uint64_t n, Repeat repeat = Repeat::Once) {
  return [=] { MemoryRegistry::failCall(operation, n, repeat); };
}

TEST(LookFailures, AWholeLookHasNone) { EXPECT_THAT(look("Online").failures, IsEmpty()); }

TEST(LookFailures, ASearchForDevicesThatFailsIsOne) {
  EXPECT_THAT(
      look("Online", failing(Operation::IORegistryCreateIterator, 1, Repeat::FromThenOn)).failures,
      ElementsAre("the registry could not be searched for devices"));
}

TEST(LookFailures, OneThatTheNextLookDoesNotMeetAgainIsForgotten) {
  const auto once = failing(Operation::IORegistryCreateIterator, 1);
  EXPECT_THAT(look("Online", once, 500).failures, testing::SizeIs(1));
  EXPECT_THAT(look("Online", once).failures, IsEmpty());
}

TEST(LookFailures, AWalkThatCannotBeMadeIsOne) {
  const Answer answer =
      look("Online", failing(Operation::IORegistryEntryCreateIterator, 1, Repeat::FromThenOn));
  EXPECT_NE(Severity::Ok, answer.severity);
}

// However the registry fails, once or for good, nobody is told that all is well when it is not, or
// when only a part was seen.
TEST(LookFailures, NoFailureOfTheRegistryMakesAnOK) {
  const Answer fine = look("Online");
  ASSERT_EQ(Severity::Ok, fine.severity);
  ASSERT_EQ(Severity::Warning, look("Degraded").severity);
  const char* wanted = std::getenv("FAULT_STRIDE");  // 1 tries every call
  const std::uint64_t stride = wanted == nullptr ? 29 : std::stoull(wanted);
  for (const Repeat repeat : {Repeat::Once, Repeat::FromThenOn}) {
    for (std::uint64_t n = 1; n <= fine.calls; n += stride) {
      const auto order = [n, repeat] { MemoryRegistry::failAnyCall(n, repeat); };
      const Answer answer = look("Online", order);
      if (answer.severity == Severity::Ok) {
        EXPECT_EQ(fine.details.size(), answer.details.size()) << "call " << n;
      }
      EXPECT_NE(Severity::Ok, look("Degraded", order).severity) << "call " << n;
    }
  }
}

}  // namespace
}  // namespace ProgramTest
