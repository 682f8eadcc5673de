#include <gmock/gmock.h>

#include "tests/archive/BinaryBuilder.h"
#include "tests/archive/Support.h"

using MemoryRegistry::Array;
using MemoryRegistry::Data;
using MemoryRegistry::Number;
using MemoryRegistry::Opaque;
using MemoryRegistry::PropertyValue;
using MemoryRegistry::RegistryContent;
using testing::HasSubstr;
using namespace std::string_literals;

namespace {

// An archive whose property "k" is the first of `objects`, which are numbered from 7 on.
std::string withObjects(const std::vector<std::string>& objects) {
  BinaryBuilder builder;
  builder.objects = {"\xD3\x01\x03\x05\x02\x04\x07"s,
                     BinaryBuilder::text("IOObjectClass"),
                     BinaryBuilder::text("IOService"),
                     BinaryBuilder::text("IORegistryEntryID"),
                     "\x10\x01"s,
                     BinaryBuilder::text("k"),
                     BinaryBuilder::text("unused")};
  builder.objects.insert(builder.objects.end(), objects.begin(), objects.end());
  return builder.build();
}

std::string small() { return withObjects({"\x09"}); }

// The small list with other bytes at the end.
std::string withTrailer(const std::string& trailer) {
  const std::string list = small();
  return list.substr(0, list.size() - 32) + trailer;
}

std::uint64_t tableOffset() { return small().size() - 32 - 8 * 4; }

}  // namespace

TEST(BinaryArchive, EachKindOfObjectIsItsValue) {
  const struct {
    std::vector<std::string> objects;
    PropertyValue value;
  } rows[] = {
      {{"\x08"s}, false},
      {{"\x09"s}, true},
      {{"\x10\xFF"s}, 255},
      {{"\x11\xFF\xFF"s}, 65535},
      {{"\x12\xFF\xFF\xFF\xFF"s}, Number{0xFFFFFFFF, 64}},
      {{"\x13"s + std::string(8, '\xFF')}, Number{~std::uint64_t{0}, 64}},
      {{"\x14"s + std::string(8, '\0') + std::string(8, '\xFF')}, Number{~std::uint64_t{0}, 64}},
      {{"\x14"s + std::string(16, '\xFF')}, Number{~std::uint64_t{0}, 64}},
      {{"\x22\x3F\x80\0\0"s}, 1.0},
      {{"\x23\x3F\xF0\0\0\0\0\0\0"s}, 1.0},
      {{"\x33\x3F\xF0\0\0\0\0\0\0"s}, Opaque{}},
      {{"\x80\x05"s}, Opaque{}},
      {{"\x42\x01\x02"s}, Data{1, 2}},
      {{"\x40"s}, Data{}},
      {{"\x51x"s}, "x"},
      {{"\x50"s}, ""},
      {{"\x62\x20\xAC\x00\x41"s},
       "\xE2\x82\xAC"
       "A"},
      {{"\x62\xD8\x3D\xDE\x00"s}, "\xF0\x9F\x98\x80"},
      {{"\xA2\x08\x08"s, "\x09"s}, Array{true, true}},
      {{"\xC1\x08"s, "\x09"s}, Array{true}},
      {{"\xAF\x10\x01\x08"s, "\x09"s}, Array{true}},
      {{"\xD1\x05\x08"s, "\x09"s}, MemoryRegistry::Dictionary{{"k", true}}},
      {{"\xD2\x05\x05\x08\x09"s, "\x09"s, "\x10\x07"s}, MemoryRegistry::Dictionary{{"k", 7}}},
  };
  for (const auto& row : rows) {
    const std::string list = withObjects(row.objects);
    const std::string name = testing::PrintToString(row.objects[0]);
    ASSERT_EQ("", reasonAgainst(list)) << name;
    const RegistryContent content = parse(list);
    EXPECT_TRUE(row.value == *property(content.entries.at(0), "k")) << name;
  }
}

