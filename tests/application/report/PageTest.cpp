#include "application/report/Page.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "application/report/ReportJson.h"
#include "tests/application/report/Stories.h"
#include "tests/application/support/Snapshots.h"

namespace ProgramTest {
namespace {

using namespace RAIDMonitoring;
using Program::filledIn;
using Program::Story;
using testing::HasSubstr;
using testing::Not;

const std::string Markup = "</script><!--<script>alert(1)</script>&amp;\"'";

Story storyNamed(const std::string& name) {
  Program::Picture picture =
      pictureOf({volumeOf(name, VolumeDegraded, {memberIn(1, MemberOnline)})});
  picture.name = name;
  picture.volumes[0].members[0].uuid = name;
  Story story = storyWith({{0, {picture}}}, 2000);
  story.events = {volumeEvent(0, Story::Happening::VolumeAppeared, picture.volumes[0])};
  story.log = {{0, Pelago::Logger::Level::Message, name, name}};
  return story;
}

TEST(PageTemplate, IsFilledInOnceAndWhatATextHoldsIsNotLookedAt) {
  EXPECT_EQ("<a>{{b}}</a>{{b}}", filledIn("<a>{{a}}</a>{{a}}", {{"a", "{{b}}"}, {"b", "!"}}));
}

TEST(PageTemplate, KeepsWhatIsNoPlaceToFillIn) {
  EXPECT_EQ("a { b } }} {{ c", filledIn("a { b } }} {{ c", {}));
}

TEST(PageTemplate, LacksNoText) { EXPECT_THROW(filledIn("{{a}}", {}), std::logic_error); }

TEST(PageEscapes, TheCharactersOfMarkup) {
  EXPECT_EQ("&lt;b class=&quot;x&quot;&gt;&amp;&#39;",
            Program::escapedForPage("<b class=\"x\">&'"));
}

TEST(ReportData, HoldsNothingThatAPagesParserLooksFor) {
  const std::string data = Program::reportData(storyNamed(Markup), 0);
  for (const char c : {'<', '>', '&', '\n'})
    EXPECT_EQ(std::string::npos, data.find(c)) << c;
}

TEST(ReportData, IsPlainASCIIWhateverTheNames) {
  for (const std::string& name :
       {std::string("\u2028\u2029\u00e9\u5e8f"), std::string("\xff\xfe\xc3"), std::string("\0x", 2),
        HostileName}) {
    const std::string data = Program::reportData(storyNamed(name), 0);
    for (const char c : data)
      ASSERT_TRUE(c >= 0x20 && c < 0x7f) << data;
    EXPECT_TRUE(nlohmann::json::accept(data));
  }
}

TEST(ReportData, SaysMarkupToTheLetter) {
  const auto data = nlohmann::json::parse(Program::reportData(storyNamed(Markup), 0));
  EXPECT_EQ(Markup, data["pictures"][0]["title"]);
  EXPECT_EQ(Markup, data["pictures"][0]["volumes"][0][0]);
  EXPECT_EQ(Markup, data["log"][0][3]);
}

TEST(ReportData, HoldsAPictureThatComesBackOnce) {
  Frames frames;
  for (int number = 0; number < 100; ++number) {
    frames.push_back(
        {number * 2000, {number % 2 == 0 ? wellPicture() : degradedPicture(MemberFailed)}});
  }
  const auto data = nlohmann::json::parse(Program::reportData(storyWith(frames, 200000), 0));
  EXPECT_EQ(2U, data["pictures"].size());
  EXPECT_EQ(100U, data["frames"].size());
  EXPECT_EQ(nlohmann::json::parse("[198000,[1]]"), data["frames"][99]);
}

TEST(ReportPage, ShowsHostileNamesAsTextInEveryPlace) {
  const std::string page = Program::reportPage(storyNamed(Markup), Markup);
  EXPECT_THAT(page, Not(HasSubstr("alert(1)</script>")));
  EXPECT_THAT(page, Not(HasSubstr("<!--")));
  EXPECT_THAT(page, HasSubstr("&lt;/script&gt;&lt;!--&lt;script&gt;alert(1)"));
}

TEST(ReportPage, BringsEverythingAlong) {
  const std::string page = Program::reportPage(storyNamed("Projects"), "recording");
  for (const char* loading : {"src=", "href=", "url(", "@import", "{{", "http://", "https://"})
    EXPECT_THAT(page, Not(HasSubstr(loading)));
}

TEST(ReportPage, IsThereForAStoryInWhichNothingIs) {
  const std::string page = Program::reportPage(Story(), "recording");
  EXPECT_THAT(page, HasSubstr("<h1>No enclosure was connected.</h1>"));
  EXPECT_THAT(page, HasSubstr("There were none."));
}

TEST(ReportPage, SaysWithoutItsScriptHowItEnded) {
  const std::string page =
      Program::reportPage(storyWith({{0, {degradedPicture(MemberFailed)}}}, 2000), "recording");
  const std::string ending = page.substr(page.find("<noscript>"));
  EXPECT_THAT(ending.substr(0, ending.find("</noscript>")),
              HasSubstr("<td>2</td><td>MEMBER2</td><td>failed</td><td>Projects</td>"));
}

}  // namespace
}  // namespace ProgramTest
