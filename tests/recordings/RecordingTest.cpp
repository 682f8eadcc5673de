// Every recording in data/, and the archives of real machines there, watched by the real program
// and compared to the letter with the answers that are kept in data/expected/.

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

// Kept compressed, and unpacked while building.
const std::string RealMachines[] = {"imac15,1-osx10.10.0.converted-archive",
                                    "macmini6,2-osx10.8.2.converted-archive-i"};

std::string placeOf(const std::string& name) {
  const std::string unpacked = std::string(UNPACKED) + "/" + name + ".plist";
  return std::filesystem::exists(unpacked) ? unpacked : recording(name);
}

class RecordingTest : public testing::TestWithParam<std::string> {
 protected:
  Result answer(Arguments arguments) const {
    arguments.insert(arguments.begin() + 1, {"--registry", placeOf(GetParam())});
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
INSTANTIATE_TEST_SUITE_P(RealMachine, RecordingTest, testing::ValuesIn(RealMachines), testName);

TEST(SubtreeArchive, IsRefusedInOneLine) {
  const std::string archive =
      recording("applesilicon-macos26.6.2.ioreg-a-r-c-IOThunderboltSwitch-d1.plist");
  const Result result = run({"watch", "--registry", archive, "--json"});
  EXPECT_EQ("", result.out);
  EXPECT_EQ(1, result.status);
  EXPECT_EQ(1U, linesOf(result.err).size()) << result.err;
  EXPECT_NE(std::string::npos, result.err.find("array")) << result.err;
}

}  // namespace
}  // namespace ProgramTest
