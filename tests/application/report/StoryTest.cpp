#include "application/report/Story.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>

#include "application/json/JsonEvent.h"
#include "application/session/Source.h"
#include "tests/application/support/Program.h"
#include "tests/application/support/StagedSource.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/EnclosureBuilder.h"

namespace ProgramTest {
namespace {

using Program::Story;
using testing::ElementsAre;
using testing::HasSubstr;
using TestSupport::EnclosureBuilder;
using TestSupport::HostTree;

// The lines of a watch, log and others apart: a story keeps them apart.
struct Told {
  std::vector<std::string> events;
  std::vector<std::string> log;
};

Told expectedOf(const std::string& name) {
  Told told;
  for (const std::string& line :
       linesOf(contentOf(recording("expected/" + name + ".watch.jsonl")))) {
    if (line.find("\"event\": \"handles\"") != std::string::npos) continue;
    const bool log = line.find("\"event\": \"log\"") != std::string::npos;
    (log ? told.log : told.events).push_back(line);
  }
  return told;
}

Program::WatchEvent watchEventOf(const Story::Event& event) {
  using DeviceKind = Program::DeviceEvent::Kind;
  using VolumeKind = Program::VolumeEvent::Kind;
  const auto device = [&event](DeviceKind kind) {
    return Program::WatchEvent{event.time, Program::DeviceEvent{kind, event.device}};
  };
  const auto volume = [&event](VolumeKind kind) {
    return Program::WatchEvent{event.time, Program::VolumeEvent{kind, event.volume, {}}};
  };
  switch (event.what) {
    case Story::Happening::DeviceAppeared:
      return device(DeviceKind::Appeared);
    case Story::Happening::DeviceDisappeared:
      return device(DeviceKind::Disappeared);
    case Story::Happening::VolumeAppeared:
      return volume(VolumeKind::Appeared);
    case Story::Happening::VolumeUpdated:
      return volume(VolumeKind::Updated);
    case Story::Happening::VolumeDisappeared:
      break;
  }
  return volume(VolumeKind::Disappeared);
}

Told toldBy(const Story& story) {
  Told told;
  for (const Story::Event& event : story.events)
    told.events.push_back(Program::jsonOf(watchEventOf(event)));
  for (const Story::LogLine& line : story.log) {
    told.log.push_back(
        Program::jsonOf({line.time, Program::LogEvent{line.level, line.category, line.text}}));
  }
  return told;
}

Story storyOfRecording(const std::string& name) {
  const TestSupport::CapturedOutput captured;
  const auto source = Program::openRegistry(recording(name), false);
  return Program::storyOf(*source, source->end());
}

class StoryOfRecordings : public testing::TestWithParam<std::string> {};

// Taking pictures asks the library for bays between what happens, and nothing comes of that.
TEST_P(StoryOfRecordings, TellsWhatWatchPrintsToTheLetter) {
  const Told told = toldBy(storyOfRecording(GetParam()));
  const Told expected = expectedOf(GetParam());
  EXPECT_EQ(expected.events, told.events);
  EXPECT_EQ(expected.log, told.log);
}

std::vector<std::string> recordings() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(recording("")))
    if (entry.is_directory() && entry.path().filename() != "expected")
      names.push_back(entry.path().filename());
  return names;
}

std::string testName(const testing::TestParamInfo<std::string>& info) {
  std::string name = info.param;
  for (char& c : name)
    if (c == '-') c = '_';
  return name;
}

INSTANTIATE_TEST_SUITE_P(Recordings, StoryOfRecordings, testing::ValuesIn(recordings()), testName);

class StoryTest : public testing::Test {
 protected:
  ~StoryTest() override { MemoryRegistry::reset(); }

  Story tell(std::vector<StagedSource::Change> changes, Pelago::Milliseconds end) {
    const TestSupport::CapturedOutput captured;
    StagedSource source(std::move(changes));
    return Program::storyOf(source, end);
  }

  static std::vector<Story::Moment> timesOf(const Story& story) {
    std::vector<Story::Moment> times;
    for (const Story::Frame& frame : story.frames)
      times.push_back(frame.time);
    return times;
  }

  HostTree host = (MemoryRegistry::reset(), HostTree());
  EnclosureBuilder enclosure{host, TestSupport::twoBay(7, 0)};
};

TEST_F(StoryTest, HasAFrameForEachMomentAtWhichSomethingIsOtherwise) {
  enclosure.complete().addDisks({1, 2}).addSet({"SET", {1, 2}});
  const auto fail = [this] {
    enclosure.setStatus("SET", "Degraded");
    enclosure.setMemberStatus(2, "Failed");
  };
  const auto pull = [this] { enclosure.pullDisk(2); };
  const Story story = tell({{0, [] {}}, {2500, fail}, {4500, pull}}, 12000);
  // The disk is seen to be gone at once; what became of the set only by the next refresh.
  EXPECT_THAT(timesOf(story), ElementsAre(0, 4000, 4500, 6000));
  EXPECT_EQ(12000, story.end);
}

TEST_F(StoryTest, AFrameShowsWhatIsSoWhenEverythingThatWasDueHasHappened) {
  enclosure.complete().addDisks({1, 2}).addSet({"SET", {1, 2}});
  const Story story = tell({{0, [] {}}}, 0);
  ASSERT_EQ(1U, story.frames.size());
  ASSERT_EQ(1U, story.frames[0].enclosures.size());
  EXPECT_EQ(1U, story.frames[0].enclosures[0]->volumes.size());
  EXPECT_EQ(2, story.frames[0].enclosures[0]->volumes[0].members.at(1).bay);
}

TEST_F(StoryTest, AnEnclosureThatDoesNotChangeSharesItsPicture) {
  EnclosureBuilder other(host, TestSupport::twoBay(8, 1));
  enclosure.complete().addDisks({1, 2}).addSet({"SET", {1, 2}});
  other.complete();
  const Story story = tell({{0, [] {}}, {500, [&other] { other.unplug(); }}}, 500);
  ASSERT_EQ(2U, story.frames.size());
  EXPECT_EQ(2U, story.frames[0].enclosures.size());
  ASSERT_EQ(1U, story.frames[1].enclosures.size());
  EXPECT_EQ(story.frames[0].enclosures[0], story.frames[1].enclosures[0]);
}

TEST_F(StoryTest, ASignalEndsItAndWhatWasSeenUntilThenIsKept) {
  enclosure.complete().addDisks({1, 2}).addSet({"SET", {1, 2}});
  const auto pull = [this] { enclosure.pullDisk(2); };
  const Story story = tell({{0, [] {}}, {500, [] { raise(SIGTERM); }}, {2500, pull}}, 12000);
  EXPECT_EQ(500, story.end);
  EXPECT_THAT(timesOf(story), ElementsAre(0));
  EXPECT_EQ(2U, story.events.size());
}

TEST_F(StoryTest, TheFrameInForceIsTheLastOneThatIsNotLater) {
  Story story;
  story.frames.resize(2);
  story.frames[0].time = 1000;
  story.frames[1].time = 3000;
  EXPECT_EQ(nullptr, story.frameAt(999));
  EXPECT_EQ(&story.frames[0], story.frameAt(1000));
  EXPECT_EQ(&story.frames[0], story.frameAt(2999));
  EXPECT_EQ(&story.frames[1], story.frameAt(9000));
}

}  // namespace
}  // namespace ProgramTest
