#include "platform/registry/memory/archive/TextLines.h"

#include <gmock/gmock.h>

#include <string>
#include <vector>

using MemoryRegistry::TextLines;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

std::vector<std::string> linesOf(const char* text) {
  std::vector<std::string> lines;
  for (TextLines at(text); !at.atEnd(); at.advance())
    lines.emplace_back(at.line());
  return lines;
}

}  // namespace

TEST(TextLines, EachIsThereOnceWithoutItsEnd) {
  EXPECT_THAT(linesOf("first\n\nthird\n"), ElementsAre("first", "", "third"));
  EXPECT_THAT(linesOf("first\nlast"), ElementsAre("first", "last"));
  EXPECT_THAT(linesOf("only"), ElementsAre("only"));
  EXPECT_THAT(linesOf("\n"), ElementsAre(""));
  EXPECT_THAT(linesOf(""), IsEmpty());
}

TEST(TextLines, ACarriageReturnIsPartOfTheEndWhereItIsOfTheFirst) {
  EXPECT_THAT(linesOf("first\r\n\r\nthird\nlast\r"), ElementsAre("first", "", "third", "last"));
  EXPECT_THAT(linesOf("first\nsecond\r\n"), ElementsAre("first", "second\r"));
  EXPECT_THAT(linesOf("\n\r\n"), ElementsAre("", "\r"));
}

TEST(TextLines, PlacesAreThoseInTheText) {
  TextLines lines("ab\r\ncd\r\n");
  EXPECT_EQ(0U, lines.begin());
  EXPECT_EQ(2U, lines.end());
  lines.advance();
  EXPECT_EQ(4U, lines.begin());
  EXPECT_EQ(6U, lines.end());
  EXPECT_EQ(1U, lines.number(0));
  EXPECT_EQ(1U, lines.number(3));
  EXPECT_EQ(2U, lines.number(4));
}
