#include "application/text/TextSlots.h"

#include <fmt/format.h>

#include "application/text/TextBays.h"
#include "application/text/TextModel.h"

namespace Program {
namespace {

std::string indented(const Screen& screen, const std::string& text, Tone tone) {
  return lineOf(screen, {{" "}, {text, 0, tone}}) + "\n";
}

std::string memberLine(const Screen& screen, const PlacedMember& placed, const char* indentation) {
  const int slot = placed.location.inferred;
  const std::string where = slot < 1 ? "Bay not known" : fmt::format("Bay {}", slot);
  return lineOf(screen,
                {{indentation},
                 {where + ":"},
                 {"disk " + wordsFor(placed.member->state), 0, toneOf(placed.member->state)},
                 {shortened(placed.member->uuid), 0, Tone::Quiet},
                 {"of"},
                 {nameOf(*placed.volume), 0, Tone::Strong},
                 {"(" + conditionOf(*placed.volume) + ")"}}) +
         "\n";
}

std::string enclosurePicture(const Screen& screen, const EnclosureSlots& enclosure) {
  std::string text =
      lineOf(screen, {{enclosureTitle(enclosure.device, screen.charset), 0, Tone::Strong}}) + "\n";
  if (enclosure.device.bridge.empty()) {
    return text + indented(screen, absenceOf(enclosure.device), Tone::Quiet);
  }
  const Bays bays = baysOf(enclosure);
  text += picture(screen, bays);
  for (const Bay& bay : bays.bays) {
    if (bay.member && bay.member->inTrouble()) text += memberLine(screen, *bay.member, "  !");
  }
  if (bays.anyInferred) {
    text += indented(screen, "* the disk cannot be seen; its bay follows from the other disk's",
                     Tone::Quiet);
  }
  for (const PlacedMember& placed : bays.unplaced)
    text += memberLine(screen, placed, " ");
  if (enclosure.volumes.empty()) {
    text += indented(screen, absenceOf(enclosure.device), Tone::Quiet);
  }
  return text;
}

}  // namespace

std::string slotsText(const Screen& screen, const std::vector<EnclosureSlots>& enclosures) {
  if (enclosures.empty()) return NoEnclosures;
  std::string text;
  for (const EnclosureSlots& enclosure : enclosures) {
    if (!text.empty()) text += '\n';
    text += enclosurePicture(screen, enclosure);
  }
  return text;
}

}  // namespace Program
