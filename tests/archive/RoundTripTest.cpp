#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <set>

#include "tests/archive/RandomContent.h"
#include "tests/archive/Support.h"
#include "tests/archive/XMLWriter.h"

using MemoryRegistry::Array;
using MemoryRegistry::Data;
using MemoryRegistry::Dictionary;
using MemoryRegistry::Opaque;
using MemoryRegistry::PropertyValue;
using MemoryRegistry::RegistryContent;

namespace {

std::string randomText() {
  const auto pieces = *rc::gen::container<std::vector<std::string>>(rc::gen::element<std::string>(
      "a", "Z", "9", " ", "\t", "\n", "&", "<", ">", "\"", "]]>", "&amp;", "\xC3\xA9",
      "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "IOObject", "\x01", "\x7F"));
  std::string text;
  for (const std::string& piece : pieces)
    text += piece;
  return text;
}

PropertyValue randomValue(int depth);

Dictionary randomDictionary(int depth) {
  std::set<std::string> keys;
  const int size = *rc::gen::inRange(0, 5);
  for (int i = 0; i < size; ++i)
    keys.insert("k" + randomText());
  Dictionary dictionary;
  for (const std::string& key : keys)
    dictionary.emplace_back(key, randomValue(depth));
  if (*rc::gen::arbitrary<bool>()) std::reverse(dictionary.begin(), dictionary.end());
  return dictionary;
}

Array randomArray(int depth) {
  Array array;
  const int size = *rc::gen::inRange(0, 4);
  for (int i = 0; i < size; ++i)
    array.push_back(randomValue(depth));
  return array;
}

PropertyValue randomValue(int depth) {
  switch (*rc::gen::inRange(0, depth > 0 ? 8 : 6)) {
    case 0:
      return *rc::gen::arbitrary<bool>();
    case 1:
      return randomNumber();
    case 2:
      return *rc::gen::arbitrary<double>();
    case 3:
      return randomText();
    case 4:
      return *rc::gen::arbitrary<Data>();
    case 5:
      return Opaque{};
    case 6:
      return randomArray(depth - 1);
    default:
      return randomDictionary(depth - 1);
  }
}

MemoryRegistry::EntryDescription randomDescription() {
  MemoryRegistry::EntryDescription description;
  description.className = "C" + randomText();
  description.name = "n" + randomText();
  description.location = randomText();
  if (*rc::gen::arbitrary<bool>()) description.inheritance = {"A", description.className};
  if (*rc::gen::arbitrary<bool>()) description.state = *rc::gen::arbitrary<std::uint32_t>();
  description.properties = randomDictionary(3);
  return description;
}

}  // namespace

RC_GTEST_PROP(RoundTrip, AnyContentReadsBackFromItsXMLAndItsBinaryTwin, ()) {
  const RegistryContent content = randomContent(randomDescription);
  const std::string xml = propertyList(writeXML(content));
  RC_LOG() << xml;
  RC_ASSERT(reasonAgainst(xml) == "");
  RC_ASSERT((parse(xml) == content));
  RC_ASSERT((parse(binaryTwin(xml)) == content));
}

RC_GTEST_PROP(RoundTrip, AnyDamageIsReadOrRefusedWithOneLine, ()) {
  std::string text = propertyList(writeXML(randomContent(randomDescription)));
  if (*rc::gen::arbitrary<bool>()) text = binaryTwin(text);
  const int changes = *rc::gen::inRange(1, 5);
  for (int i = 0; i < changes; ++i) {
    text[*rc::gen::inRange<std::size_t>(0, text.size())] = *rc::gen::arbitrary<char>();
  }
  RC_ASSERT(reasonAgainst(text).find('\n') == std::string::npos);
}
