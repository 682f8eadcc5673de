#include <gmock/gmock.h>

#include "tests/archive/Support.h"

using MemoryRegistry::Array;
using MemoryRegistry::Data;
using MemoryRegistry::Dictionary;
using MemoryRegistry::number32;
using MemoryRegistry::number64;
using MemoryRegistry::Opaque;
using MemoryRegistry::PropertyValue;
using MemoryRegistry::RegistryContent;
using MemoryRegistry::ServiceState;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

const std::string root = "+-o Root  <class IORegistryEntry, id 0x1, retain 9>\n";

// The text of a root with these lines of properties.
std::string text(const std::string& properties) {
  return root + "    {\n" + properties + "    }\n";
}

std::string line(const std::string& key, const std::string& value) {
  return "      \"" + key + "\" = " + value + "\n";
}

// An entry below the root without properties.
std::string child(const std::string& name, const std::string& fields) {
  return "  +-o " + name + "  <class " + fields + ">\n      {\n      }\n      \n";
}

const std::string service = ", registered, matched, active, busy 0 (1 ms), retain 5";

RegistryContent::Entry onlyChild(const std::string& print) {
  return parse(text(line("k", "1")) + print).entries.at(1);
}

PropertyValue value(const std::string& print) {
  return *property(parse(text(line("k", print))).entries.at(0), "k");
}

std::string reasonAgainstValue(const std::string& print) {
  return reasonAgainst(text(line("k", print)));
}

}  // namespace

TEST(RegistryText, AnEntryHasItsNameLocationClassAndID) {
  const auto entry = onlyChild(child("PRT0@1F,2", "AppleAHCIPort, id 0x10000022b" + service));
  EXPECT_EQ(0x10000022BU, entry.id);
  EXPECT_EQ("PRT0", entry.description.name);
  EXPECT_EQ("1F,2", entry.description.location);
  EXPECT_EQ("AppleAHCIPort", entry.description.className);
  EXPECT_TRUE(entry.description.inheritance.empty());
}

TEST(RegistryText, NamesAreNotEscaped) {
  const struct {
    const char* print;
    const char* name;
    const char* location;
  } rows[] = {
      {"a@b@0", "a@b", "0"},
      {"me@home", "me@home", ""},
      {"me@", "me@", ""},
      {"me@-", "me@-", ""},
      {"PRT0@-3", "PRT0", "-3"},
      {"A/B:C @2", "A/B:C ", "2"},
      {"x  <class IOMedia, id 0x7, retain 1>", "x  <class IOMedia, id 0x7, retain 1>", ""},
      {"two\nlines", "two\nlines", ""},
      {"+-o +-o ", "+-o +-o ", ""},
      {"", "", ""},
      {"  | | Caf\xC3\xA9@a", "  | | Caf\xC3\xA9", "a"},
  };
  for (const auto& row : rows) {
    const auto entry = onlyChild(child(row.print, "IOMedia, id 0x2" + service));
    EXPECT_EQ(row.name, entry.description.name) << row.print;
    EXPECT_EQ(row.location, entry.description.location) << row.print;
    EXPECT_EQ("IOMedia", entry.description.className) << row.print;
  }
}

TEST(RegistryText, TheStateIsMadeOfItsWords) {
  const struct {
    const char* fields;
    std::optional<std::uint32_t> state;
  } rows[] = {
      {", registered, matched, active, busy 0 (1 ms), retain 5", ServiceState::Settled},
      {", !registered, !matched, active, busy 0, retain 5", 0},
      {", registered, !matched, active, busy 0", 0x0A},
      {", !registered, matched, inactive", 0x15},
      {", retain 5", std::nullopt},
      {"", std::nullopt},
  };
  for (const auto& row : rows) {
    const auto entry = onlyChild(child("a", std::string("C, id 0x2") + row.fields));
    EXPECT_EQ(row.state, entry.description.state) << row.fields;
  }
}

TEST(RegistryText, TheInheritanceIsReadWhereItIsPrinted) {
  const auto entry = onlyChild(child("a", "IORegistryEntry:IOService:IOMedia, id 0x2" + service));
  EXPECT_EQ("IOMedia", entry.description.className);
  EXPECT_THAT(entry.description.inheritance,
              ElementsAre("IORegistryEntry", "IOService", "IOMedia"));
}

