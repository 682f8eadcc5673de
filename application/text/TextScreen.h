#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "application/text/TextCharacters.h"
#include "model/MemberState.h"
#include "model/RAIDVolumeState.h"

namespace CLI {
class App;
}

namespace Program {

class StandardOutput;

// How a text is meant: shown by colour where that is allowed, never by colour alone.
enum class Tone { Plain, Strong, Quiet, Good, Uneasy, Bad };

Tone toneOf(RAIDMonitoring::RAIDVolumeState state);
Tone toneOf(RAIDMonitoring::MemberState state);

// What people's output can be made of.
struct Screen {
  static constexpr int StandardColumns = 80;

  Charset charset = Charset::ASCII;
  bool colour = false;
  int columns = StandardColumns;         // for lines
  int drawingColumns = StandardColumns;  // for what a narrow terminal must not break in two
};

enum class ColourChoice { Auto, Always, Never };

// What the command line says about it.
struct ScreenOptions {
  ColourChoice colour = ColourChoice::Auto;
  bool ascii = false;
};

// --color and --ascii.
void addScreenOptions(CLI::App& parser, ScreenOptions& options);

// Unicode where the locale's is UTF-8.
Charset charsetOfLocale();

// Unless the options say otherwise: colour on a terminal, if NO_COLOR allows it; Unicode where the
// locale is a UTF-8 one.
Screen screenOf(const StandardOutput& output, const ScreenOptions& options = {});

// The text in the colour of its tone.
std::string painted(const Screen& screen, Tone tone, const std::string& text);

// One cell of a line. `columns` 0: as many as the text takes.
struct Cell {
  std::string text;  // not trusted
  int columns = 0;
  Tone tone = Tone::Plain;
};

// The cells one blank apart. A text that is longer than its cell pushes the others to the right;
// the line is clipped to the screen, and ends without blanks.
std::string lineOf(const Screen& screen, const std::vector<Cell>& cells);

}  // namespace Program
