#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>

#include <set>

#include "tests/archive/RandomContent.h"
#include "tests/archive/Support.h"
#include "tests/archive/TextWriter.h"

using MemoryRegistry::Array;
using MemoryRegistry::Data;
using MemoryRegistry::Dictionary;
using MemoryRegistry::EntryDescription;
using MemoryRegistry::Opaque;
using MemoryRegistry::PropertyValue;
using MemoryRegistry::RegistryContent;

namespace {

std::string joined(std::initializer_list<std::string> pieces) {
  const auto chosen =
      *rc::gen::container<std::vector<std::string>>(rc::gen::elementOf(std::vector(pieces)));
  std::string text;
  for (const std::string& piece : chosen)
    text += piece;
  return text;
}

// All but what nobody could tell from the end of a string.
std::string randomString() {
  return joined({"a",        " ",
                 "\n",       "\"q",
                 "{",        "}",
                 "(",        "),",
                 "[",        "]",
                 ",",        "=",
                 "<",        ">",
                 "|",        "+-o x",
                 "\xC3\xA9", "\xF0\x9F\x98\x80",
                 "\x01",     "  <class C, id 0x1>",
                 "$",        "@"});
}

std::string randomKey() { return "k" + joined({"a", " ", ",", "=x", "{", "(", "\xC3\xA9"}); }

Data randomData() {
  if (*rc::gen::arbitrary<bool>()) return *rc::gen::arbitrary<Data>();
  Data data;
  const int texts = *rc::gen::inRange(1, 4);
  for (int i = 0; i < texts; ++i) {
    const std::string text = "t" + joined({"a", " ", ">", ",", "<", ")", "}"});
    data.insert(data.end(), text.begin(), text.end());
    data.push_back(0);
  }
  return data;
}

PropertyValue randomValue(int depth);

Dictionary randomDictionary(int depth) {
  std::set<std::string> keys;
  const int size = *rc::gen::inRange(0, 5);
  for (int i = 0; i < size; ++i)
    keys.insert(randomKey());
  Dictionary dictionary;
  for (const std::string& key : keys)
    dictionary.emplace_back(key, *rc::gen::inRange(0, 9) == 0 ? Opaque{} : randomValue(depth));
  return dictionary;
}

PropertyValue randomValue(int depth) {
  switch (*rc::gen::inRange(0, depth > 0 ? 6 : 4)) {
    case 0:
      return *rc::gen::arbitrary<bool>();
    case 1:
      return randomNumber();
    case 2:
      return randomString();
    case 3:
      return randomData();
    case 4: {
      Array array;
      const int size = *rc::gen::inRange(0, 4);
      for (int i = 0; i < size; ++i)
        array.push_back(randomValue(depth - 1));
      return array;
    }
    default:
      return randomDictionary(depth - 1);
  }
}

EntryDescription randomDescription() {
  static const std::uint32_t states[] = {0, 0x0A, 0x14, MemoryRegistry::Settled, 1, 0x0B};
  EntryDescription description;
  description.className = "C" + joined({"a", "_", "2"});
  description.name =
      joined({"a", " ", "@", "  <class X, id 0x1> ", "\nx", "\"", "/", "+-o "}) + "n";
  description.location = joined({"0", "F", ",", "a"});
  if (*rc::gen::arbitrary<bool>()) description.inheritance = {"A", description.className};
  if (*rc::gen::arbitrary<bool>())
    description.state = *rc::gen::elementOf(std::vector(std::begin(states), std::end(states)));
  description.properties = randomDictionary(3);
  return description;
}

RegistryContent randomTextContent() {
  RegistryContent content = randomContent(randomDescription);
  content.entries.front().description.state.reset();
  return content;
}

RegistryContent withoutInheritance(RegistryContent content) {
  for (auto& entry : content.entries)
    entry.description.inheritance.clear();
  return content;
}

}  // namespace

RC_GTEST_PROP(TextRoundTrip, AnyContentReadsBackFromItsText, ()) {
  const RegistryContent content = randomTextContent();
  const TextStyle style{true, *rc::gen::element<std::string>("\n", "\r\n")};
  const std::string text = writeText(content, style);
  RC_LOG() << text;
  RC_ASSERT(reasonAgainst(text) == "");
  RC_ASSERT((parse(text) == content));
  RC_ASSERT((parse(writeText(content)) == withoutInheritance(content)));
}

RC_GTEST_PROP(TextRoundTrip, AnyDamageIsReadOrRefusedWithOneLine, ()) {
  std::string text = writeText(randomTextContent());
  const int changes = *rc::gen::inRange(1, 5);
  for (int i = 0; i < changes; ++i) {
    text[*rc::gen::inRange<std::size_t>(0, text.size())] = *rc::gen::arbitrary<char>();
  }
  RC_ASSERT(reasonAgainst(text).find('\n') == std::string::npos);
}

TEST(TextRoundTrip, EntriesFarBelowWhereTheBarsAreRight) {
  RegistryContent content;
  for (std::size_t i = 0; i < 100; ++i) {
    content.entries.push_back({i + 1, {"C", "n", "", {}, {}, {{"k", "v"}}}, {}, {}});
    if (i == 0) continue;
    // A sibling at every other depth, so that the bars say something.
    const std::size_t parent = i % 3 == 2 ? content.entries[i - 1].parents.front() : i - 1;
    content.entries[parent].children.push_back(i);
    content.entries[i].parents.push_back(parent);
  }
  // In the order of print.
  const RegistryContent printed = parse(writeText(content));
  EXPECT_EQ(100U, printed.entries.size());
  EXPECT_TRUE(parse(writeText(printed)) == printed);
  for (const auto& entry : printed.entries) {
    const auto& original = content.entries[entry.id - 1];
    EXPECT_EQ(ids(content, original.children), ids(printed, entry.children));
    EXPECT_EQ(ids(content, original.parents), ids(printed, entry.parents));
  }
}
