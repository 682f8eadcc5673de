#include <algorithm>

#include "platform/registry/memory/archive/ArchiveLimits.h"
#include "tests/archive/HostileArchives.h"
#include "tests/archive/Support.h"

namespace {

using MemoryRegistry::memoryLimit;

std::string filledUp(std::string text) {
  if (text.size() < hostileSize) text.append(hostileSize - text.size(), ' ');
  return text;
}

std::size_t fitting(std::size_t elementSize) { return (hostileSize - 1000) / elementSize; }

// As many as fit the size, but no more than the limit on memory lets through: the most that an
// archive can ask for.
std::string filledTo(std::size_t limit, const std::string& element, std::uint64_t cost) {
  const std::size_t allowed = (memoryLimit(hostileSize) - hostileSize - 10'000) / cost;
  const std::size_t count = std::min({limit, fitting(element.size()), allowed});
  return filledUp(archive("<key>k</key><array>" + repeated(element, count) + "</array>"));
}

std::string filled(const std::string& element, std::uint64_t cost) {
  return filledTo(hostileSize, element, cost);
}

std::string numbered(std::size_t count, const std::function<std::string(std::string)>& element) {
  std::string result;
  result.reserve(hostileSize);
  for (std::size_t i = 2; i < count + 2 && result.size() < hostileSize; ++i)
    result += element(std::to_string(i));
  return result;
}

std::string longText(const std::string& begin, const std::string& piece, const std::string& end) {
  return archive("<key>k</key>" + begin + repeated(piece, fitting(piece.size())) + end);
}

std::string nestedAgainAndAgain() {
  constexpr std::size_t levels = 900;
  return filled(repeated("<array>", levels) + repeated("</array>", levels),
                levels * MemoryRegistry::containerCost);
}

// Every parent has every child.
std::string grid() {
  constexpr std::size_t side = 300;
  const std::string row = numbered(side, [](const std::string& id) { return entry(id); });
  std::string parents;
  for (std::size_t i = 0; i * row.size() < hostileSize - row.size(); ++i)
    parents += entry(std::to_string(1000 + i), children(row));
  return filledUp(archive(children(parents)));
}

// Two entries on each level, each a child of both above: 2^n ways to the last level.
std::string diamonds() {
  std::string inner;
  for (std::size_t level = 400; level > 0; --level) {
    const auto id = [level](std::size_t side) { return std::to_string(2 * level + side); };
    const std::string below = inner.empty() ? "" : children(inner);
    const std::string again =
        inner.empty()
            ? ""
            : children(entry(std::to_string(2 * level + 2)) + entry(std::to_string(2 * level + 3)));
    inner = entry(id(0), below) + entry(id(1), again);
  }
  return filledUp(archive(children(inner)));
}

std::string dictionary(std::size_t keys, std::size_t keyLength) {
  return filledUp(archive("<key>k</key><dict>" +
                          numbered(keys,
                                   [&](const std::string& number) {
                                     return "<key>" + std::string(keyLength, 'k') + number +
                                            "</key><true/>";
                                   }) +
                          "</dict>"));
}

std::string dictionaries(std::size_t most, std::size_t keys) {
  const std::string one =
      "<dict>" +
      numbered(keys, [](const std::string& number) { return "<key>" + number + "</key><true/>"; }) +
      "</dict>";
  const std::size_t cost = keys * (MemoryRegistry::keyCost + MemoryRegistry::textCost + 10);
  return filledTo(most, one, cost);
}

std::string entries(const std::string& more) {
  return filledUp(
      archive(children(numbered(fitting(entry("1234567", more).size()),
                                [&](const std::string& id) { return entry(id, more); }))));
}

}  // namespace

std::vector<HostileArchive> hostileXML() {
  using MemoryRegistry::containerCost;
  using MemoryRegistry::textCost;
  return {
      {"blanks", [] { return filledUp(archive()); }},
      {"tabs", [] { return archive(std::string(fitting(1), '\t')); }},
      {"comments", [] { return archive(repeated("<!---->", fitting(7))); }},
      {"one comment", [] { return archive("<!--" + std::string(fitting(1), '-') + ">-->"); }},
      {"instructions", [] { return archive(repeated("<?a?>", fitting(5))); }},
      {"a comment that does not end", [] { return "<!--" + repeated("<!", fitting(2)); }},
      {"arrays that do not end", [] { return "<plist>" + repeated("<array>", fitting(7)); }},
      {"nested again and again", nestedAgainAndAgain},
      {"true", [] { return filled("<true/>", textCost); }},
      {"empty strings", [] { return filled("<string/>", textCost); }},
      {"tiny strings", [] { return filled("<string>x</string>", textCost + 2); }},
      {"tiny data", [] { return filled("<data>AA==</data>", textCost + 8); }},
      {"empty data", [] { return filled("<data/>", textCost); }},
      {"integers", [] { return filled("<integer>1</integer>", textCost + 2); }},
      {"long integers",
       [] {
         return filled("<integer>" + std::string(60, ' ') + "-0x7f</integer>", textCost + 132);
       }},
      {"reals", [] { return filled("<real>1e-300</real>", textCost + 12); }},
      {"dates", [] { return filled("<date>2020-01-01T00:00:00Z</date>", textCost + 40); }},
      {"empty arrays", [] { return filled("<array/>", containerCost); }},
      {"empty dictionaries", [] { return filled("<dict/>", containerCost); }},
      {"strings of a hundred letters",
       [] { return filled("<string>" + std::string(100, 'x') + "</string>", textCost + 200); }},
      {"comments within strings",
       [] { return filled("<string><!----><!----></string>", textCost + 28); }},
      {"sections within one string",
       [] { return longText("<string>", "<![CDATA[x]]>", "</string>"); }},
      {"comments within one string", [] { return longText("<string>", "x<!---->", "</string>"); }},
      {"references", [] { return filled("<string>&amp;&#x1F600;</string>", textCost + 28); }},
      {"as many references as one string may have",
       [] {
         return archive("<key>k</key><array>" +
                        repeated("<string>" + repeated("&lt;", 20'000) + "</string>", 2) +
                        "</array><key>l</key><string>" + std::string(fitting(1) - 160'100, 'x') +
                        "</string>");
       }},
      {"few references in a very long string",
       [] { return longText("<string>" + repeated("&lt;", 390), "x", "</string>"); }},
      {"one string", [] { return longText("<string>", "x", "</string>"); }},
      {"one data", [] { return longText("<data>", "AAAA", "</data>"); }},
      {"data of blanks", [] { return longText("<data>", " \n", "AAAA</data>"); }},
      {"one key", [] { return archive("<key>" + std::string(fitting(1), 'k') + "</key><true/>"); }},
      {"as many keys as a dictionary may have", [] { return dictionary(13'000, 1); }},
      {"long keys in a dictionary", [] { return dictionary(600, 10'000); }},
      {"dictionaries of keys that are not looked up",
       [] { return dictionaries(hostileSize, 499); }},
      {"dictionaries of keys that are looked up", [] { return dictionaries(550, 600); }},
      {"entries", [] { return entries(""); }},
      {"entries with names",
       [] {
         return entries("<key>IORegistryEntryName</key><string>" + std::string(40, 'n') +
                        "</string><key>IORegistryEntryLocation</key><string>" +
                        std::string(40, 'l') + "</string>");
       }},
      {"entries with ancestries",
       [] {
         return entries("<key>IOObjectInheritance</key><array>" +
                        repeated("<string>C</string>", 20) + "</array>");
       }},
      {"entries with properties",
       [] {
         return entries(
             numbered(20, [](const std::string& key) { return "<key>" + key + "</key><true/>"; }));
       }},
      {"a grid of parents and children", grid},
      {"diamonds", diamonds},
  };
}
