#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/application/support/Program.h"
#include "tests/application/support/TemporaryFolder.h"

namespace ProgramTest {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class ReportCommand : public testing::Test {
 protected:
  TemporaryFolder folder;
};

TEST_F(ReportCommand, WritesOnePageAndPrintsNothing) {
  const Result result = run({"report", "--registry", recording("two-bay-mirror-degrades"),
                             "--output", folder.file("report.html")});
  EXPECT_EQ(0, result.status) << result.err;
  EXPECT_EQ("", result.out);
  EXPECT_EQ("", result.err);
  EXPECT_THAT(folder.names(), ElementsAre("report.html"));
  const std::string page = contentOf(folder.file("report.html"));
  EXPECT_THAT(page, StartsWith("<!DOCTYPE html>"));
  EXPECT_THAT(page, HasSubstr("two-bay-mirror-degrades"));
  EXPECT_EQ(std::string::npos, page.find("tests/recordings")) << "tells where the recording lay";
}

TEST_F(ReportCommand, WritesTheSamePageEveryTime) {
  for (const char* name : {"one.html", "other.html"})
    ASSERT_EQ(0, run({"report", "--output", folder.file(name)}).status);
  EXPECT_EQ(contentOf(folder.file("one.html")), contentOf(folder.file("other.html")));
}

TEST_F(ReportCommand, EndsWhereItIsTold) {
  ASSERT_EQ(0, run({"report", "--until", "8000", "--output", folder.file("report.html")}).status);
  EXPECT_THAT(contentOf(folder.file("report.html")),
              HasSubstr("has been degraded since 00:08.000: the disk in bay 2 failed."));
}

TEST_F(ReportCommand, AFileThatCannotBeWrittenIsOneLine) {
  const Result result = run({"report", "--output", folder.file("missing/report.html")});
  EXPECT_EQ(1, result.status);
  EXPECT_EQ("raidmonitor: " + folder.file("missing/report.html") +
                ": cannot be written: No such file or directory\n",
            result.err);
}

TEST_F(ReportCommand, AFileThatCannotBeWrittenIsToldBeforeALongReplay) {
  const Result result = run({"report", "--until", "9000000000000", "--output", folder.path()});
  EXPECT_EQ(1, result.status);
  EXPECT_EQ("raidmonitor: " + folder.path() + ": is a folder, not a file\n", result.err);
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST_F(ReportCommand, ARegistryThatCannotBeReadLeavesTheFileAsItWas) {
  const std::string file = folder.write("report.html", "an older one");
  const Result result = run({"report", "--registry", folder.file("missing"), "--output", file});
  EXPECT_EQ(1, result.status);
  EXPECT_EQ(1U, linesOf(result.err).size()) << result.err;
  EXPECT_EQ("an older one", contentOf(file));
}

TEST_F(ReportCommand, NeedsAFileToWrite) {
  const Result result = run({"report"});
  EXPECT_EQ(2, result.status);
  EXPECT_THAT(result.err, HasSubstr("--output"));
  EXPECT_THAT(folder.names(), IsEmpty());
}

}  // namespace
}  // namespace ProgramTest
