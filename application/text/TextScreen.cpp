#include "application/text/TextScreen.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <map>

#include "application/StandardOutput.h"

namespace Program {

using namespace RAIDMonitoring;

namespace {

// An empty variable counts as none.
std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

bool isColourWanted(const StandardOutput& output, ColourChoice choice) {
  if (choice != ColourChoice::Auto) return choice == ColourChoice::Always;
  return output.isTerminal() && environment("NO_COLOR").empty() && environment("TERM") != "dumb";
}

const char* codeOf(Tone tone) {
  switch (tone) {
    case Tone::Strong:
      return "\033[1m";
    case Tone::Quiet:
      return "\033[2m";
    case Tone::Good:
      return "\033[32m";
    case Tone::Uneasy:
      return "\033[33m";
    case Tone::Bad:
      return "\033[1;31m";
    case Tone::Plain:
      break;
  }
  return "";
}

}  // namespace

// By the variables, and not by the C library's locale: that one may not be installed, and the text
// is UTF-8 all the same.
Charset charsetOfLocale() {
  std::string locale;
  for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    if (locale.empty()) locale = environment(name);
  }
  std::string name;
  for (const char letter : locale) {
    if (letter != '-') name += static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
  }
  return name.find("utf8") != std::string::npos ? Charset::Unicode : Charset::ASCII;
}

Tone toneOf(RAIDVolumeState state) {
  switch (state) {
    case VolumeOnline:
      return Tone::Good;
    case VolumeFailed:
    case VolumeOffline:
    case VolumeDegraded:
      return Tone::Bad;
    default:
      return Tone::Uneasy;
  }
}

Tone toneOf(MemberState state) {
  switch (state) {
    case MemberOnline:
      return Tone::Good;
    case MemberFailed:
    case MemberOffline:
    case MemberNotFound:
      return Tone::Bad;
    default:
      return Tone::Uneasy;
  }
}

void addScreenOptions(CLI::App& parser, ScreenOptions& options) {
  const std::map<std::string, ColourChoice> choices = {{"auto", ColourChoice::Auto},
                                                       {"always", ColourChoice::Always},
                                                       {"never", ColourChoice::Never}};
  const auto choose = [&options, choices](const std::string& text) {
    const auto choice = choices.find(text);
    if (choice == choices.end()) {
      throw CLI::ValidationError("--color", "'" + text + "' is not auto, always or never");
    }
    options.colour = choice->second;
  };
  parser.add_option_function<std::string>("--color", choose, "Colour: auto, always or never")
      ->type_name("WHEN");
  parser.add_flag("--ascii", options.ascii, "Draw with ASCII alone");
}

Screen screenOf(const StandardOutput& output, const ScreenOptions& options) {
  Screen screen;
  screen.charset = options.ascii ? Charset::ASCII : charsetOfLocale();
  screen.colour = isColourWanted(output, options.colour);
  const int columns = output.columns();
  screen.columns = std::max(columns, Screen::StandardColumns);
  if (columns > 0) screen.drawingColumns = columns;
  return screen;
}

std::string painted(const Screen& screen, Tone tone, const std::string& text) {
  if (!screen.colour || tone == Tone::Plain || text.empty()) return text;
  return codeOf(tone) + text + "\033[0m";
}

std::string lineOf(const Screen& screen, const std::vector<Cell>& cells) {
  std::string line;
  int owed = 0;  // blanks, written only when something follows
  int left = screen.columns;
  int debt = 0;  // columns by which texts have been longer than their cells
  for (const Cell& cell : cells) {
    const std::string text =
        clipped(printable(cell.text, screen.charset), std::max(0, left - owed), screen.charset);
    const int used = columnsOf(text);
    if (used > 0) {
      line.append(static_cast<std::size_t>(owed), ' ');
      line += painted(screen, cell.tone, text);
      left -= owed + used;
      owed = 0;
    }
    const int spare = std::max(0, cell.columns - used);
    const int repaid = std::min(debt, spare);
    debt += std::max(0, used - cell.columns) * (cell.columns > 0 ? 1 : 0) - repaid;
    owed += spare - repaid + 1;
  }
  return line;
}

}  // namespace Program
