#include "platform/pelago/Logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cwchar>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/CapturingLog.h"

namespace PelagoTest {
namespace {

using Pelago::Logger;
using testing::ElementsAre;
using TestSupport::debug;
using TestSupport::info;
using TestSupport::message;

class LoggerTest : public testing::Test {
 protected:
  ~LoggerTest() override { Logger::setSink({}); }
};

TEST_F(LoggerTest, EachOperationHasItsLevelAndItsName) {
  const struct {
    const char* name;
    Logger::Level level;
    void (*log)(const char*, const char*, ...);
  } rows[] = {{"message", Logger::Level::Message, &Logger::Message},
              {"debug", Logger::Level::Debug, &Logger::Debug},
              {"info", Logger::Level::Info, &Logger::Info}};
  for (const auto& row : rows) {
    const TestSupport::CapturingLog log;
    row.log("Category", "text");
    const TestSupport::LogLine expected{row.level, "Category", "text"};
    EXPECT_THAT(log.lines(), ElementsAre(expected)) << row.name;
    EXPECT_STREQ(row.name, nameOf(row.level));
  }
}

TEST_F(LoggerTest, TextsAreFormatted) {
  const TestSupport::CapturingLog log;
  const auto uid = static_cast<unsigned long long>(std::uint64_t{0xc0ffee});
  Logger::Message("A", "device '%016llx'", uid);
  Logger::Debug("B", "path is  %s", std::string("IOService:/x").c_str());
  Logger::Info("C", "%d%% of %s", 50, "it");
  EXPECT_THAT(log.lines(),
              ElementsAre(message("device '0000000000c0ffee'", "A"),
                          debug("path is  IOService:/x", "B"), info("50% of it", "C")));
}

TEST_F(LoggerTest, TextsOfAnyLengthAreWhole) {
  const TestSupport::CapturingLog log;
  for (const std::size_t length :
       {std::size_t{0}, std::size_t{1}, std::size_t{511}, std::size_t{512}, std::size_t{1023},
        std::size_t{1024}, std::size_t{1000000}}) {
    const std::string text(length, 'x');
    Logger::Message("A", "<%s>", text.c_str());
    ASSERT_FALSE(log.lines().empty());
    EXPECT_TRUE(log.lines().back().text == "<" + text + ">") << length;
  }
}

TEST_F(LoggerTest, ATextThatCannotBeFormattedIsLoggedAsItsBareFormat) {
  const TestSupport::CapturingLog log;
  const wchar_t invalid[] = {static_cast<wchar_t>(0xd800), 0};
  Logger::Message("A", "never shown %ls", invalid);
  EXPECT_THAT(log.lines(), ElementsAre(message("never shown %ls", "A")));
}

TEST_F(LoggerTest, TheDefaultSinkWritesLinesWithLevelAndCategoryToStandardError) {
  Logger::setSink({});
  testing::internal::CaptureStderr();
  testing::internal::CaptureStdout();
  Logger::Message("RAIDMonitor", "a %s", "b");
  Logger::Debug("Thunderbolt device", "c");
  Logger::Info("RAIDMonitor", "100%%");
  EXPECT_EQ("", testing::internal::GetCapturedStdout());
  EXPECT_EQ(
      "message [RAIDMonitor] a b\n"
      "debug [Thunderbolt device] c\n"
      "info [RAIDMonitor] 100%\n",
      testing::internal::GetCapturedStderr());
}

TEST_F(LoggerTest, AnEmptySinkRestoresTheDefault) {
  int lines = 0;
  Logger::setSink([&](auto&&...) { ++lines; });
  Logger::Message("A", "counted");
  Logger::setSink({});
  testing::internal::CaptureStderr();
  Logger::Message("A", "shown");
  EXPECT_EQ("message [A] shown\n", testing::internal::GetCapturedStderr());
  EXPECT_EQ(1, lines);
}

TEST_F(LoggerTest, ASinkMayReplaceItself) {
  std::vector<std::string> story;
  const std::string tail = " - kept alive until its call has returned";
  Logger::setSink([&story, tail](Logger::Level, const std::string&, const std::string& text) {
    Logger::setSink([&story](auto&&...) { story.push_back("the second"); });
    story.push_back(text + tail);
  });
  Logger::Message("A", "one");
  Logger::Message("A", "two");
  EXPECT_THAT(story, ElementsAre("one" + tail, "the second"));
}

TEST_F(LoggerTest, AnExceptionFromTheSinkReachesTheOneWhoLogs) {
  Logger::setSink([](auto&&...) { throw std::runtime_error("full"); });
  EXPECT_THROW(Logger::Message("A", "x"), std::runtime_error);
  EXPECT_THROW(Logger::Debug("A", "x"), std::runtime_error);
  EXPECT_THROW(Logger::Info("A", "x"), std::runtime_error);
}

}  // namespace
}  // namespace PelagoTest
