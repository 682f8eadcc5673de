#include "application/text/TextWatch.h"

#include <fmt/format.h>

#include <algorithm>
#include <limits>
#include <utility>

#include "application/text/TextDisks.h"
#include "application/text/TextModel.h"
#include "application/text/TextStatus.h"
#include "application/watch/WatchOutput.h"

namespace Program {
namespace {

constexpr int EventColumns = 4;
constexpr int ConditionColumns = 15;
constexpr int DiskColumns = 20;
// Of whatever a registry calls something: nothing of a line is cut off, so one name must not fill
// it.
constexpr int LongestText = 60;

// A wider screen shows more of long names.
int nameColumns(const Screen& screen) {
  return 11 + std::clamp(screen.columns - Screen::StandardColumns, 0, 24);
}

std::string brief(const Screen& screen, const std::string& text) {
  return clipped(printable(text, screen.charset), LongestText, screen.charset);
}

// A line that is longer than the screen goes on in the next one: what it says at its end matters.
Screen unbounded(Screen screen) {
  screen.columns = std::numeric_limits<int>::max();
  return screen;
}

const char* wordOf(VolumeEvent::Kind kind) {
  switch (kind) {
    case VolumeEvent::Kind::Appeared:
      return "new";
    case VolumeEvent::Kind::Updated:
      return "now";
    case VolumeEvent::Kind::Disappeared:
      break;
  }
  return "gone";
}

}  // namespace

TextWatch::TextWatch(const Screen& screen, TextClock clock, WatchOutput& output, Status status)
    : _screen(screen), _clock(std::move(clock)), _output(output), _status(status) {}

void TextWatch::heard(const WatchEvent& event) {
  if (const auto* volume = std::get_if<VolumeEvent>(&event.what))
    _enclosures.learn(volume->enclosure);
  _instant.add(event);
}

void TextWatch::instantEnded(const Overview& overview) {
  const int columns = _output.columns();
  _screen.columns = std::max(columns, Screen::StandardColumns);
  for (const DeviceSnapshot& enclosure : overview.enclosures)
    _enclosures.learn(enclosure);
  writeCauses();
  _enclosures.forgetOthers(overview.enclosures);
  if (_status == Status::Shown && columns > 1) {
    _output.showStatus(statusText(_screen, overview, _clock, columns));
  }
}

void TextWatch::writeCauses() {
  for (const Cause& cause : _instant.take())
    _output.writeLine(lineFor(cause));
}

std::string TextWatch::lineFor(const Cause& cause) {
  return std::visit(
      [this, &cause](const auto& what) { return line(cause.event.time, what, cause); },
      cause.event.what);
}

std::string TextWatch::line(Pelago::Milliseconds time, const DeviceEvent& event,
                            const Cause& cause) {
  const bool gone = event.kind == DeviceEvent::Kind::Disappeared;
  std::string what = brief(_screen, _enclosures.nameAndUID(event.uid));
  const char* separator = ", with ";
  for (const VolumeEvent& lost : cause.lost) {
    what += separator + lostText(lost, event.uid);
    separator = ", ";
  }
  return lineOf(unbounded(_screen), {{_clock.text(time), 0, Tone::Quiet},
                                     {gone ? "gone" : "new", EventColumns, Tone::Strong},
                                     {what}});
}

// That the bays are former ones goes without saying. A volume that spans enclosures may have been
// told of by another one only: that one's bays are not those of the one that has gone.
std::string TextWatch::lostText(const VolumeEvent& lost, std::uint64_t departed) {
  std::vector<DiskNews> disks = _bays.learn(lost);
  for (DiskNews& disk : disks)
    disk.former = false;
  return fmt::format("{} ({}; {})", brief(_screen, nameOf(lost.volume)), conditionOf(lost.volume),
                     lost.enclosure.uid == departed ? disksText(disks) : "bays not known");
}

std::string TextWatch::placeText(const DeviceSnapshot& enclosure) const {
  return "in " + brief(_screen, _enclosures.nameOf(enclosure));
}

std::string TextWatch::line(Pelago::Milliseconds time, const VolumeEvent& event, const Cause&) {
  const bool gone = event.kind == VolumeEvent::Kind::Disappeared;
  const VolumeSnapshot& volume = event.volume;
  return lineOf(unbounded(_screen),
                {{_clock.text(time), 0, Tone::Quiet},
                 {wordOf(event.kind), EventColumns, Tone::Strong},
                 {brief(_screen, nameOf(volume)), nameColumns(_screen), Tone::Strong},
                 {conditionOf(volume), ConditionColumns, gone ? Tone::Quiet : toneOf(volume.state)},
                 {disksText(_bays.learn(event)), DiskColumns},
                 {placeText(event.enclosure)}});
}

// In full: whoever asks for the log wants to read it.
std::string TextWatch::line(Pelago::Milliseconds time, const LogEvent& event, const Cause&) {
  const std::string text = fmt::format("{} log  {}: {}: {}", _clock.text(time),
                                       Pelago::nameOf(event.level), event.category, event.text);
  return painted(_screen, Tone::Quiet, printable(text, _screen.charset));
}

std::string TextWatch::line(Pelago::Milliseconds time, const HandlesEvent& event, const Cause&) {
  const HandleAccounts& accounts = event.accounts;
  std::uint64_t references = 0;
  for (const HandleAccounts::Entry& entry : accounts.kept)
    references += entry.references;
  return lineOf(
      unbounded(_screen),
      {{_clock.text(time), 0, Tone::Quiet},
       {"held", EventColumns, Tone::Strong},
       {fmt::format("entries {}, references {}, objects {}, values {}", accounts.kept.size(),
                    references, accounts.objects, accounts.values)}});
}

std::string TextWatch::line(Pelago::Milliseconds time, const DroppedEvent& event, const Cause&) {
  return lineOf(unbounded(_screen), {{_clock.text(time), 0, Tone::Quiet},
                                     {"lost", EventColumns, Tone::Strong},
                                     {fmt::format("{} event{} for the program, which is too slow",
                                                  event.count, event.count == 1 ? "" : "s"),
                                      0, Tone::Bad}});
}

}  // namespace Program
