#include "application/text/TextStatus.h"

#include <fmt/format.h>

#include "application/text/TextModel.h"

namespace Program {
namespace {

using RAIDMonitoring::VolumeOnline;

std::string counted(std::size_t count, const char* what) {
  return fmt::format("{} {}{}", count, what, count == 1 ? "" : "s");
}

std::string volumesText(const Overview& overview) {
  std::size_t all = 0;
  std::string others;
  for (const auto& [state, count] : overview.volumes) {
    all += count;
    if (state != VolumeOnline) others += fmt::format(", {} {}", count, wordsFor(state));
  }
  if (all == 0) return "no volumes";
  return counted(all, "volume") + (others.empty() ? ", online" : others);
}

Tone worstOf(const Overview& overview) {
  Tone worst = Tone::Good;
  for (const auto& [state, count] : overview.volumes) {
    const Tone tone = toneOf(state);
    if (tone == Tone::Bad || (tone == Tone::Uneasy && worst == Tone::Good)) worst = tone;
  }
  return worst;
}

}  // namespace

std::string statusText(const Screen& screen, const Overview& overview, const TextClock& clock,
                       int columns) {
  const char* bullet = screen.charset == Charset::Unicode ? "·" : "-";
  Screen line = screen;
  line.columns = columns - 1;
  return lineOf(line, {{volumesText(overview), 0, worstOf(overview)},
                       {bullet, 0, Tone::Quiet},
                       {counted(overview.enclosures.size(), "enclosure")},
                       {bullet, 0, Tone::Quiet},
                       {"last look " + clock.timeOfDay(overview.lastLook), 0, Tone::Quiet}});
}

}  // namespace Program
