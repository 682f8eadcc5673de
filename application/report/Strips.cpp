#include "application/report/Strips.h"

#include <algorithm>
#include <map>
#include <utility>

#include "application/Words.h"
#include "application/text/TextModel.h"

namespace Program {
namespace {

struct Row {
  Strip strip;
  int bay = 0;
  std::size_t lastFrame = 0;  // the number of the last frame that it was in, from 1
};

struct VolumeRows {
  Row row;
  std::map<std::string, Row> members;  // by UUID
};

struct EnclosureRows {
  Row row;
  std::map<std::string, VolumeRows> volumes;  // by UUID
};

class Weaver {
 public:
  void weave(const Story::Frame& frame) {
    ++_frame;
    _time = frame.time;
    for (const auto& picture : frame.enclosures)
      weave(*picture);
    for (auto& [uid, enclosure] : _enclosures)
      endRows(enclosure);
  }

  std::vector<Strip> strips() {
    std::vector<Strip> strips;
    std::map<std::string, int> names;
    for (const auto& [uid, enclosure] : _enclosures)
      ++names[enclosure.row.strip.label];
    for (auto& [uid, enclosure] : _enclosures) {
      if (names[enclosure.row.strip.label] > 1) enclosure.row.strip.detail = hexadecimal(uid);
      strips.push_back(std::move(enclosure.row.strip));
      for (VolumeRows* volume : inOrder(enclosure.volumes))
        append(strips, *volume);
    }
    return strips;
  }

 private:
  void weave(const Picture& picture) {
    EnclosureRows& rows = _enclosures[picture.uid];
    extend(rows.row, picture.up ? "connected" : "coming up");
    // One that is coming up may not have said its name.
    describe(rows.row, Strip::Kind::Enclosure, picture.name, "");
    for (const PicturedVolume& volume : picture.volumes)
      weave(rows.volumes[volume.uuid], volume);
  }

  void weave(VolumeRows& rows, const PicturedVolume& volume) {
    extend(rows.row, wordsFor(volume.state));
    describe(rows.row, Strip::Kind::Volume, volume.name, wordFor(volume.level));
    for (const PicturedMember& member : volume.members) {
      Row& row = rows.members[member.uuid];
      extend(row, wordsFor(member.state));
      if (row.bay == 0) row.bay = member.bay;
      describe(row, Strip::Kind::Member,
               row.bay == 0 ? "Bay not known" : "Bay " + std::to_string(row.bay),
               shortened(member.uuid));
      if (rows.row.bay == 0) rows.row.bay = row.bay;
    }
  }

  static void describe(Row& row, Strip::Kind kind, const std::string& label,
                       const std::string& detail) {
    row.strip.kind = kind;
    row.strip.label = label;
    row.strip.detail = detail;
  }

  void extend(Row& row, const std::string& state) {
    row.lastFrame = _frame;
    if (row.strip.runs.empty() || row.strip.runs.back().state != state) {
      row.strip.runs.push_back({_time, state});
    }
  }

  void endRow(Row& row) {
    if (row.lastFrame == _frame) return;
    extend(row, "");
  }

  void endRows(EnclosureRows& enclosure) {
    endRow(enclosure.row);
    for (auto& [uuid, volume] : enclosure.volumes) {
      endRow(volume.row);
      for (auto& [member, row] : volume.members)
        endRow(row);
    }
  }

  // By the bay in which each sits; those that are not known come last.
  static bool comesBefore(const Row& a, const Row& b) {
    return (a.bay == 0 ? 1 : 0) < (b.bay == 0 ? 1 : 0) ||
           ((a.bay == 0) == (b.bay == 0) && a.bay < b.bay);
  }
  static bool comesBefore(const VolumeRows& a, const VolumeRows& b) {
    return comesBefore(a.row, b.row);
  }

  template <class Rows>
  static std::vector<Rows*> inOrder(std::map<std::string, Rows>& rows) {
    std::vector<Rows*> ordered;
    ordered.reserve(rows.size());
    for (auto& [uuid, row] : rows)
      ordered.push_back(&row);
    std::stable_sort(ordered.begin(), ordered.end(),
                     [](const Rows* a, const Rows* b) { return comesBefore(*a, *b); });
    return ordered;
  }

  static void append(std::vector<Strip>& strips, VolumeRows& volume) {
    strips.push_back(std::move(volume.row.strip));
    for (Row* member : inOrder(volume.members))
      strips.push_back(std::move(member->strip));
  }

  std::map<std::uint64_t, EnclosureRows> _enclosures;
  std::size_t _frame = 0;
  Story::Moment _time = 0;
};

}  // namespace

std::vector<Strip> stripsOf(const Story& story) {
  Weaver weaver;
  for (const Story::Frame& frame : story.frames)
    weaver.weave(frame);
  return weaver.strips();
}

}  // namespace Program
