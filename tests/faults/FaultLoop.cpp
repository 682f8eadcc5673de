#include "tests/faults/FaultLoop.h"

#include <algorithm>
#include <cstdlib>
#include <exception>
#include <numeric>

#include "tests/faults/Branch.h"
#include "tests/faults/FaultMode.h"
#include "tests/faults/LifeJudge.h"
#include "tests/support/FailingMemory.h"

namespace FaultTest {
namespace {

using TestSupport::FailingAllocation;
using TestSupport::PlentyOfMemory;

constexpr std::size_t MostComplaints = 12;
constexpr std::chrono::seconds LongestSilence{60};  // however much else the machine has to do

#if defined(__SANITIZE_ADDRESS__)
constexpr bool isSanitized = true;
#elif defined(__has_feature)
constexpr bool isSanitized = __has_feature(address_sanitizer);
#else
constexpr bool isSanitized = false;
#endif

// At most some seconds' worth of lives for each scenario, so that all tests stay within the time
// that somebody waits for them.
unsigned affordableStride(std::uint64_t callsOfLife, std::uint64_t faults) {
  if (const char* stride = std::getenv("FAULT_STRIDE"))
    return std::max(1U, static_cast<unsigned>(std::strtoul(stride, nullptr, 10)));
  constexpr std::uint64_t affordable = isSanitized ? 2'000'000 : 120'000'000;
  return static_cast<unsigned>(1 + callsOfLife * faults / affordable);
}

// Lives of fewer calls are tried from their beginning: to branch off costs as much.
constexpr std::uint64_t LongLife = 60'000;
constexpr std::uint64_t MostPerBranch = 100;

// Branches tell of a fault that they begin to try, of complaints, and of texts that are new.
constexpr char Fault = '?';
constexpr char Complaint = '!';
constexpr char LoggedText = '=';

template <class Texts>
void tellAll(char kind, const Texts& texts) {
  for (const std::string& text : texts)
    tell(kind + text);
}

class Loop {
 public:
  Loop(const Scenario& scenario, Share share, std::vector<FaultMode> modes)
      : _scenario(scenario), _share(share), _modes(std::move(modes)) {}

  Tally work();

 private:
  using Counts = std::vector<std::uint64_t>;  // by mode, since the life began

  void playClean();
  void play(Life& life, const std::function<void()>& atCall);
  void finish(Life& life, LifeJudge& judge, const FaultMode* mode) const;

  void tryFromBeginning();
  [[noreturn]] void tryInBranch(const FaultMode& mode, std::uint64_t first, std::uint64_t last);
  void tryLife(const FaultMode& mode, std::uint64_t n, LifeJudge& judge);

  void tryFromCalls();
  void branchOffForEach();

  std::uint64_t accept(const BranchReport& report);
  void complainAll(const std::string& life, const std::vector<std::string>& complaints);

  std::uint64_t step() const { return std::uint64_t{_share.of} * _tally.stride; }
  std::uint64_t firstOf(const FaultMode& mode, std::uint64_t after) const;
  bool isEnough() const { return _tally.complaints.size() >= MostComplaints; }
  Counts counts() const;

