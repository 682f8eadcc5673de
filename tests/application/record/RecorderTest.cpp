#include "application/record/Recorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>

#include "application/record/RecordingFolder.h"
#include "platform/pelago/Application.h"
#include "platform/registry/memory/MemoryRegistry.h"
#include "platform/registry/memory/archive/Archive.h"
#include "tests/application/support/Program.h"
#include "tests/application/support/StagedSource.h"
#include "tests/application/support/TemporaryFolder.h"

namespace ProgramTest {
namespace {

using Program::Recorder;
using Program::RecordingFolder;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::internal::CaptureStderr;
using testing::internal::GetCapturedStderr;

class RecorderTest : public testing::Test {
 protected:
  RecorderTest() { MemoryRegistry::reset(); }
  ~RecorderTest() override { MemoryRegistry::reset(); }

  static void set(const std::string& key, int value) {
    MemoryRegistry::setProperty(MemoryRegistry::root(), key, value);
  }

  std::vector<std::string> files() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder.path()))
      names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
  }

  void record(Program::Source& source, Recorder::Plan plan) {
    RecordingFolder target(folder.path());
    Pelago::Application application(source.clock());
    Recorder(source, target, nullptr, plan).run();
  }

  TemporaryFolder folder;
};

// A clock that changes the registry while it is waited on.
class ChangingClock : public Pelago::Clock {
 public:
  using Change = std::function<void()>;

  explicit ChangingClock(std::map<Pelago::Milliseconds, Change> changes)
      : _changes(std::move(changes)) {}

  Pelago::Milliseconds now() const override { return _now; }
  bool waitUntil(Pelago::Milliseconds moment) override {
    while (!_interrupted && !_changes.empty() && _changes.begin()->first <= moment) {
      _now = std::max(_now, _changes.begin()->first);
      const Change change = _changes.begin()->second;
      _changes.erase(_changes.begin());
      change();
    }
    if (_interrupted) return false;
    _now = std::max(_now, moment);
    return true;
  }
  void interrupt() override { _interrupted = true; }

 private:
  std::map<Pelago::Milliseconds, Change> _changes;
  Pelago::Milliseconds _now = 0;
  bool _interrupted = false;
};

class ChangingSource : public Program::Source {
 public:
  explicit ChangingSource(std::map<Pelago::Milliseconds, ChangingClock::Change> changes)
      : _clock(std::move(changes)) {}

  Pelago::Clock& clock() override { return _clock; }
  std::optional<Pelago::Milliseconds> nextLook() const override { return 0; }
  void prepareLook() override { ADD_FAILURE() << "its content comes by itself"; }
  std::optional<Pelago::Milliseconds> end() const override { return std::nullopt; }
  std::optional<Program::HandleAccounts> accounts() const override { return std::nullopt; }

 private:
  ChangingClock _clock;
};

Recorder::Plan until(Pelago::Milliseconds end, Pelago::Milliseconds every = 2000) {
  Recorder::Plan plan;
  plan.until = end;
  plan.every = every;
  return plan;
}

TEST_F(RecorderTest, WritesWhatALookFindsChanged) {
  ChangingSource source({{100, [] { set("Key", 1); }},
                         {2500, [] { set("Statistics", 1); }},
                         {4100, [] { set("Key", 2); }},
                         {5900, [] { set("Key", 3); }}});
  record(source, until(9000));
  EXPECT_THAT(files(), ElementsAre("0.plist", "2000.plist", "6000.plist"));
}

TEST_F(RecorderTest, LooksAsOftenAsItIsTold) {
  ChangingSource source({{100, [] { set("Key", 1); }}, {301, [] { set("Key", 2); }}});
  record(source, until(1000, 50));
  EXPECT_THAT(files(), ElementsAre("0.plist", "100.plist", "350.plist"));
}

TEST_F(RecorderTest, AChangeThatIsGoneByTheNextLookIsNotNoticed) {
  set("Key", 0);
  ChangingSource source({{100, [] { set("Key", 1); }}, {200, [] { set("Key", 0); }}});
  record(source, until(9000));
  EXPECT_THAT(files(), ElementsAre("0.plist"));
}

TEST_F(RecorderTest, EndsInOrderWhenItIsToldTo) {
  ChangingSource source(
      {{2100, [] { set("Key", 1); }}, {4500, [] { Pelago::Application::instance()->quit(); }}});
  record(source, Recorder::Plan());
  EXPECT_THAT(files(), ElementsAre("0.plist", "4000.plist"));
}

TEST_F(RecorderTest, ALookThatFailsIsLeftOutWithALine) {
  const auto failLater = [] {
    set("Key", 1);
    MemoryRegistry::failCall(MemoryRegistry::Operation::IORegistryGetRootEntry, 1,
                             MemoryRegistry::Repeat::FromThenOn);
  };
  ChangingSource source({{100, failLater}, {2100, [] { MemoryRegistry::failNothing(); }}});
  CaptureStderr();
  record(source, until(5000));
  EXPECT_EQ("raidmonitor: the registry could not be read, once\n", GetCapturedStderr());
  EXPECT_THAT(files(), ElementsAre("0.plist", "4000.plist"));
}

TEST_F(RecorderTest, ARegistryThatCannotBeReadAtFirstIsAnError) {
  MemoryRegistry::failCall(MemoryRegistry::Operation::IORegistryGetRootEntry, 1,
                           MemoryRegistry::Repeat::FromThenOn);
  ChangingSource source({});
  EXPECT_THROW(record(source, until(5000)), Program::SourceError);
  EXPECT_THAT(files(), IsEmpty());
}

// A replay is looked at when it changes, and its last moment is kept.
class ReplayedSource : public StagedSource {
 public:
  using StagedSource::StagedSource;
  bool waits() const override { return false; }
};

TEST_F(RecorderTest, AReplayIsWrittenAtTheTimesAtWhichItChanges) {
  ReplayedSource source(
      {{0, [] { set("Key", 1); }}, {137, [] { set("Key", 2); }}, {138, [] {}}, {4001, [] {
                                                                                  set("Key", 3);
                                                                                }}});
  record(source, Recorder::Plan());
  EXPECT_THAT(files(), ElementsAre("0.plist", "137.plist", "4001.plist"));
}

TEST_F(RecorderTest, TheLastMomentOfAReplayIsWrittenThoughNothingChangesThen) {
  ReplayedSource source({{0, [] { set("Key", 1); }}, {137, [] {}}, {9001, [] {}}});
  record(source, Recorder::Plan());
  EXPECT_THAT(files(), ElementsAre("0.plist", "9001.plist"));
  EXPECT_EQ(contentOf(folder.file("0.plist")), contentOf(folder.file("9001.plist")));
}

TEST_F(RecorderTest, OfAReplayNothingBeyondTheEndIsWritten) {
  ReplayedSource source(
      {{0, [] { set("Key", 1); }}, {137, [] { set("Key", 2); }}, {9001, [] { set("Key", 3); }}});
  record(source, until(9000));
  EXPECT_THAT(files(), ElementsAre("0.plist", "137.plist"));
}

TEST_F(RecorderTest, EachFileIsAnArchiveOfThatMoment) {
  ChangingSource source({{100, [] { set("Key", 1); }}});
  record(source, until(3000));
  const auto content = MemoryRegistry::readArchive(folder.file("2000.plist"));
  ASSERT_EQ(1U, content.entries.size());
  EXPECT_EQ(1U, content.entries.front().description.properties.size());
}

}  // namespace
}  // namespace ProgramTest
