#include "application/record/TextSearch.h"

#include <gtest/gtest.h>

namespace ProgramTest {
namespace {

using Program::TextSearch;

std::string replaced(std::string text, TextSearch::Where where = TextSearch::Where::Words) {
  TextSearch search(where);
  search.add("Anna", "Name");
  search.add("Anna Disk", "Name00001");
  search.add("1C,4", "SN01");
  search.replaceIn(text);
  return text;
}

TEST(TextSearch, ReplacesWholeWords) {
  EXPECT_EQ("Name", replaced("Anna"));
  EXPECT_EQ("/Users/Name/x", replaced("/Users/Anna/x"));
  EXPECT_EQ("Annabel and Hanna", replaced("Annabel and Hanna"));
  EXPECT_EQ("\u00fcAnna", replaced("\u00fcAnna"));
}

TEST(TextSearch, TakesTheLongestThatStandsThere) {
  EXPECT_EQ("Name00001@0", replaced("Anna Disk@0"));
  EXPECT_EQ("Name Disks", replaced("Anna Disks"));
}

TEST(TextSearch, LeavesLocationsAlone) { EXPECT_EQ("RP05@1C,4/SN01", replaced("RP05@1C,4/1C,4")); }

TEST(TextSearch, FindsThemBetweenAnyBytesWhereThatIsWanted) {
  EXPECT_EQ("xNamey@SN01", replaced("xAnnay@1C,4", TextSearch::Where::Anywhere));
}

TEST(TextSearch, ForgetsThem) {
  TextSearch search(TextSearch::Where::Words);
  search.add("Anna", "Name");
  search.clear();
  std::string text = "Anna";
  search.replaceIn(text);
  EXPECT_EQ("Anna", text);
}

}  // namespace
}  // namespace ProgramTest
