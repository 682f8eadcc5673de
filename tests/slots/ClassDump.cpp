#include "tests/slots/ClassDump.h"

#include <algorithm>
#include <sstream>

namespace SlotsTest {

namespace {

bool startsWith(const std::string& text, const std::string& start) {
  return text.compare(0, start.size(), start) == 0;
}

bool contains(const std::string& text, const std::string& part) {
  return text.find(part) != std::string::npos;
}

bool isOfTheLanguage(const std::string& name) {
  return startsWith(name, "std::") || startsWith(name, "__");
}

// "8     (int (*)(...))Pelago::Object::event": an offset, a cast, and the operation; a destructor
// of an abstract class is a bare 0.
std::string slotInGccLine(const std::string& line) {
  const std::string cast = "(int (*)(...))";
  const std::size_t castAt = line.find(cast);
  if (castAt == std::string::npos) return destructor;
  const std::string operation = line.substr(castAt + cast.size());
  if (contains(operation, "~")) return destructor;
  return operation == "__cxa_pure_virtual" ? "pure" : operation;
}

// "   4 | bool Pelago::Clock::waitUntil(Pelago::Milliseconds) [pure]"
std::string slotInClangLine(const std::string& line) {
  if (contains(line, "~")) return destructor;
  const std::string declaration = line.substr(0, line.find('('));
  const std::size_t name = declaration.find_last_of(" *&") + 1;
  return (contains(line, "[pure]") ? "pure " : "") + declaration.substr(name);
}

// After its heading a table has, in both dumps, one line per entry: the offset to the top, the type
// information, and then the operations; an empty line ends it.
Slots slotsBelowHeading(std::istream& lines, bool clang) {
  Slots slots;
  int entries = 0;
  for (std::string line; std::getline(lines, line) && !line.empty();) {
    const bool isEntry = clang ? contains(line, " | ")
                               : line.find(' ') != std::string::npos && !contains(line, " entries");
    if (isEntry && ++entries > 2)
      slots.push_back(clang ? slotInClangLine(line) : slotInGccLine(line));
  }
  return slots;
}

}  // namespace

VirtualTables virtualTablesIn(const std::string& dump) {
  const std::string heading = "Vtable for ";
  VirtualTables tables;
  std::istringstream lines(dump);
  for (std::string line; std::getline(lines, line);) {
    if (!startsWith(line, heading)) continue;
    const bool clang = line[heading.size()] == '\'';
    const std::size_t begin = heading.size() + (clang ? 1 : 0);
    const std::string name =
        line.substr(begin, clang ? line.rfind('\'') - begin : std::string::npos);
    const Slots slots = slotsBelowHeading(lines, clang);
    if (!isOfTheLanguage(name)) tables[name] = slots;
  }
  return tables;
}

bool fits(const Slots& dumped, const Slots& stated) {
  return std::equal(dumped.begin(), dumped.end(), stated.begin(), stated.end(),
                    [](const std::string& slot, const std::string& expected) {
                      return slot == expected || (slot == "pure" && startsWith(expected, "pure "));
                    });
}

}  // namespace SlotsTest
