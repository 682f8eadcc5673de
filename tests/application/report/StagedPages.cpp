// Writes pages that no recording yields: staged_pages KIND FILE.

#include <cstring>
#include <fstream>

#include "application/report/Page.h"
#include "tests/application/report/Stories.h"

namespace ProgramTest {
namespace {

using namespace RAIDMonitoring;
using Program::Picture;
using Program::Sight;
using Program::Story;
using Happening = Program::Story::Happening;

// A disk that comes and goes ten thousand times, and what is logged of it.
Story bigStory() {
  constexpr int Events = 10000;
  const auto well = std::make_shared<const Picture>(wellPicture());
  const auto bad = std::make_shared<const Picture>(degradedPicture(MemberFailed));
  Story story;
  for (int number = 0; number < Events; ++number) {
    const Story::Moment time = 2000 * number;
    const auto& picture = number % 2 == 0 ? well : bad;
    story.frames.push_back({time, {picture}});
    story.events.push_back(volumeEvent(time, Happening::VolumeUpdated, picture->volumes[0]));
    for (int line = 0; line < 5; ++line)
      story.log.push_back({time, Pelago::Logger::Level::Debug, "RAIDMonitor", "a line of the log"});
  }
  story.end = 2000 * Events;
  return story;
}

// Every name tries to get out of its place.
Story hostileStory() {
  const std::string script = "</script><script>window.injected=1;alert(1)</script>";
  const std::string image = "<img src=x onerror=\"window.injected=1\">\"'&lt;<!--";
  const std::string controls =
      std::string("nul\0nul", 7) + "\x1b[31m\u202egnp.exe\u2028\u2029\u0085\xff\xc3(";
  Picture picture = pictureOf(
      {volumeOf(script, VolumeDegraded, {memberIn(1, MemberOnline), memberIn(2, MemberFailed)}),
       volumeOf(controls, VolumeOnline, {memberIn(0, MemberOnline)})});
  picture.name = image;
  picture.volumes[0].members[1].uuid = image;
  picture.volumes[0].members[0].uuid = controls;
  Story story = storyWith({{0, {picture}}}, 2000);
  for (const auto& volume : picture.volumes)
    story.events.push_back(volumeEvent(0, Happening::VolumeAppeared, volume));
  story.log = {{0, Pelago::Logger::Level::Message, script, image + controls}};
  return story;
}

}  // namespace
}  // namespace ProgramTest

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  const bool big = std::strcmp(argv[1], "big") == 0;
  std::ofstream file(argv[2], std::ios::binary);
  file << Program::reportPage(big ? ProgramTest::bigStory() : ProgramTest::hostileStory(),
                              "<b>recording</b>");
  file.close();
  return file ? 0 : 1;
}