TEST(RegistryText, TheColumnGivesTheDepthWhateverTheBarsSay) {
  const auto at = [](std::size_t depth, const std::string& id) {
    const std::string bars = repeated(id == "3" ? "| " : "  ", depth);
    return bars + "+-o n  <class C, id 0x" + id + ">\n" + bars + "    {\n" + bars + "    }\n";
  };
  const auto content =
      parse(text("") + at(1, "2") + at(2, "3") + at(2, "4") + at(3, "5") + at(1, "6"));
  EXPECT_THAT(ids(content, content.entries.at(0).children), ElementsAre(2, 6));
  EXPECT_THAT(ids(content, content.entries.at(1).children), ElementsAre(3, 4));
  EXPECT_THAT(ids(content, content.entries.at(3).children), ElementsAre(5));
}

TEST(RegistryText, AnEntryPrintedUnderSeveralParentsIsOne) {
  const std::string shared = "    +-o s  <class C, id 0x9>\n        {\n          \"k\" = ";
  const auto content =
      parse(text("") + "  +-o a  <class C, id 0x2>\n" + shared + "1\n        }\n" +
            "  +-o b  <class C, id 0x3>\n" + shared + "not read again\n        }\n");
  ASSERT_EQ(4U, content.entries.size());
  EXPECT_THAT(ids(content, content.entries.at(2).parents), ElementsAre(2, 3));
}

TEST(RegistryText, AnEntryBeneathItselfIsRefused) {
  EXPECT_EQ("it: entry 0x2 is beneath itself",
            reasonAgainst(text("") + "  +-o a  <class C, id 0x2>\n    +-o a  <class C, id 0x2>\n"));
}

TEST(RegistryText, ValuesAreReadByTheirForms) {
  const struct {
    const char* print;
    PropertyValue value;
  } rows[] = {
      {"Yes", true},
      {"No", false},
      {"0", 0},
      {"2147483647", number32(0x7FFFFFFF)},
      {"2147483648", number64(0x80000000U)},
      {"18446744073709551615", number64(UINT64_MAX)},
      {"0x1f", number32(31)},
      {"\"\"", ""},
      {"\"a\"", "a"},
      {"<>", Data{}},
      {"<00ff1A>", Data{0, 255, 26}},
      {"<\"ab\">", Data{'a', 'b', 0}},
      {"<\"a\",\"b\">", Data{'a', 0, 'b', 0}},
      {"()", Array{}},
      {"(1,\"a\",(Yes),{})", Array{1, "a", Array{true}, Dictionary{}}},
      {"[1,2]", Array{1, 2}},
      {"{}", Dictionary{}},
      {"{\"a\"=1,\"b\"={\"c\"=<00>}}", Dictionary{{"a", 1}, {"b", Dictionary{{"c", Data{0}}}}}},
  };
  for (const auto& row : rows)
    EXPECT_TRUE(row.value == value(row.print)) << row.print;
}

TEST(RegistryText, WhatIsPrintedAsNothingIsAValueThatCannotBeRead) {
  EXPECT_TRUE(value("") == PropertyValue(Opaque{}));
  EXPECT_TRUE(value("{\"a\"=,\"b\"=}") ==
              PropertyValue(Dictionary{{"a", Opaque{}}, {"b", Opaque{}}}));
  EXPECT_TRUE(value("(\"a\",,1,)") == PropertyValue(Array{"a", Opaque{}, 1, Opaque{}}));
}

