// People's output of the whole program, kept as text in golden/.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/application/support/Program.h"

namespace ProgramTest {
namespace {

Launch inLocale(const std::string& locale) {
  Launch launch;
  launch.environment["LC_ALL"] = locale;
  return launch;
}

TEST(People, WatchADegradingMirror) {
  expectGolden("watch-two-bay-mirror-degrades.txt",
               run({"watch", "--handles", "--registry", recording("two-bay-mirror-degrades")}).out);
}

TEST(People, WatchFiveDisks) {
  expectGolden("watch-five-bay-five-disks.txt",
               run({"watch", "--registry", recording("five-bay-five-disks")}).out);
}

TEST(People, WatchAnEnclosureThatIsUnpluggedAndComesBack) {
  expectGolden("watch-enclosure-gone-and-back.txt",
               run({"watch", "--registry", recording("enclosure-gone-and-back")}).out);
}

TEST(People, WatchASetThatSpansEnclosures) {
  expectGolden(
      "watch-spanning-set.txt",
      run({"watch", "--registry", recording("spanning-set-leaves-through-the-other")}).out);
}

TEST(People, WatchInASCII) {
  const Result result =
      run({"watch", "--ascii", "--registry", recording("two-bay-mirror-degrades")});
  EXPECT_EQ(run({"watch", "--registry", recording("two-bay-mirror-degrades")}).out, result.out)
      << "there is nothing else in it";
}

TEST(People, WatchAPlugInWithItsLog) {
  expectGolden("watch-plug-in-in-stages.txt",
               run({"watch", "--log", "--registry", recording("plug-in-in-stages")}).out);
}

TEST(People, ListAnEnclosureWithADiskPulled) {
  expectGolden(
      "list-five-bay-five-disks.txt",
      run({"list", "--until", "8000", "--registry", recording("five-bay-five-disks")}).out);
}

TEST(People, ListAnEnclosureThatIsComingUp) {
  expectGolden("list-plug-in-in-stages.txt",
               run({"list", "--until", "4000", "--registry", recording("plug-in-in-stages")}).out);
}

TEST(People, SlotsOfAnEnclosureWithADiskPulled) {
  expectGolden(
      "slots-five-bay-five-disks.txt",
      run({"slots", "--until", "8000", "--registry", recording("five-bay-five-disks")}).out);
}

TEST(People, SlotsOfAMirrorWithADiskPulled) {
  expectGolden(
      "slots-two-bay-mirror-degrades.txt",
      run({"slots", "--until", "8000", "--registry", recording("two-bay-mirror-degrades")}).out);
}

TEST(People, WhoHasNoUTF8LocaleGetsASCII) {
  const Arguments arguments = {"slots", "--until", "8000", "--registry",
                               recording("two-bay-mirror-degrades")};
  for (const char* locale : {"C", "POSIX", "de_DE.ISO-8859-1"}) {
    expectGolden("slots-two-bay-mirror-degrades.ascii.txt", run(arguments, inLocale(locale)).out);
  }
  for (const char* locale : {"en_US.UTF-8", "C.utf8", "nowhere.utf-8"}) {
    expectGolden("slots-two-bay-mirror-degrades.txt", run(arguments, inLocale(locale)).out);
  }
  Arguments ascii = arguments;
  ascii.push_back("--ascii");
  expectGolden("slots-two-bay-mirror-degrades.ascii.txt", run(ascii).out);
}

TEST(People, NoEnclosureAtAll) {
  const std::string file = recording("plug-in-in-stages/0.plist");
  EXPECT_EQ("", run({"watch", "--registry", file}).out);
  EXPECT_EQ("No enclosure is connected.\n", run({"list", "--registry", file}).out);
  EXPECT_EQ("No enclosure is connected.\n", run({"slots", "--registry", file}).out);
}

}  // namespace
}  // namespace ProgramTest
