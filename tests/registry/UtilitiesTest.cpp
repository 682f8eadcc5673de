#include "platform/registry/IOKitUtilities.h"

#include <limits>

#include "tests/registry/RegistryFixture.h"

namespace {

using namespace IOKitUtilities;
using MemoryRegistry::number32;
using MemoryRegistry::number64;
using MemoryRegistry::Operation;
using MemoryRegistry::PropertyValue;
using MemoryRegistry::Repeat;
using MemoryRegistry::setProperty;

class UtilitiesTest : public RegistryFixture {
 protected:
  const EntryID entry = add(root, "Entry");
  Handle handle = handleOf(entry);
};

TEST_F(UtilitiesTest, AStringPropertyIsUTF8AndAnythingElseEmpty) {
  const std::string longText = std::string(1000, 'x') + "\xC3\xA9\xF0\x9F\x98\x80";
  const struct {
    const char* what;
    PropertyValue value;
    std::string read;
  } rows[] = {
      {"text", "Example Storage", "Example Storage"},
      {"empty", "", ""},
      {"UTF-8", "\xC3\xA9", "\xC3\xA9"},
      {"256 bytes", std::string(256, 'x'), std::string(256, 'x')},
      {"257 bytes", std::string(257, 'x'), std::string(257, 'x')},
      {"long", longText, longText},
      {"split at the edge", std::string(255, 'x') + "\xC3\xA9", std::string(255, 'x') + "\xC3\xA9"},
      {"number", 5, ""},
      {"boolean", true, ""},
      {"data", MemoryRegistry::Data{65}, ""},
      {"array", MemoryRegistry::Array{"x"}, ""},
      {"date", MemoryRegistry::Opaque{}, ""},
  };
  for (const auto& row : rows) {
    setProperty(entry, "Key", row.value);
    EXPECT_EQ(row.read, GetServiceStringProperty(handle.get(), "Key")) << row.what;
  }
  EXPECT_EQ("", GetServiceStringProperty(handle.get(), "Missing"));
  EXPECT_EQ("", GetServiceStringProperty(0, "Key"));
}

TEST_F(UtilitiesTest, AnIntPropertyIsASigned32BitNumberOrElseMinusOne) {
  const struct {
    const char* what;
    PropertyValue value;
    std::int32_t read;
  } rows[] = {
      {"zero", 0, 0},
      {"positive", 0x100102, 0x100102},
      {"negative", -7, -7},
      {"64 bits wide", number64(0x100102), 0x100102},
      {"the largest", number64(0x7FFFFFFF), std::numeric_limits<std::int32_t>::max()},
      {"too large", number64(0x80000000U), -1},
      {"the smallest", number64(0xFFFFFFFF80000000U), std::numeric_limits<std::int32_t>::min()},
      {"too small", number64(0xFFFFFFFF7FFFFFFFU), -1},
      {"32 bits with the top one", number32(0x80000000U), std::numeric_limits<std::int32_t>::min()},
      {"a whole real", 12.0, 12},
      {"a negative whole real", -12.0, -12},
      {"a fraction", 12.5, -1},
      {"a huge real", 1e30, -1},
      {"no number", std::numeric_limits<double>::quiet_NaN(), -1},
      {"true", true, -1},
      {"false", false, -1},
      {"text", "12", -1},
  };
  for (const auto& row : rows) {
    setProperty(entry, "Key", row.value);
    EXPECT_EQ(row.read, GetServiceIntProperty(handle.get(), "Key")) << row.what;
  }
  EXPECT_EQ(-1, GetServiceIntProperty(handle.get(), "Missing"));
  EXPECT_EQ(-1, GetServiceIntProperty(0, "Key"));
}

TEST_F(UtilitiesTest, AUInt64PropertyIsTheNumbersBitsOrElseZero) {
  const struct {
    const char* what;
    PropertyValue value;
    std::uint64_t read;
  } rows[] = {
      {"positive", number64(5), 5},
      {"the top bit", number64(0x8000000000000001U), 0x8000000000000001U},
      {"all bits", number64(UINT64_MAX), UINT64_MAX},
      {"32 bits", number32(77), 77},
      {"negative 32 bits", number32(0xFFFFFFFFU), UINT64_MAX},
      {"a whole real", 3.0, 3},
      {"a fraction", 3.25, 0},
      {"a huge real", 1e30, 0},
      {"true", true, 0},
      {"text", "5", 0},
  };
  for (const auto& row : rows) {
    setProperty(entry, "Key", row.value);
    EXPECT_EQ(row.read, GetServiceUInt64Property(handle.get(), "Key")) << row.what;
  }
  EXPECT_EQ(0U, GetServiceUInt64Property(handle.get(), "Missing"));
  EXPECT_EQ(0U, GetServiceUInt64Property(0, "Key"));
}

TEST_F(UtilitiesTest, AnArrayPropertyCanAlwaysBeCounted) {
  setProperty(entry, "Array", MemoryRegistry::Array{"a", "b"});
  setProperty(entry, "Text", "a");
  const struct {
    const char* key;
    CFIndex count;
  } rows[] = {{"Array", 2}, {"Text", 0}, {"Missing", 0}};
  for (const auto& row : rows) {
    const auto array = Value<CFArrayRef>::adopt(GetServiceArrayProperty(handle.get(), row.key));
    ASSERT_TRUE(array) << row.key;
    EXPECT_EQ(row.count, CFArrayGetCount(array.get())) << row.key;
  }
}

TEST_F(UtilitiesTest, AStringThatIsNoneIsEmpty) {
  EXPECT_EQ("", GetStringFromCFString(nullptr));
  const auto number = cfNumber64(1);
  const CFTypeRef untyped = number.get();
  EXPECT_EQ("", GetStringFromCFString(static_cast<CFStringRef>(untyped)));
  EXPECT_EQ("abc", GetStringFromCFString(CFSTR("abc")));
}

TEST_F(UtilitiesTest, AKeyThatIsNoTextIsMissing) {
  EXPECT_EQ("", GetServiceStringProperty(handle.get(), "\xFF"));
  EXPECT_EQ(-1, GetServiceIntProperty(handle.get(), "\xFF"));
  EXPECT_EQ(0U, GetServiceUInt64Property(handle.get(), "\xFF"));
}

TEST_F(UtilitiesTest, AFailureAnywhereGivesTheNeutralAnswer) {
  setProperty(entry, "Text", std::string(300, 'x'));
  setProperty(entry, "Number", 5);
  for (const auto operation :
       {Operation::CFStringCreateWithCString, Operation::IORegistryEntryCreateCFProperty,
        Operation::CFStringGetBytes, Operation::CFNumberGetValue}) {
    MemoryRegistry::failCall(operation, 1, Repeat::FromThenOn);
    const bool ofNumbers = operation != Operation::CFStringGetBytes;
    const bool ofStrings = operation != Operation::CFNumberGetValue;
    EXPECT_EQ(ofStrings ? 0U : 300U, GetServiceStringProperty(handle.get(), "Text").size());
    EXPECT_EQ(ofNumbers ? -1 : 5, GetServiceIntProperty(handle.get(), "Number"));
    EXPECT_EQ(ofNumbers ? 0U : 5U, GetServiceUInt64Property(handle.get(), "Number"));
    MemoryRegistry::failNothing();
  }
}

TEST_F(UtilitiesTest, AnArrayIsNullForLackOfMemoryAlone) {
  MemoryRegistry::failCall(Operation::CFArrayCreate, 1, Repeat::Once);
  EXPECT_EQ(nullptr, GetServiceArrayProperty(handle.get(), "Missing"));
}

TEST_F(UtilitiesTest, ReadingAStringTakesNoMoreCallsThanItNeeds) {
  setProperty(entry, "Text", "short");
  const auto before = MemoryRegistry::calls();
  GetServiceStringProperty(handle.get(), "Text");
  // The key made and released, the property copied, asked for its type and its length, converted
  // and released.
  EXPECT_EQ(7U, MemoryRegistry::calls() - before);
}

}  // namespace
