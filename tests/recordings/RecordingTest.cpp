// Every recording in data/, watched by the real program and compared to the letter with the answers
// that are kept for it in data/expected/.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "tests/application/support/Program.h"

namespace ProgramTest {
namespace {

std::vector<std::string> recordings() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(recording(""))) {
    const std::string name = entry.path().filename().string();
    if (entry.is_directory() && name != "expected") names.push_back(name);
  }
  std::sort(names.begin(), names.end());
  return names;
}

class RecordingTest : public testing::TestWithParam<std::string> {
 protected:
  Result answer(Arguments arguments) const {
    arguments.insert(arguments.begin() + 1, {"--registry", recording(GetParam())});
    return run(arguments);
  }

  std::string expected(const std::string& kind) const {
    return contentOf(recording("expected/" + GetParam() + "." + kind));
  }
};

TEST_P(RecordingTest, IsWatchedAsExpected) {
  const Result result = answer({"watch", "--json", "--log", "--handles"});
  const std::vector<std::string> lines = linesOf(result.out);
  const std::vector<std::string> wanted = linesOf(expected("watch.jsonl"));
  for (std::size_t line = 0; line < std::min(lines.size(), wanted.size()); ++line) {
    ASSERT_EQ(wanted[line], lines[line]) << "line " << line + 1;
  }
  EXPECT_EQ(expected("watch.jsonl"), result.out);
  EXPECT_EQ(expected("stderr.txt"), result.err);
  EXPECT_EQ(0, result.status);
}

TEST_P(RecordingTest, IsListedAsExpected) {
  const Result result = answer({"list", "--json"});
  EXPECT_EQ(expected("list.json"), result.out);
  EXPECT_EQ(expected("stderr.txt"), result.err);
  EXPECT_EQ(0, result.status);
}

TEST_P(RecordingTest, HasItsBaysAsExpected) {
  const Result result = answer({"slots", "--json"});
  EXPECT_EQ(expected("slots.json"), result.out);
  EXPECT_EQ(expected("stderr.txt"), result.err);
  EXPECT_EQ(0, result.status);
}

std::string testName(const testing::TestParamInfo<std::string>& recording) {
  std::string name = recording.param;
  std::replace_if(
      name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Data, RecordingTest, testing::ValuesIn(recordings()), testName);

}  // namespace
}  // namespace ProgramTest