  const Scenario& _scenario;
  Share _share;
  std::vector<FaultMode> _modes;
  Counts _start;
  std::vector<Counts> _points;  // of the clean life: at its beginning, before each call, at its end
  std::size_t _point = 0;
  std::uint64_t _callsOfLife = 0;
  Ending _ending;
  const FaultMode* _branch = nullptr;  // what fails, where this is a branch from a call
  Tally _tally;
};

Tally Loop::work() {
  // Twice: what is asked for but once, by whoever, is there afterwards.
  playClean();
  playClean();
  _tally.operations = _points.back().front();
  const Counts& all = _points.back();
  const auto faults = std::accumulate(all.begin(), all.end(), std::uint64_t{0});
  _tally.stride = _share.stride != 0 ? _share.stride : affordableStride(_callsOfLife, faults);
  if (_callsOfLife < LongLife) {
    tryFromBeginning();
  } else {
    tryFromCalls();
  }
  return _tally;
}

// ---- Lives --------------------------------------------------------------------------------------

Loop::Counts Loop::counts() const {
  Counts counts;
  for (std::size_t mode = 0; mode < _modes.size(); ++mode)
    counts.push_back(_modes[mode].count() - (_start.empty() ? 0 : _start[mode]));
  return counts;
}

void Loop::play(Life& life, const std::function<void()>& atCall) {
  {
    const PlentyOfMemory plenty;
    _start.clear();
    _start = counts();
  }
  atCall();
  life.beforeCalls(atCall);
  _scenario.play(life);
  life.beforeCalls({});
}

void Loop::playClean() {
  _points.clear();
  const auto notePoint = [this] {
    const PlentyOfMemory plenty;
    _points.push_back(counts());
  };
  LifeJudge judge(_scenario.unreadable);
  {
    Life life;
    play(life, notePoint);
    notePoint();
    _callsOfLife = MemoryRegistry::calls();
    _ending = judge.judge(life, nullptr);
  }
  judge.judgeMemory();
  _tally.complaints.clear();
  complainAll("clean", judge.complaints());
}

void Loop::finish(Life& life, LifeJudge& judge, const FaultMode* mode) const {
  if (mode != nullptr) {
    mode->lift();
    if (life.exceptions() != mode->exceptions)
      judge.complain(std::to_string(life.exceptions()) + " exceptions");
  }
  judge.judge(life, &_ending);
}

// ---- From the beginning, many in a branch -------------------------------------------------------

void Loop::tryFromBeginning() {
  for (std::size_t index = 0; index < _modes.size(); ++index) {
    const FaultMode& mode = _modes[index];
    const std::uint64_t last = _points.back()[index];
    std::uint64_t n = firstOf(mode, 0);
    while (n <= last && !isEnough()) {
      const auto report = branchOff(LongestSilence);
      if (!report) tryInBranch(mode, n, std::min(last, n + step() * (MostPerBranch - 1)));
      // After one that crashed with the next.
      n += step() * accept(*report);
    }
  }
}

void Loop::tryInBranch(const FaultMode& mode, std::uint64_t first, std::uint64_t last) {
  forgetLoggedTexts();
  for (std::uint64_t n = first; n <= last; n += step()) {
    tell(Fault + mode.name + " " + std::to_string(n));
    LifeJudge judge(_scenario.unreadable);
    tryLife(mode, n, judge);
    judge.judgeMemory();
    tellAll(Complaint, judge.complaints());
  }
  tellAll(LoggedText, loggedTexts());
  endBranch();
}

void Loop::tryLife(const FaultMode& mode, std::uint64_t n, LifeJudge& judge) {
  try {
    Life life;
    mode.fail(n);
    _scenario.play(life);
    finish(life, judge, &mode);
  } catch (const std::exception& exception) {
    mode.lift();
    judge.complain(std::string("threw ") + exception.what());
  }
}

// ---- From the call in which it happens, one in a branch -----------------------------------------

// The life that goes on from one fault to the next is a clean one.
void Loop::tryFromCalls() {
  LifeJudge judge(_scenario.unreadable);
  try {
    Life life;
    play(life, [this] { branchOffForEach(); });
    finish(life, judge, _branch);
  } catch (const std::exception& exception) {
    // A branch must not get out of here: it would run the other tests.
    if (_branch == nullptr) throw;
    judge.complain(std::string("threw ") + exception.what());
  }
  judge.judgeMemory();
  if (_branch == nullptr) return complainAll("clean", judge.complaints());
  tellAll(Complaint, judge.complaints());
  tellAll(LoggedText, loggedTexts());
  endBranch();
}

// Each fault that comes to pass before the next call.
void Loop::branchOffForEach() {
  if (_branch != nullptr) return;
  const PlentyOfMemory plenty;
  const Counts& from = _points.at(_point);
  const Counts& to = _points.at(++_point);
  if (counts() != from) complainAll("clean", {"is not played as it was before"});
  for (std::size_t index = 0; index < _modes.size(); ++index) {
    const FaultMode& mode = _modes[index];
    for (std::uint64_t n = firstOf(mode, from[index]); n <= to[index] && !isEnough(); n += step()) {
      if (const auto report = branchOff(LongestSilence)) {
        accept(*report);
        continue;
      }
      forgetLoggedTexts();
      tell(Fault + mode.name + " " + std::to_string(n));
      _branch = &mode;
      mode.fail(n - from[index]);
      return;
    }
  }
}

// ---- What came of it ----------------------------------------------------------------------------

// Those of this share are numbered first, first + step and so on.
std::uint64_t Loop::firstOf(const FaultMode& mode, std::uint64_t after) const {
  const std::uint64_t first =
      1 + (mode.isBetween ? _tally.stride / 2 : 0) + std::uint64_t{_share.number} * _tally.stride;
  if (first > after) return first;
  return first + (after - first) / step() * step() + step();
}

// Returns how many faults were tried.
std::uint64_t Loop::accept(const BranchReport& report) {
  std::uint64_t faults = 0;
  std::string fault = "before the first fault";
  for (const std::string& line : report.lines) {
    const std::string text = line.substr(1);
    if (line.front() == Fault) {
      ++faults;
      fault = text;
    } else if (line.front() == Complaint) {
      complainAll(fault, {text});
    } else {
      noteLoggedText(text);
    }
  }
  if (!report.failure.empty()) complainAll(fault, {report.failure});
  _tally.faults += faults;
  return faults;
}

void Loop::complainAll(const std::string& life, const std::vector<std::string>& complaints) {
  for (const std::string& complaint : complaints)
    _tally.complaints.push_back(_scenario.name + ", " + life + ": " + complaint);
}

}  // namespace

Tally tryRegistryFaults(const Scenario& scenario, Share share) {
  const NoOutput silence;
  return Loop(scenario, share, registryFaultModes()).work();
}

Tally tryAllocationFailures(const Scenario& scenario, Share share) {
  const NoOutput silence;
  return Loop(scenario, share, {allocationFailureMode()}).work();
}

}  // namespace FaultTest
