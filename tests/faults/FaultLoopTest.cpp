#include "tests/faults/FaultLoop.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <cstdlib>
#include <list>
#include <new>
#include <stdexcept>

#include "platform/registry/Registry.h"

// The judges of the fault loops are judged: of a scenario that does something wrong as soon as
// something fails they have to complain, and name the fault.

namespace FaultTest {
namespace {

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

io_registry_entry_t lookUpRoot() { return IORegistryGetRootEntry(RAIDMonitoring::registryPort); }

// Looks the root up so many times, and does what is wrong when the last time fails.
Scenario sabotage(std::uint64_t lookUps, const std::function<void()>& wrong) {
  return {"sabotage", [lookUps, wrong](Life& life) {
            life.pass(100);
            for (std::uint64_t number = 1; number <= lookUps; ++number) {
              const io_registry_entry_t root = lookUpRoot();
              if (number == lookUps && root == 0) wrong();
              IOObjectRelease(root);
            }
          }};
}

// A short life is tried from its beginning; the last operation of a long one from the call before.
std::vector<std::string> complaintsOfShortLife(const std::function<void()>& wrong) {
  const Tally tally = tryRegistryFaults(sabotage(2, wrong), {0, 1, 1});
  EXPECT_EQ(2U, tally.operations);
  EXPECT_EQ(4U, tally.faults);  // also those behind a crash
  return tally.complaints;
}
std::vector<std::string> complaintsOfLongLife(const std::function<void()>& wrong) {
  constexpr unsigned lookUps = 100'000;
  const Tally tally = tryRegistryFaults(sabotage(lookUps, wrong), {lookUps - 1, lookUps, 1});
  EXPECT_EQ(lookUps, tally.operations);
  return tally.complaints;
}

void expectComplaint(const std::string& text, const std::function<void()>& wrong) {
  EXPECT_THAT(complaintsOfShortLife(wrong),
              ElementsAre("sabotage, operation, once 2: " + text,
                          "sabotage, operation, for good 1: " + text,
                          "sabotage, operation, for good 2: " + text));
  EXPECT_THAT(complaintsOfLongLife(wrong),
              ElementsAre("sabotage, operation, once 100000: " + text,
                          "sabotage, operation, for good 100000: " + text));
}

TEST(FaultLoopJudges, HaveNothingAgainstWhatIsInOrder) {
  EXPECT_THAT(complaintsOfShortLife([] {}), IsEmpty());
  EXPECT_THAT(complaintsOfLongLife([] {}), IsEmpty());
}

TEST(FaultLoopJudges, NoticeACrash) {
  expectComplaint("was ended by signal 6, Aborted", [] { std::abort(); });
}

TEST(FaultLoopJudges, NoticeAnExit) {
  expectComplaint("ended in the middle", [] { _exit(0); });
}

TEST(FaultLoopJudges, NoticeAnExceptionThatIsNone) {
  expectComplaint("threw something else", [] { throw std::runtime_error("something else"); });
}

TEST(FaultLoopJudges, NoticeMemoryThatIsKept) {
  static std::list<int> kept;
  const auto keep = [] { kept.push_back(1); };
  EXPECT_THAT(complaintsOfShortLife(keep),
              AllOf(SizeIs(3), Each(HasSubstr(" allocations are alive instead of "))));
  EXPECT_THAT(complaintsOfLongLife(keep),
              AllOf(SizeIs(2), Each(HasSubstr(" allocations are alive instead of "))));
}

TEST(FaultLoopJudges, NoticeAHandleThatIsKept) {
  const Tally tally = tryRegistryFaults(sabotage(2, [] { lookUpRoot(); }), {0, 1, 1});
  // Where all that follows fails too, nothing is looked up.
  EXPECT_THAT(tally.complaints,
              ElementsAre(AllOf(HasSubstr("sabotage, operation, once 2: kept on entry "),
                                HasSubstr(": 1 instead of 0"))));
}

TEST(FaultLoopJudges, NoticeAnAllocationFailureThatNobodyIsToldOf) {
  const Scenario silent{"sabotage", [](Life& life) {
                          life.pass(100);
                          try {
                            ::operator delete(::operator new(1));
                          } catch (const std::bad_alloc&) {
                          }
                        }};
  const Tally tally = tryAllocationFailures(silent, {0, 1, 1});
  ASSERT_FALSE(tally.complaints.empty());
  EXPECT_EQ("sabotage, allocation " + std::to_string(tally.operations) + ": 0 exceptions",
            tally.complaints.back());
}

}  // namespace
}  // namespace FaultTest