TEST(RegistryText, StringsKeepTheQuotesAndLineEndsInThem) {
  const struct {
    const char* print;
    PropertyValue value;
  } rows[] = {
      {"\"\"a\"\"", "\"a\""},
      {"\"a\"=1,\"b\"", "a\"=1,\"b"},
      {"\"first\nsecond: 0x1\n\"", "first\nsecond: 0x1\n"},
      {"\"}\n    }x\n{\"", "}\n    }x\n{"},
      {"{\"a\"=\"\"x\"\",\"b\"=1}", Dictionary{{"a", "\"x\""}, {"b", 1}}},
      {"{\"a\"=\"x\",\"y\",\"b\"=1}", Dictionary{{"a", "x\",\"y"}, {"b", 1}}},
      {"({\"a\"=\"x\"}\"})", Array{Dictionary{{"a", "x\"}"}}}},
      {"(\"x\", y\",\"z\")", Array{"x\", y", "z"}},
      {"({\"j\"=\"{\"a\":\"b\",\"c\":\"d\"}\",\"k\"=No})",
       Array{Dictionary{{"j", "{\"a\":\"b\",\"c\":\"d\"}"}, {"k", false}}}},
      {"{\"a\"=\"two\nlines\"}", Dictionary{{"a", "two\nlines"}}},
  };
  for (const auto& row : rows)
    EXPECT_TRUE(row.value == value(row.print)) << row.print;
}

TEST(RegistryText, OfTwoPropertiesOfOneKeyTheLastCounts) {
  const auto content = parse(text(line("k", "1") + line("a", "2") + line("k", "3")));
  EXPECT_EQ(2U, content.entries.at(0).description.properties.size());
  EXPECT_TRUE(*property(content.entries.at(0), "k") == PropertyValue(3));
}

TEST(RegistryText, KeysThatArchivesUseForTheEntryItselfAreNoProperties) {
  EXPECT_TRUE(
      parse(text(line("IORegistryEntryID", "7"))).entries.at(0).description.properties.empty());
}

TEST(RegistryText, AValueThatCannotBeReadIsRefusedWithItsLine) {
  for (const char* print :
       {"maybe", "12 apples", "18446744073709551616", "-1", "\"open", "<0>", "<zz>", "<00", "(1",
        "(1]", "{\"a\"}", "{\"a\"=1", "{a=1}", "1\n2", "{\"a\"=1}x", "(\"a)", "Yesterday", "1.5"}) {
    EXPECT_EQ("it: line 3: a value that cannot be read", reasonAgainstValue(print)) << print;
  }
}

TEST(RegistryText, ALineThatIsCutOffForATerminalIsRefusedAndSaysWhy) {
  EXPECT_EQ("it: line 3: a value that is cut off: the text was made without -w0",
            reasonAgainstValue("(1,2,$"));
  EXPECT_EQ("it: line 4: the line of an entry is cut off",
            reasonAgainst(text("") + "  +-o a  <class IOMedia, id$\n" + child("b", "C, id 0x3")));
}

TEST(RegistryText, ATextThatEndsInTheMiddleIsRefused) {
  const std::string whole = text(line("k", "\"v\"")) + child("a", "C, id 0x2" + service);
  const std::size_t rootEnd = whole.find('}') + 1;
  for (std::size_t size = 1; size < whole.rfind('}'); ++size) {
    // What is cut off between two entries looks complete.
    const bool isBetween = size >= rootEnd && size <= rootEnd + std::string("\n  ").size();
    EXPECT_EQ(isBetween, reasonAgainst(whole.substr(0, size)).empty()) << whole.substr(0, size);
  }
  EXPECT_EQ("it: line 7: the text ends in the middle of an entry",
            reasonAgainst(whole.substr(0, whole.rfind("      }"))));
}

