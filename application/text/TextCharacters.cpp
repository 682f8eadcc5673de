#include "application/text/TextCharacters.h"

#include <algorithm>
#include <iterator>

namespace Program {
namespace {

constexpr char32_t Replacement = 0xFFFD;

struct Range {
  char32_t first;
  char32_t last;
};

// Controls of the terminal, of the direction of writing, of the line; and what nobody can see.
constexpr Range harmful[] = {
    {0x0000, 0x001F}, {0x007F, 0x009F}, {0x00AD, 0x00AD},   {0x061C, 0x061C},   {0x180E, 0x180E},
    {0x200B, 0x200F}, {0x2028, 0x202E}, {0x2060, 0x206F},   {0x3164, 0x3164},   {0xE000, 0xF8FF},
    {0xFEFF, 0xFEFF}, {0xFFF0, 0xFFFC}, {0xE0000, 0xE0FFF}, {0xF0000, 0x10FFFF}};

// Marks that are written over the character before them.
constexpr Range combining[] = {
    {0x0300, 0x036F}, {0x0483, 0x0489}, {0x0591, 0x05BD}, {0x0610, 0x061A}, {0x064B, 0x065F},
    {0x06D6, 0x06DC}, {0x0900, 0x0902}, {0x093C, 0x093C}, {0x0941, 0x0948}, {0x0E31, 0x0E31},
    {0x0E34, 0x0E3A}, {0x0E47, 0x0E4E}, {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF}, {0x20D0, 0x20FF},
    {0x3099, 0x309A}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}};

// East Asian wide and full-width characters, and pictures.
constexpr Range wide[] = {{0x1100, 0x115F},   {0x231A, 0x231B},   {0x2E80, 0x303E},
                          {0x3041, 0x33FF},   {0x3400, 0x4DBF},   {0x4E00, 0x9FFF},
                          {0xA000, 0xA4CF},   {0xA960, 0xA97F},   {0xAC00, 0xD7A3},
                          {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},
                          {0xFFE0, 0xFFE6},   {0x1F300, 0x1F64F}, {0x1F680, 0x1F6FF},
                          {0x1F900, 0x1F9FF}, {0x1FA70, 0x1FAFF}, {0x20000, 0x3FFFD}};

template <std::size_t Count>
bool isIn(const Range (&ranges)[Count], char32_t character) {
  const auto range = std::lower_bound(
      std::begin(ranges), std::end(ranges), character,
      [](const Range& candidate, char32_t value) { return candidate.last < value; });
  return range != std::end(ranges) && range->first <= character;
}

int columnsOf(char32_t character) {
  static_assert(combining[0].first < wide[0].first);
  if (character < combining[0].first) return 1;
  if (isIn(combining, character)) return 0;
  return isIn(wide, character) ? 2 : 1;
}

// How many bytes a character has that begins so; 0 when none does.
std::size_t lengthFrom(unsigned char lead) {
  if (lead < 0x80) return 1;
  if (lead >= 0xC2 && lead < 0xE0) return 2;
  if (lead >= 0xE0 && lead < 0xF0) return 3;
  return lead >= 0xF0 && lead < 0xF5 ? 4 : 0;
}

bool isPlausible(char32_t character, std::size_t length) {
  constexpr char32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
  const bool surrogate = character >= 0xD800 && character < 0xE000;
  return character >= smallest[length] && character <= 0x10FFFF && !surrogate;
}

// Takes the first character off a text that is not empty.
char32_t takeCharacter(std::string_view& utf8) {
  const auto byte = [&utf8](std::size_t place) { return static_cast<unsigned char>(utf8[place]); };
  const std::size_t length = lengthFrom(byte(0));
  char32_t character = length < 2 ? byte(0) : byte(0) & (0x7FU >> length);
  std::size_t taken = 1;
  while (taken < std::min(length, utf8.size()) && (byte(taken) & 0xC0U) == 0x80) {
    character = character << 6U | (byte(taken++) & 0x3FU);
  }
  utf8.remove_prefix(taken);
  return taken == length && isPlausible(character, length) ? character : Replacement;
}

}  // namespace

std::string printable(std::string_view utf8, Charset charset) {
  std::string shown;
  int marks = 0;  // a heap of marks on one character would reach into other lines
  while (!utf8.empty()) {
    const std::string_view before = utf8;
    const char32_t character = takeCharacter(utf8);
    marks = columnsOf(character) == 0 ? marks + 1 : 0;
    const bool bad = character == Replacement || isIn(harmful, character) || marks > 2;
    if (!bad && (character < 0x80 || charset == Charset::Unicode)) {
      shown += before.substr(0, before.size() - utf8.size());
    } else {
      shown += charset == Charset::Unicode ? "\uFFFD" : "?";
    }
  }
  return shown;
}

int columnsOf(std::string_view utf8) {
  int columns = 0;
  while (!utf8.empty())
    columns += columnsOf(takeCharacter(utf8));
  return columns;
}

std::string clipped(const std::string& utf8, int columns, Charset charset) {
  if (columnsOf(utf8) <= columns) return utf8;
  std::string_view rest = utf8;
  int used = 1;  // by the mark
  while (!rest.empty()) {
    std::string_view next = rest;
    used += columnsOf(takeCharacter(next));
    if (used > columns) break;
    rest = next;
  }
  std::string kept = utf8.substr(0, utf8.size() - rest.size());
  if (columns < 1) return kept;
  return kept + (charset == Charset::Unicode ? "…" : "~");
}

std::string padded(const std::string& utf8, int columns, Charset charset) {
  std::string text = clipped(utf8, columns, charset);
  text.append(static_cast<std::size_t>(std::max(0, columns - columnsOf(text))), ' ');
  return text;
}

}  // namespace Program
