#include "application/text/TextBays.h"

#include <fmt/format.h>

#include <algorithm>

#include "application/Words.h"
#include "application/text/TextModel.h"

namespace Program {
namespace {

constexpr int BoxColumns = 12;  // of text; a blank on either side
constexpr int MostBoxesInARow = 5;

struct Frame {
  const char* horizontal;
  const char* vertical;
  const char* top[3];  // left, between two boxes, right
  const char* bottom[3];
};
constexpr Frame unicodeFrame = {"─", "│", {"┌", "┬", "┐"}, {"└", "┴", "┘"}};
constexpr Frame asciiFrame = {"-", "|", {"+", "+", "+"}, {"+", "+", "+"}};

using Box = std::vector<Cell>;

std::size_t boxesInARow(const Screen& screen) {
  constexpr int margin = 3;  // the indentation and the last wall
  const int fitting = (screen.drawingColumns - margin) / (BoxColumns + 3);
  return static_cast<std::size_t>(std::clamp(fitting, 1, MostBoxesInARow));
}

bool diskIsSeen(const EnclosureSlots& enclosure, int bay) {
  return bay <= EnclosureSlots::BaysAsked &&
         enclosure.answers[static_cast<std::size_t>(bay - 1)] == bay;
}

void place(Bays& bays, const PlacedMember& placed) {
  const int slot = placed.location.inferred;
  if (slot < 1 || slot > static_cast<int>(bays.bays.size())) {
    bays.unplaced.push_back(placed);
    return;
  }
  Bay& bay = bays.bays[static_cast<std::size_t>(slot - 1)];
  if (bay.member) {
    bays.unplaced.push_back(placed);
    return;
  }
  bay.member = placed;
  bays.anyInferred = bays.anyInferred || placed.inferred();
}

// What the lines below the boxes explain.
std::string marksOf(const PlacedMember& placed) {
  const std::string marks =
      std::string(placed.inTrouble() ? "!" : "") + (placed.inferred() ? "*" : "");
  return marks.empty() ? marks : " " + marks;
}

Box memberBox(const Bay& bay) {
  const VolumeSnapshot& volume = *bay.member->volume;
  const MemberSnapshot& member = *bay.member->member;
  Box box = {{fmt::format("Bay {}{}", bay.number, marksOf(*bay.member)), 0, Tone::Strong},
             {"disk " + wordsFor(member.state), 0, toneOf(member.state)},
             {shortened(member.uuid), 0, Tone::Quiet},
             {""},
             {nameOf(volume), 0, Tone::Strong},
             {wordFor(volume.level)},
             {wordsFor(volume.state), 0, toneOf(volume.state)}};
  // A new disk in the place of the one that is absent, most likely.
  if (bay.disk && bay.member->inferred()) box.push_back({"+ other disk", 0, Tone::Uneasy});
  return box;
}

Box boxOf(const Bay& bay) {
  if (bay.member) return memberBox(bay);
  return {{fmt::format("Bay {}", bay.number), 0, Tone::Strong},
          {bay.disk ? "other disk" : "empty", 0, Tone::Quiet}};
}

std::string edge(const Screen& screen, const Frame& frame, const char* const (&corners)[3],
                 std::size_t boxes) {
  std::string line = "  ";
  for (std::size_t box = 0; box < boxes; ++box) {
    line += corners[box == 0 ? 0 : 1];
    for (int column = 0; column < BoxColumns + 2; ++column)
      line += frame.horizontal;
  }
  line += corners[2];
  return painted(screen, Tone::Quiet, line) + "\n";
}

std::string boxCell(const Screen& screen, const Box& box, std::size_t place) {
  const Cell cell = place < box.size() ? box[place] : Cell{};
  const std::string text = printable(cell.text, screen.charset);
  return painted(screen, cell.tone, padded(text, BoxColumns, screen.charset));
}

std::string rowOfBoxes(const Screen& screen, const std::vector<Box>& boxes) {
  const Frame& frame = screen.charset == Charset::Unicode ? unicodeFrame : asciiFrame;
  const std::string wall = painted(screen, Tone::Quiet, frame.vertical);
  std::size_t height = 0;
  for (const Box& box : boxes)
    height = std::max(height, box.size());

  std::string text = edge(screen, frame, frame.top, boxes.size());
  for (std::size_t line = 0; line < height; ++line) {
    text += "  " + wall;
    for (const Box& box : boxes)
      text += " " + boxCell(screen, box, line) + " " + wall;
    text += '\n';
  }
  return text + edge(screen, frame, frame.bottom, boxes.size());
}

}  // namespace

bool PlacedMember::inTrouble() const { return toneOf(member->state) == Tone::Bad; }

Bays baysOf(const EnclosureSlots& enclosure) {
  Bays bays;
  for (int number = 1; number <= static_cast<int>(enclosure.device.bayCount); ++number) {
    bays.bays.push_back({number, std::nullopt, diskIsSeen(enclosure, number)});
  }
  auto location = enclosure.locations.begin();
  for (const VolumeSnapshot& volume : enclosure.volumes) {
    for (const MemberSnapshot& member : volume.members) {
      place(bays, {&volume, &member, *location++});
    }
  }
  return bays;
}

std::string picture(const Screen& screen, const Bays& bays) {
  std::string text;
  std::vector<Box> row;
  for (const Bay& bay : bays.bays) {
    row.push_back(boxOf(bay));
    if (row.size() == boxesInARow(screen) || &bay == &bays.bays.back()) {
      text += rowOfBoxes(screen, row);
      row.clear();
    }
  }
  return text;
}

}  // namespace Program