TEST(RegistryText, WhatIsNoRegistryTextIsRefusedWithItsLine) {
  const struct {
    std::string text;
    const char* reason;
  } rows[] = {
      {root, "has no properties: the text was made without ioreg -l"},
      {text("") + "end of file\n", "line 4: neither an entry nor a property"},
      {text("      key = 1\n"), "line 3: neither a property nor the end of an entry's properties"},
      {text(line("a", "\"x\"") + "      \"b\n"),
       "line 4: neither a property nor the end of an entry's properties"},
      {text("") + " +-o a  <class C, id 0x2>\n", "line 4: an entry that is indented too far"},
      {text("") + "    +-o a  <class C, id 0x2>\n", "line 4: an entry that is indented too far"},
      {text("") + root,
       "line 4: a second root: the text of one plane, made without ioreg -r, has one"},
      {"+-o a  <class C, id 0x2" + service + ">\n    {\n    }\n",
       "line 1: an entry that is no root: a text made with ioreg -r has none"},
      {text("") + "  +-o a  <class C, retain count 5>\n", "line 4: an entry without an id"},
      {text("") + "  +-o a  <class C, id 0x>\n", "line 4: an entry with an id that cannot be read"},
      {text("") + "  +-o a  <class C, id 0x0>\n",
       "line 4: an entry with an id that cannot be read"},
      {text("") + "  +-o a  <class C, id 0x11111111111111111>\n",
       "line 4: an entry with an id that cannot be read"},
      {text("") + "  +-o a  <class , id 0x2>\n", "line 4: an entry without a class"},
      {text("") + "  +-o a  <class A::B, id 0x2>\n", "line 4: an entry without a class"},
      {text("") + "  +-o a  <class A:, id 0x2>\n", "line 4: an entry without a class"},
      {text(line("a", "\"\xFF\"")), "line 3: a character that is not UTF-8"},
      {text(line("a", std::string("\"\0\"", 3))), "line 3: a NUL character"},
  };
  for (const auto& row : rows)
    EXPECT_EQ(std::string("it: ") + row.reason, reasonAgainst(row.text)) << row.text;
}

TEST(RegistryText, LinesMayEndInCarriageReturns) {
  const std::string plain = text(line("a", "\"x\ny\n\"") + line("b", "{\"k\"=1}")) +
                            child("n\nm@1", "C, id 0x2" + service);
  std::string converted;
  for (const char c : plain)
    converted += c == '\n' ? "\r\n" : std::string(1, c);
  EXPECT_TRUE(parse(plain) == parse(converted));
  EXPECT_TRUE(value("\"a\rb\"") == PropertyValue("a\rb"));
}

TEST(RegistryText, BlankLinesAndAByteOrderMarkBeforeItAreSkipped) {
  EXPECT_EQ(1U, parse("\xEF\xBB\xBF\n\n" + text(line("k", "1"))).entries.size());
}

TEST(RegistryText, BlankLinesAfterItAreSkipped) {
  for (const char* blank : {"", "\n", "\n\n\n", "    \n  | \n", "  "})
    EXPECT_EQ(1U, parse(text(line("k", "1")) + blank).entries.size());
  EXPECT_EQ(1U, parse("+-o Root  <class C, id 0x1>\r\n    {\r\n    }\r\n\r\n \r\n").entries.size());
}

TEST(RegistryText, AHeadingBeforeItIsSkipped) {
  const std::string print = text(line("k", "1")) + child("a", "C, id 0x2" + service);
  const RegistryContent content = parse(print);
  for (const char* heading :
       {"$ ioreg -l -w0\n", "me@mac ~ % ioreg -l -w0\n\n", "ioreg:\n------\n\n",
        "\xEF\xBB\xBFIOService\n", "\"quoted\"\n", "2026-11-21 12:00\n  | \n",
        " +-o is what an entry begins with\n", "x\r\n"}) {
    EXPECT_TRUE(content == parse(heading + print)) << heading;
  }
  EXPECT_EQ("it: line 5: a value that cannot be read",
            reasonAgainst("one\ntwo\n" + text(line("k", "maybe"))));
}

TEST(RegistryText, AHeadingIsNotLookedThroughForEver) {
  EXPECT_EQ("", reasonAgainst(repeated("heading\n", 8000) + text("")));
  EXPECT_EQ("it: is not a property list, nor a text of ioreg",
            reasonAgainst(repeated("heading\n", 10000) + text("")));
}

TEST(RegistryText, OneWhoseBeginningIsMissingIsRefused) {
  const std::string missing = ": the beginning is missing: no root comes before this";
  const std::string print = text(line("k", "1")) + child("a", "C, id 0x2" + service);
  EXPECT_EQ("it: line 1" + missing, reasonAgainst(print.substr(root.size())));
  EXPECT_EQ("it: line 3" + missing,
            reasonAgainst("heading\n\n" + print.substr(print.find("  +-o"))));
  EXPECT_EQ("it: line 1" + missing, reasonAgainst("      \"k\" = 1\n    }\n" + print))
      << "the end of another one before it";
}
