#include "application/text/TextCharacters.h"

#include <gtest/gtest.h>

namespace ProgramTest {
namespace {

using Program::Charset;
using Program::clipped;
using Program::columnsOf;
using Program::padded;
using Program::printable;

TEST(TextCharacters, NothingHarmfulIsPrintable) {
  const struct {
    const char* text;
    const char* unicode;
    const char* ascii;
  } rows[] = {
      {"Projects", "Projects", "Projects"},
      {"\x1b[2J", "\uFFFD[2J", "?[2J"},
      {"a\nb\tc\rd", "a\uFFFDb\uFFFDc\uFFFDd", "a?b?c?d"},
      {"\x7f", "\uFFFD", "?"},
      {"\u009b31m", "\uFFFD31m", "?31m"},     // the one-character form of ESC [
      {"a\u202egnp", "a\uFFFDgnp", "a?gnp"},  // writes from right to left
      {"a\u200bb\u2066c", "a\uFFFDb\uFFFDc", "a?b?c"},
      {"a\u2028b\ufeff", "a\uFFFDb\uFFFD", "a?b?"},
      {"Bücher", "Bücher", "B?cher"},
      {"e\u0301\u0301\u0301\u0301x", "e\u0301\u0301\uFFFD\uFFFDx", "e????x"},
      {"\xff\xfe", "\uFFFD\uFFFD", "??"},
      {"\xc3", "\uFFFD", "?"},
      {"\xc0\x80", "\uFFFD\uFFFD", "??"},   // an overlong zero
      {"\xed\xa0\x80", "\uFFFD", "?"},      // half of a pair
      {"\xf4\x90\x80\x80", "\uFFFD", "?"},  // beyond the last character
  };
  for (const auto& row : rows) {
    EXPECT_EQ(row.unicode, printable(row.text, Charset::Unicode)) << row.unicode;
    EXPECT_EQ(row.ascii, printable(row.text, Charset::ASCII)) << row.unicode;
  }
}

TEST(TextCharacters, ZeroIsNotPrintable) {
  EXPECT_EQ("a?b", printable(std::string_view("a\0b", 3), Charset::ASCII));
}

TEST(TextCharacters, WhatIsPrintableStaysAsItIs) {
  const std::string once = printable("a\x1b\u202e\xff", Charset::Unicode);
  EXPECT_EQ(once, printable(once, Charset::Unicode));
}

TEST(TextCharacters, ColumnsAreThoseOfTheScreen) {
  const struct {
    const char* text;
    int columns;
  } rows[] = {{"", 0}, {"abc", 3}, {"Bücher", 6}, {"写真", 4}, {"😀", 2}, {"e\u0301", 1}, {"한", 2}};
  for (const auto& row : rows)
    EXPECT_EQ(row.columns, columnsOf(row.text)) << row.text;
}

TEST(TextCharacters, LongTextIsClippedAndMarked) {
  EXPECT_EQ("abc", clipped("abc", 3, Charset::Unicode));
  EXPECT_EQ("ab…", clipped("abcd", 3, Charset::Unicode));
  EXPECT_EQ("ab~", clipped("abcd", 3, Charset::ASCII));
  EXPECT_EQ("写…", clipped("写真写真", 4, Charset::Unicode)) << "a wide character is not halved";
  EXPECT_EQ("…", clipped("abcd", 1, Charset::Unicode));
  EXPECT_EQ("", clipped("abcd", 0, Charset::Unicode));
}

TEST(TextCharacters, PaddedTextHasExactlyItsColumns) {
  EXPECT_EQ("ab   ", padded("ab", 5, Charset::Unicode));
  EXPECT_EQ("写   ", padded("写", 5, Charset::Unicode));
  EXPECT_EQ("写… ", padded("写真写", 4, Charset::Unicode));
  EXPECT_EQ("abcd…", padded("abcdefgh", 5, Charset::Unicode));
}

}  // namespace
}  // namespace ProgramTest
