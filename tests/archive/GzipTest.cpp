#include <gmock/gmock.h>
#include <rapidcheck/gtest.h>

#include <cstdlib>
#include <stdexcept>

#include "platform/registry/memory/archive/Recording.h"
#include "tests/archive/Packing.h"
#include "tests/archive/Support.h"

using MemoryRegistry::readArchive;
using testing::HasSubstr;

namespace {

// Packed by the tool that people use; it keeps the file's name and time in what it writes.
std::string packedByGzip(const TemporaryFolder& folder, const std::string& file) {
  if (std::system(("gzip '" + file + "'").c_str()) != 0) throw std::runtime_error("gzip");
  return folder.path() + "/" + std::filesystem::path(file).filename().string() + ".gz";
}

const std::string text =
    "+-o Root  <class IORegistryEntry, id 0x1, retain 9>\n    {\n      \"k\" = 1\n    }\n";

}  // namespace

TEST(Gzip, AnArchiveOfAnyFormMayBePacked) {
  const std::string xml = archive("<key>k</key><integer>1</integer>" + children(entry("2")));
  const TemporaryFolder folder;
  for (const std::string& plain : {xml, binaryTwin(xml), text}) {
    const std::string file = packedByGzip(folder, folder.write("archive", plain));
    EXPECT_TRUE(readArchive(file) == parse(plain)) << plain;
    std::filesystem::remove(file);
  }
}

TEST(Gzip, SeveralMembersAreOneArchive) {
  for (std::size_t cut = 0; cut <= text.size(); ++cut) {
    EXPECT_TRUE(parse(packed(text.substr(0, cut)) + packed(text.substr(cut))) == parse(text));
  }
}

TEST(Gzip, ARecordingMayHoldPackedArchivesAndTexts) {
  const TemporaryFolder folder;
  folder.write("0.plist", packed(archive()));
  folder.write("100.plist", text);
  folder.write("200.plist", packed(text));
  auto recording = MemoryRegistry::Recording::open(folder.path());
  ASSERT_EQ(3U, recording.times().size());
  EXPECT_EQ("Root", recording.content(1).entries.at(0).description.name);
  EXPECT_TRUE(recording.content(1) == recording.content(2));
}

TEST(Gzip, OtherNamesInARecordingDoNotCount) {
  const TemporaryFolder folder;
  folder.write("0.plist", archive());
  folder.write("100.txt", text);
  folder.write("200.plist.gz", packed(text));
  EXPECT_EQ(1U, MemoryRegistry::Recording::open(folder.path()).times().size());
}

TEST(Gzip, CutOffAnywhereItIsRefused) {
  const std::string whole = packed(archive());
  for (std::size_t size = 2; size < whole.size(); ++size) {
    EXPECT_EQ("it: has gzip data that are cut off", reasonAgainst(whole.substr(0, size)));
  }
}

TEST(Gzip, WhatFollowsItIsRefused) {
  for (const char* more : {"x", "\n", "+-o Root"}) {
    EXPECT_EQ("it: has something after its gzip data", reasonAgainst(packed(archive()) + more));
  }
  EXPECT_EQ("it: has gzip data that are cut off",
            reasonAgainst(packed(archive()) + "\x1F\x8B\x08"));
}

TEST(Gzip, OneWhoseCheckOrSizeIsWrongIsDamagedAndNotCutOff) {
  const std::string whole = packed(archive());
  for (std::size_t fromTheEnd = 1; fromTheEnd <= 8; ++fromTheEnd) {
    std::string bytes = whole;
    bytes[bytes.size() - fromTheEnd] ^= 1;
    EXPECT_EQ("it: has gzip data that are damaged", reasonAgainst(bytes)) << fromTheEnd;
  }
}

TEST(Gzip, WhatIsWrongWithinItIsSaid) {
  EXPECT_THAT(reasonAgainst(packed("hello")), HasSubstr("unpacked: is not a property list"));
  EXPECT_EQ("it: unpacked: line 2: neither an entry nor a property",
            reasonAgainst(packed(text.substr(0, text.find('\n')) + "\nx\n")));
  EXPECT_THAT(reasonAgainst(packed(packed(text))), HasSubstr("unpacked: is not a property list"));
  EXPECT_EQ("it: is empty once unpacked", reasonAgainst(packed("")));
}

TEST(Gzip, OneThatUnpacksToTooMuchIsRefused) {
  const std::string blanks = packed(repeated(" ", std::size_t{8} << 20U));
  EXPECT_EQ("it: unpacks to more than 40 MiB: unpack it first", reasonAgainst(repeated(blanks, 6)));
  // 100 MB, were it unpacked to its end.
  EXPECT_EQ("it: unpacks to more than 40 MiB: unpack it first",
            reasonAgainst(packed(text) + repeated(blanks, 12)));
}

TEST(Gzip, OneThatTakesTooMuchOnceUnpackedIsRefused) {
  const std::string numbers = "      \"k\" = (" + repeated("1,", 3'000'000) + "1)\n    }\n";
  EXPECT_EQ("it: would take more memory than its size allows: unpack it first",
            reasonAgainst(packed(text.substr(0, text.find("      \"k")) + numbers)));
}

RC_GTEST_PROP(Gzip, AnyDamageIsReadOrRefusedWithOneLine, ()) {
  const std::string plain = *rc::gen::element(archive(), text);
  std::string bytes = packed(plain);
  const int changes = *rc::gen::inRange(1, 5);
  for (int i = 0; i < changes; ++i) {
    bytes[*rc::gen::inRange<std::size_t>(2, bytes.size())] = *rc::gen::arbitrary<char>();
  }
  RC_ASSERT(reasonAgainst(bytes).find('\n') == std::string::npos);
}
