#include "application/text/TextWatchPrinter.h"

#include <fmt/format.h>

#include <algorithm>

#include "application/Words.h"
#include "application/text/TextModel.h"

namespace Program {
namespace {

constexpr int EventColumns = 4;
constexpr int ConditionColumns = 15;
constexpr int BayColumns = 12;

// A wider screen first of all shows more of long names.
int nameColumns(const Screen& screen) {
  return 11 + std::min(screen.columns - Screen::StandardColumns, 24);
}
// A name that takes more than its column is worth more than the end of the line.
int longestName(const Screen& screen) { return nameColumns(screen) + 7; }

Cell timeCell(WatchPrinter::Moment time) { return {clockText(time), 9, Tone::Quiet}; }

const char* wordOf(WatchPrinter::VolumeEvent event) {
  switch (event) {
    case WatchPrinter::VolumeEvent::Appeared:
      return "new";
    case WatchPrinter::VolumeEvent::Updated:
      return "now";
    case WatchPrinter::VolumeEvent::Disappeared:
      break;
  }
  return "gone";
}

}  // namespace

std::string TextWatchPrinter::deviceLine(Moment time, const char* what, std::uint64_t uid) const {
  return lineOf(
      _screen,
      {timeCell(time), {what, EventColumns, Tone::Strong}, {"enclosure " + hexadecimal(uid)}});
}

std::string TextWatchPrinter::deviceAppeared(Moment time, std::uint64_t uid) {
  return deviceLine(time, "new", uid);
}

std::string TextWatchPrinter::deviceDisappeared(Moment time, std::uint64_t uid) {
  return deviceLine(time, "gone", uid);
}

std::string TextWatchPrinter::bays(VolumeEvent event, const VolumeSnapshot& volume) {
  std::string& last = _lastBays[volume.uuid];
  if (event != VolumeEvent::Disappeared) last = baysOf(volume);
  return last;
}

std::string TextWatchPrinter::volumeChanged(Moment time, VolumeEvent event,
                                            const VolumeSnapshot& volume,
                                            const DeviceSnapshot& enclosure) {
  const bool gone = event == VolumeEvent::Disappeared;
  const std::string name =
      clipped(printable(nameOf(volume), _screen.charset), longestName(_screen), _screen.charset);
  return lineOf(_screen,
                {timeCell(time),
                 {wordOf(event), EventColumns, Tone::Strong},
                 {name, nameColumns(_screen), Tone::Strong},
                 {conditionOf(volume), ConditionColumns, gone ? Tone::Quiet : toneOf(volume.state)},
                 {bays(event, volume), BayColumns},
                 {enclosureName(enclosure)}});
}

// In full: whoever asks for the log wants to read it.
std::string TextWatchPrinter::logged(Moment time, const LogLine& line) {
  const std::string text = fmt::format("{} log  {}: {}: {}", clockText(time),
                                       Pelago::nameOf(line.level), line.category, line.text);
  return painted(_screen, Tone::Quiet, printable(text, _screen.charset));
}

std::string TextWatchPrinter::handles(Moment time, const HandleAccounts& accounts) {
  std::uint64_t references = 0;
  for (const HandleAccounts::Entry& entry : accounts.kept)
    references += entry.references;
  return lineOf(_screen, {timeCell(time),
                          {"held", EventColumns, Tone::Strong},
                          {fmt::format("entries {}, references {}, objects {}, values {}",
                                       accounts.kept.size(), references, accounts.objects,
                                       accounts.values)}});
}

}  // namespace Program
