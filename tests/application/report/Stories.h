#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "application/report/Story.h"

namespace ProgramTest {

// Stories put together by hand.

constexpr std::uint64_t Enclosure = 0xE;

inline Program::PicturedMember memberIn(int bay, RAIDMonitoring::MemberState state,
                                        Program::Sight sight = Program::Sight::Seen) {
  return {"MEMBER" + std::to_string(bay) + "-0000", state, bay, sight};
}

inline Program::PicturedVolume volumeOf(const std::string& name,
                                        RAIDMonitoring::RAIDVolumeState state,
                                        std::vector<Program::PicturedMember> members) {
  return {"SET-" + name, name, RAIDMonitoring::LevelMirror, state, std::move(members)};
}

inline Program::Picture pictureOf(std::vector<Program::PicturedVolume> volumes,
                                  std::uint64_t uid = Enclosure) {
  return {uid, "Example Storage Two Bay", true, {true, true}, std::move(volumes)};
}

// Both disks of "Projects" as they should be.
inline Program::Picture wellPicture() {
  using namespace RAIDMonitoring;
  return pictureOf(
      {volumeOf("Projects", VolumeOnline, {memberIn(1, MemberOnline), memberIn(2, MemberOnline)})});
}

// With the disk in bay 2 in another state.
inline Program::Picture degradedPicture(RAIDMonitoring::MemberState state,
                                        Program::Sight sight = Program::Sight::Seen) {
  using namespace RAIDMonitoring;
  return pictureOf({volumeOf("Projects", VolumeDegraded,
                             {memberIn(1, MemberOnline), memberIn(2, state, sight)})});
}

using Frames = std::vector<std::pair<Program::Story::Moment, std::vector<Program::Picture>>>;

inline Program::Story storyWith(const Frames& frames, Program::Story::Moment end) {
  Program::Story story;
  for (const auto& [time, pictures] : frames) {
    Program::Story::Frame frame;
    frame.time = time;
    for (const Program::Picture& picture : pictures)
      frame.enclosures.push_back(std::make_shared<const Program::Picture>(picture));
    story.frames.push_back(std::move(frame));
  }
  story.end = end;
  return story;
}

inline Program::Story::Event volumeEvent(Program::Story::Moment time,
                                         Program::Story::Happening what,
                                         const Program::PicturedVolume& volume) {
  Program::Story::Event event;
  event.time = time;
  event.what = what;
  event.device = Enclosure;
  event.volume.uuid = volume.uuid;
  event.volume.name = volume.name;
  event.volume.level = volume.level;
  event.volume.state = volume.state;
  event.volume.device = Enclosure;
  for (const Program::PicturedMember& member : volume.members)
    event.volume.members.push_back({member.uuid, member.state, "", member.bay});
  return event;
}

inline Program::Story::Event deviceEvent(Program::Story::Moment time,
                                         Program::Story::Happening what) {
  Program::Story::Event event;
  event.time = time;
  event.what = what;
  event.device = Enclosure;
  return event;
}

}  // namespace ProgramTest