TEST(BinaryArchive, MalformedObjectsAreRefused) {
  const struct {
    std::vector<std::string> objects;
    const char* reason;
  } rows[] = {
      {{"\x00"s}, "an object of unknown kind"},
      {{"\x0F"s}, "an object of unknown kind"},
      {{"\x15"s + std::string(32, '\1')}, "an object of unknown kind"},
      {{"\x21\0\0"s}, "an object of unknown kind"},
      {{"\x24"s + std::string(16, '\1')}, "an object of unknown kind"},
      {{"\x32\0\0\0\0"s}, "an object of unknown kind"},
      {{"\x71x"s}, "an object of unknown kind"},
      {{"\x8F"s + std::string(16, '\1')}, "an object of unknown kind"},
      {{"\x90"s}, "an object of unknown kind"},
      {{"\xB0"s}, "an object of unknown kind"},
      {{"\xE0"s}, "an object of unknown kind"},
      {{"\xF0"s}, "an object of unknown kind"},
      {{"\x14"s + std::string(16, '\1')}, "an integer of more than 64 bits"},
      {{"\x14"s + std::string(7, '\0') + '\1' + std::string(8, '\0')},
       "an integer of more than 64 bits"},
      {{"\x14"s + std::string(7, '\xFF') + '\xFE' + std::string(8, '\xFF')},
       "an integer of more than 64 bits"},
      {{"\x14"s + std::string(8, '\xFF') + std::string(8, '\x7F')},
       "an integer of more than 64 bits"},
      {{"\x13\0"s}, "an object is not within the file"},
      {{"\x23\0"s}, "an object is not within the file"},
      {{"\x33\0"s}, "an object is not within the file"},
      {{"\x42x"s}, "an object is not within the file"},
      {{"\x5F"s}, "an object is not within the file"},
      {{"\x5F\x13\0"s}, "an object is not within the file"},
      {{"\x4F\x13\x7F\xFF\xFF\xFF\xFF\xFF\xFF\xFF"s}, "an object is not within the file"},
      {{"\x6F\x13\x80\0\0\0\0\0\0\x01xx"s}, "an object is not within the file"},
      {{"\xAF\x13\xFF\xFF\xFF\xFF\xFF\xFF\xFF\xFF"s}, "an object is not within the file"},
      {{"\xDF\x13\x80\0\0\0\0\0\0\x01\x05\x05"s}, "an object is not within the file"},
      {{"\xAF\x22\0\0\0\0"s}, "an object has an impossible length"},
      {{"\x4F\x14"s + std::string(16, '\0')}, "an object has an impossible length"},
      {{"\x53"s
        "a\0b"s},
       "a text that is none"},
      {{"\x52\xFF\xFE"s}, "a text that is none"},
      {{"\x61\xD8\x00"s}, "a text that is none"},
      {{"\x61\xDC\x00"s}, "a text that is none"},
      {{"\x62\xD8\x00\x00\x41"s}, "a text that is none"},
      {{"\x61\0\0"s}, "a text that is none"},
      {{"\xA1\x63"s}, "a reference leads nowhere"},
      {{"\xA1\x07"s}, "has an object within itself"},
      {{"\xA1\x00"s}, "has an object within itself"},
      {{"\xA1\x08"s, "\xD1\x05\x07"s}, "has an object within itself"},
      {{"\xD1\x08\x08"s, "\x10\x05"s}, "has a key that is no string"},
      {{"\xD1\x08\x09"s, "\xA0"s, "\x09"s}, "has a key that is no string"},
  };
  for (const auto& row : rows) {
    EXPECT_THAT(reasonAgainst(withObjects(row.objects)), HasSubstr(row.reason))
        << testing::PrintToString(row.objects[0]);
  }
}

TEST(BinaryArchive, AMalformedFrameIsRefused) {
  const std::uint64_t table = tableOffset();
  const auto trailer = BinaryBuilder::trailer;
  const std::uint64_t huge = ~std::uint64_t{0};
  const struct {
    std::string list;
    const char* reason;
  } rows[] = {
      {"bplist00", "its begin or end is missing"},
      {"bplist15" + small().substr(8), "its begin or end is missing"},
      {small() + "junk", "is not a binary property list"},
      {small().substr(0, small().size() - 1), "is not a binary property list"},
      {withTrailer(trailer(0, 1, 8, 0, table)), "numbers of an impossible size"},
      {withTrailer(trailer(9, 1, 8, 0, table)), "numbers of an impossible size"},
      {withTrailer(trailer(4, 0, 8, 0, table)), "numbers of an impossible size"},
      {withTrailer(trailer(4, 255, 8, 0, table)), "numbers of an impossible size"},
      {withTrailer(trailer(4, 1, 9, 0, table)), "its table of objects is not within the file"},
      {withTrailer(trailer(4, 1, huge, 0, table)), "its table of objects is not within the file"},
      {withTrailer(trailer(4, 1, huge / 4 + 1, 0, table)),
       "its table of objects is not within the file"},
      {withTrailer(trailer(4, 1, 8, 0, 0)), "its table of objects is not within the file"},
      {withTrailer(trailer(4, 1, 8, 0, huge)), "its table of objects is not within the file"},
      {withTrailer(trailer(4, 1, 0, 0, table)), "an impossible number of objects"},
      {withTrailer(trailer(4, 1, 8, 8, table)), "an impossible number of objects"},
      {withTrailer(trailer(4, 1, 8, huge, table)), "an impossible number of objects"},
      {withTrailer(trailer(1, 1, 30, 0, 9)), "an impossible number of objects"},
      {BinaryBuilder().finish("bplist00\x09", {8, 8}), "an impossible number of objects"},
      {BinaryBuilder().finish("bplist00\x09", {0}), "an object is not within the file"},
      {BinaryBuilder().finish("bplist00\x09", {9}), "an object is not within the file"},
      {BinaryBuilder().finish("bplist00\x09", {0xFFFFFFFF}), "an object is not within the file"},
      {BinaryBuilder().finish("bplist00\x09", {8}), "has no dictionary on top"},
  };
  for (const auto& row : rows) {
    EXPECT_THAT(reasonAgainst(row.list), HasSubstr(row.reason)) << testing::PrintToString(row.list);
  }
}

TEST(BinaryArchive, AnyByteMayBeWrongWithoutHarm) {
  const std::string good =
      binaryTwin(archive("<key>a</key><array><string>x</string><data>AAAA</data></array>" +
                         children(entry("2", "<key>r</key><real>1</real>"))));
  ASSERT_EQ("", reasonAgainst(good));
  for (std::size_t at = 0; at < good.size(); ++at) {
    for (const char byte : {'\0', '\1', '\x5F', '\x7F', '\xA3', '\xD2', '\xFF'}) {
      std::string bad = good;
      bad[at] = byte;
      const std::string reason = reasonAgainst(bad);
      EXPECT_EQ(std::string::npos, reason.find('\n')) << at;
    }
  }
}
