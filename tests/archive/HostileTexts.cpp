#include <cstdio>
#include <random>

#include "tests/archive/HostileArchives.h"
#include "tests/archive/Packing.h"
#include "tests/archive/Support.h"

namespace {

std::string text(const std::string& properties) {
  return "+-o Root  <class IORegistryEntry, id 0x1, retain 9>\n    {\n" + properties + "    }\n";
}

std::size_t fitting(std::size_t size) { return (hostileSize - 1000) / size; }

// The text of a root with one property.
std::string value(const std::string& begin, const std::string& piece, const std::string& end) {
  return text("      \"k\" = " + begin + repeated(piece, fitting(piece.size())) + end + "\n");
}

// As many of the pieces as the limit on memory lets through, at most; the rest is one long string.
std::string allowed(std::size_t count, const std::string& begin, const std::string& piece,
                    const std::string& end) {
  const std::size_t fewer = count / (10'000'000 / hostileSize);
  const std::string some = "      \"k\" = " + begin + repeated(piece, fewer) + end + "\n";
  return text(some + "      \"l\" = \"" + std::string(fitting(1) - some.size(), 'x') + "\"\n");
}

std::string hexadecimal(std::size_t number) {
  char digits[24];
  std::snprintf(digits, sizeof digits, "0x%zx", number);
  return digits;
}

std::string entryLine(std::size_t depth, std::size_t id, const std::string& name = "a") {
  return std::string(2 * depth, ' ') + "+-o " + name + "  <class b, id " + hexadecimal(id) + ">\n";
}

std::string lastEntry(std::size_t id) { return entryLine(1, id) + "      {\n      }\n"; }

std::string entries(std::size_t count, const std::string& name) {
  std::string result = text("");
  result.reserve(hostileSize);
  for (std::size_t i = 2; i < count && result.size() < fitting(1); ++i)
    result += entryLine(1, i, name);
  result += lastEntry(count);
  if (result.size() < fitting(1)) result.append(fitting(1) - result.size(), '\n');
  return result;
}

std::string repeatedPrints() {
  std::string result = text("");
  const std::string properties =
      "        {\n          \"k\" = (" + repeated("1,", 2'000) + "1)\n        }\n";
  for (std::size_t i = 0; i < fitting(properties.size() + 70); ++i)
    result += entryLine(1, 3 + i) + entryLine(2, 2) + properties;
  result += lastEntry(2'000'000);
  return result.append(fitting(1) - result.size(), '\n');
}

// The way down to the deepest entry again and again, each time beneath another.
std::string deepAgainAndAgain() {
  std::string way;
  for (std::size_t depth = 2; depth < 900; ++depth)
    way += entryLine(depth, depth);
  std::string result = text("");
  for (std::size_t i = 0; i * way.size() < fitting(1) - way.size(); ++i)
    result += entryLine(1, 10'000 + i) + way;
  result += lastEntry(2'000'000);
  return result.append(fitting(1) - result.size(), '\n');
}

std::string unsortedKeys(std::size_t count) {
  std::string items;
  for (std::size_t i = count; i > 0; --i)
    items += "\"" + std::string(60, 'k') + std::to_string(i) + "\"=1,";
  return allowed(1, "{", items, "\"k\"=1}");
}

std::string noise(std::size_t size) {
  std::string bytes(size, '\0');
  std::mt19937 random(1);
  for (char& byte : bytes)
    byte = static_cast<char>(random());
  return bytes;
}

// Packed data of ten megabytes that stand for blanks without end.
std::string endlessBlanks() {
  const std::string blanks = packed(std::string(std::size_t{16} << 20U, ' '));
  return repeated(blanks, fitting(blanks.size()));
}

// A text that takes as much as it may, with data behind that hardly get smaller, so that the file
// is large.
std::string numbersAndNoise() {
  std::string digits;
  for (const char byte : noise(hostileSize * 9 / 10))
    digits += hexadecimal(0x100U + static_cast<unsigned char>(byte)).substr(3);
  return packed(
      text("      \"k\" = (" + repeated("1,", 2'000'000) + "1)\n      \"l\" = <" + digits + ">\n"));
}

}  // namespace

std::vector<HostileArchive> hostileTexts() {
  return {
      {"as many numbers as are let through", [] { return allowed(2'200'000, "(", "1,", "1)"); }},
      {"arrays that do not end", [] { return value("", "(", ""); }},
      {"dictionaries that do not end", [] { return value("", "{\"a\"=", ""); }},
      {"as many empty arrays as are let through",
       [] { return allowed(1'250'000, "(", "(),", "1)"); }},
      {"arrays of one number", [] { return allowed(830'000, "(", "(1),", "1)"); }},
      {"dictionaries of one number", [] { return allowed(640'000, "(", "{\"a\"=1},", "1)"); }},
      {"as many items of one key as are let through",
       [] { return allowed(1'270'000, "{", "\"a\"=1,", "\"a\"=1}"); }},
      {"strings of sixteen letters",
       [] { return allowed(480'000, "(", "\"" + std::string(16, 'x') + "\",", "1)"); }},
      {"data of a byte", [] { return allowed(1'600'000, "(", "<00>,", "1)"); }},
      {"texts as data", [] { return value("<\"a", "\",\"a", "\">"); }},
      {"quotes within a dictionary", [] { return value("{\"a\"=\"", "\",\"", "\"}"); }},
      {"quotes within an array", [] { return value("(\"", "\",x", "\")"); }},
      {"ends of a PC's lines within a string",
       [] {
         const std::string lines =
             text("      \"k\" = \"" + repeated("\n", hostileSize / 2 - 500) + "\"\n");
         std::string result;
         for (const char c : lines)
           result += c == '\n' ? "\r\n" : std::string(1, c);
         return result;
       }},
      {"unsorted keys", [] { return unsortedKeys(130'000); }},
      {"properties of one key", [] { return text(repeated("      \"k\" = 1\n", fitting(14))); }},
      {"lines of blanks", [] { return text("") + repeated(std::string(99, ' ') + "\n", 99'950); }},
      {"a name of ten megabytes",
       [] { return text("") + entryLine(1, 2, std::string(fitting(1), 'n')) + lastEntry(3); }},
      {"a name of many lines",
       [] { return text("") + entryLine(1, 2, repeated("n\n", fitting(2))) + lastEntry(3); }},
      {"entries", [] { return entries(1'000'000, "a"); }},
      {"as many entries as are let through", [] { return entries(240'000, "a"); }},
      {"repeated prints", repeatedPrints},
      {"deep again and again", deepAgainAndAgain},
      {"not UTF-8 in the last line",
       [] { return text(repeated("      \"k\" = 1\n", fitting(14)) + "\xFF\n"); }},
  };
}

std::vector<HostileArchive> hostileGzip() {
  return {
      {"endless blanks", endlessBlanks},
      {"noise", [] { return "\x1F\x8B\x08" + noise(fitting(1)); }},
      {"numbers and noise", numbersAndNoise},
      {"members of nothing",
       [] {
         const std::string nothing = packed("");
         return packed(text("")) + repeated(nothing, fitting(nothing.size()));
       }},
  };
}
