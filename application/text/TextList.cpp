#include "application/text/TextList.h"

#include "application/Words.h"
#include "application/text/TextModel.h"

namespace Program {
namespace {

constexpr int NameColumns = 20;
constexpr int LevelColumns = 7;
constexpr int StateColumns = 12;
constexpr int BayColumns = 3;
constexpr int MemberColumns = 9;

// One line of the table, indented.
std::string row(const Screen& screen, std::vector<Cell> cells) {
  cells.insert(cells.begin(), Cell{" "});
  return lineOf(screen, cells) + "\n";
}

std::string heading(const Screen& screen) {
  return row(screen, {{"VOLUME", NameColumns, Tone::Quiet},
                      {"LEVEL", LevelColumns, Tone::Quiet},
                      {"STATE", StateColumns, Tone::Quiet},
                      {"BAY", BayColumns, Tone::Quiet},
                      {"DISK", MemberColumns, Tone::Quiet},
                      {"MEMBER", 0, Tone::Quiet}});
}

std::vector<Cell> volumeCells(const Screen& screen, const VolumeSnapshot& volume) {
  const std::string name = printable(nameOf(volume), screen.charset);
  return {{clipped(name, NameColumns, screen.charset), NameColumns, Tone::Strong},
          {wordFor(volume.level), LevelColumns},
          {wordsFor(volume.state), StateColumns, toneOf(volume.state)}};
}

std::vector<Cell> memberCells(const MemberSnapshot& member) {
  const int slot = member.slot.value_or(-1);
  return {{slot < 1 ? "?" : std::to_string(slot), BayColumns},
          {wordsFor(member.state), MemberColumns, toneOf(member.state)},
          {shortened(member.uuid), 0, Tone::Quiet}};
}

// The volume stands in the line of its first member.
std::string volumeRows(const Screen& screen, const VolumeSnapshot& volume) {
  std::vector<Cell> cells = volumeCells(screen, volume);
  if (volume.members.empty()) return row(screen, cells);
  std::string rows;
  for (const MemberSnapshot* member : membersByBay(volume)) {
    const std::vector<Cell> disk = memberCells(*member);
    cells.insert(cells.end(), disk.begin(), disk.end());
    rows += row(screen, cells);
    cells = {{"", NameColumns}, {"", LevelColumns}, {"", StateColumns}};
  }
  return rows;
}

std::string enclosureTable(const Screen& screen, const EnclosureVolumes& enclosure) {
  std::string table =
      lineOf(screen, {{enclosureTitle(enclosure.device, screen.charset), 0, Tone::Strong}}) + "\n";
  if (enclosure.volumes.empty()) {
    return table + row(screen, {{absenceOf(enclosure.device), 0, Tone::Quiet}});
  }
  table += heading(screen);
  for (const VolumeSnapshot& volume : enclosure.volumes)
    table += volumeRows(screen, volume);
  return table;
}

}  // namespace

std::string listText(const Screen& screen, const std::vector<EnclosureVolumes>& enclosures) {
  if (enclosures.empty()) return NoEnclosures;
  std::string text;
  for (const EnclosureVolumes& enclosure : enclosures) {
    if (!text.empty()) text += '\n';
    text += enclosureTable(screen, enclosure);
  }
  return text;
}

}  // namespace Program
