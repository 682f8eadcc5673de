#include "application/report/BayBoxes.h"

#include "application/text/TextModel.h"

namespace Program {
namespace {

std::string noteOf(const PicturedMember& member, bool diskIsSeen) {
  switch (member.sight) {
    case Sight::Seen:
    case Sight::Nowhere:
      return "";
    case Sight::Inferred:
      return diskIsSeen ? "another disk is in the bay; this one's follows from the other member's"
                        : "no disk is in the bay; it follows from the other member's";
    case Sight::Remembered:
      break;
  }
  return diskIsSeen ? "was here last; another disk is in the bay now"
                    : "was here last; no disk is in the bay now";
}

BayBox emptyBox(int bay, bool diskIsSeen) {
  return {bay, diskIsSeen ? "other disk" : "empty", nullptr, nullptr, ""};
}

class Layout {
 public:
  explicit Layout(const Picture& picture) : _picture(picture) {
    int bay = 0;
    for (const bool disk : picture.disks)
      _boxes.bays.push_back(emptyBox(++bay, disk));
  }

  void place(Sight sight) {
    for (const PicturedVolume& volume : _picture.volumes)
      for (const PicturedMember& member : volume.members)
        if (member.sight == sight) place(volume, member);
  }

  BayBoxes boxes() { return std::move(_boxes); }

 private:
  void place(const PicturedVolume& volume, const PicturedMember& member) {
    const auto index = static_cast<std::size_t>(member.bay) - 1;
    const bool drawn = member.bay >= 1 && index < _boxes.bays.size();
    const bool disk = drawn && _picture.disks[index];
    BayBox box{member.bay, wordsFor(member.state), &volume, &member, noteOf(member, disk)};
    if (drawn && _boxes.bays[index].member == nullptr) {
      _boxes.bays[index] = std::move(box);
    } else {
      // The box of the bay says what is in it now.
      if (member.sight == Sight::Remembered) box.note = "was here last";
      _boxes.elsewhere.push_back(std::move(box));
    }
  }

  const Picture& _picture;
  BayBoxes _boxes;
};

}  // namespace

BayBoxes boxesOf(const Picture& picture) {
  Layout layout(picture);
  for (const Sight sight : {Sight::Seen, Sight::Inferred, Sight::Remembered, Sight::Nowhere})
    layout.place(sight);
  return layout.boxes();
}

}  // namespace Program
