#include "application/exec/ExecListener.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "application/json/Json.h"
#include "application/json/JsonEvent.h"
#include "tests/application/support/Program.h"
#include "tests/application/support/TemporaryFolder.h"

namespace ProgramTest {
namespace {

using Program::DeviceEvent;
using Program::WatchEvent;
using testing::ElementsAre;
using testing::IsEmpty;

bool never() { return false; }

WatchEvent eventAt(Pelago::Milliseconds time) {
  return {time, DeviceEvent{DeviceEvent::Kind::Appeared, 7}};
}

class KeepingListener : public Program::WatchListener {
 public:
  void heard(const WatchEvent& event) override { events.push_back(jsonOf(event)); }

  std::vector<std::string> events;
};

class ExecListenerTest : public testing::Test {
 protected:
  std::unique_ptr<Program::ExecListener> listenerFor(std::vector<std::string> command,
                                                     const Program::ProgramLimits& limits = {}) {
    const auto complain = [this](const std::string& text) { complaints.push_back(text); };
    return std::make_unique<Program::ExecListener>(std::move(command), limits, others, complain);
  }
  // Appends what it is given to a file.
  std::unique_ptr<Program::ExecListener> appender(const Program::ProgramLimits& limits = {}) {
    return listenerFor({"sh", "-c", "cat >> \"$0\"", folder.file("out")}, limits);
  }
  std::vector<std::string> written() const { return linesOf(contentOf(folder.file("out"))); }

  TemporaryFolder folder;
  KeepingListener others;
  std::vector<std::string> complaints;
};

TEST_F(ExecListenerTest, HandsEachEventToTheProgramAsItsJSONLine) {
  const auto listener = appender();
  listener->heard(eventAt(1));
  listener->heard({2, Program::LogEvent{Pelago::Logger::Level::Debug, "C", "T"}});
  listener->heard({3, Program::HandlesEvent{}});
  listener->heard(eventAt(4));
  listener->endEvents();
  listener->drain(never);
  EXPECT_THAT(written(), ElementsAre(jsonOf(eventAt(1)), jsonOf(eventAt(4))));
  EXPECT_THAT(complaints, IsEmpty());
  EXPECT_THAT(others.events, IsEmpty());
}

TEST_F(ExecListenerTest, CountsWhatItDropsAndReportsItToAll) {
  Program::ProgramLimits limits;
  limits.queue = 0;
  const auto listener = appender(limits);
  for (const Pelago::Milliseconds time : {1, 2, 3})
    listener->heard(eventAt(time));
  listener->instantEnded({});
  EXPECT_THAT(others.events, IsEmpty()) << "there is no room yet";
  listener->endEvents();
  listener->drain(never);
  const std::string report = R"({"time": 3, "event": "dropped", "count": 3})";
  EXPECT_THAT(written(), ElementsAre(report));
  EXPECT_THAT(others.events, ElementsAre(report));
}

TEST_F(ExecListenerTest, LosesNoEventWithoutCountingItAndKeepsTheOrder) {
  constexpr int Events = 60;
  Program::ProgramLimits limits;
  limits.queue = 5;
  const auto listener = appender(limits);
  for (int time = 1; time <= Events; ++time)
    listener->heard(eventAt(time));
  listener->endEvents();
  listener->drain(never);
  int told = 0;
  for (const std::string& line : written()) {
    const Program::Json json = Program::Json::parse(line);
    told += json["event"] == "dropped" ? json["count"].get<int>() : 1;
    EXPECT_EQ(told, json["time"].get<int>()) << "up to there everything was told or counted";
  }
  EXPECT_EQ(Events, told);
  EXPECT_THAT(others.events, testing::Not(IsEmpty()));
}

TEST_F(ExecListenerTest, ComplainsOncePerCause) {
  const auto listener = listenerFor({folder.file("absent")});
  for (const Pelago::Milliseconds time : {1, 2, 3})
    listener->heard(eventAt(time));
  listener->drain(never);
  EXPECT_THAT(complaints, ElementsAre(folder.file("absent") +
                                      ": cannot be started: No such file or directory"));
}

TEST_F(ExecListenerTest, SaysHowManyEventsWereGivenUp) {
  Program::ProgramLimits limits;
  limits.time = std::chrono::minutes(1);
  auto listener = listenerFor({"sleep", "600"}, limits);
  for (const Pelago::Milliseconds time : {1, 2, 3})
    listener->heard(eventAt(time));
  int asked = 0;
  listener->drain([&asked] { return ++asked > 1; });
  // Whether the first one had been started by then, the machine decides.
  EXPECT_THAT(complaints,
              testing::Contains(testing::MatchesRegex("sleep: [23] events were not handed to it")));
}

}  // namespace
}  // namespace ProgramTest
