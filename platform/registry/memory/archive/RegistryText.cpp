#include "platform/registry/memory/archive/RegistryText.h"

#include <algorithm>
#include <string>
#include <utility>

#include "platform/registry/memory/archive/ContentBuilder.h"
#include "platform/registry/memory/archive/EntryPrint.h"
#include "platform/registry/memory/archive/MemoryBudget.h"
#include "platform/registry/memory/archive/Refusal.h"
#include "platform/registry/memory/archive/Text.h"
#include "platform/registry/memory/archive/TextEntryLine.h"
#include "platform/registry/memory/archive/TextLines.h"
#include "platform/registry/memory/archive/TextValue.h"
#include "platform/registry/memory/archive/UnreadableText.h"
#include "platform/registry/memory/archive/ValueRules.h"

namespace MemoryRegistry {
namespace {

constexpr std::size_t npos = std::string_view::npos;
constexpr std::string_view entryMark = "+-o ";
constexpr std::string_view classMark = "  <class ";
constexpr std::string_view assignment = "\" = ";

// An entry, its links, its node in the table of IDs, and what the registry makes of it. A vector
// that grows has its elements twice for a moment.
constexpr std::uint64_t entryCost = 2 * sizeof(RegistryContent::Entry) + 320;
constexpr std::uint64_t propertyCost = 2 * sizeof(Dictionary::value_type);

bool startsWith(std::string_view text, std::string_view prefix) {
  return text.substr(0, prefix.size()) == prefix;
}

std::string_view withoutByteOrderMark(std::string_view bytes) {
  if (startsWith(bytes, "\xEF\xBB\xBF")) bytes.remove_prefix(3);
  return bytes;
}

// How far in a text its first entry is looked for.
constexpr std::size_t longestPreface = 65536;

// The column of the first character that is neither a bar nor a space; npos when there is none.
std::size_t columnOf(std::string_view line) {
  const auto isIndentation = [](char c) { return c == ' ' || c == '|'; };
  const auto found = std::find_if_not(line.begin(), line.end(), isIndentation);
  return found == line.end() ? npos : static_cast<std::size_t>(found - line.begin());
}

// Where the line of the first entry begins; npos when there is none. What may stand before it: the
// command that was typed, a date, a heading.
std::size_t firstEntryIn(std::string_view text) {
  const std::string_view beginning = text.substr(0, longestPreface);
  for (std::size_t at = 0; at < beginning.size();) {
    const std::size_t end = std::min(text.find('\n', at), text.size());
    const std::string_view line = text.substr(at, end - at);
    const std::size_t column = columnOf(line);
    if (column != npos && startsWith(line.substr(column), entryMark) &&
        (column == 0 || line.find(classMark) != npos)) {
      return at;
    }
    at = end + 1;
  }
  return npos;
}

class Reader {
 public:
  Reader(std::string_view text, std::uint64_t memoryLimit)
      : _text(text),
        _lines(text),
        _budget(memoryLimit - std::min<std::uint64_t>(text.size(), memoryLimit)) {}

  RegistryContent run() {
    try {
      checkCharacters();
      skipPreface();
      readEntries();
      checkEnd();
    } catch (const UnreadableText& error) {
      throw Refusal("line " + decimal(_lines.number(_at)) + ": " + error.what());
    }
    while (_builder.depth() != 0)
      _builder.leave();
    return _builder.finish();
  }

 private:
  // ---- Characters ----

  void checkCharacters() {
    _at = _text.find('\0');
    if (_at != npos) throw UnreadableText("a NUL character");
    _at = 0;
    if (isUTF8(_text.data(), _text.size())) return;
    for (TextLines lines(_text); !lines.atEnd(); lines.advance()) {
      _at = lines.begin();
      if (!isUTF8(lines.line().data(), lines.line().size())) break;
    }
    throw UnreadableText("a character that is not UTF-8");
  }

  // ---- Entries ----

  // A heading has nothing of an entry: what looks like it belongs to one whose line is missing.
  void skipPreface() {
    const std::size_t begin = firstEntryIn(_text);
    if (begin == npos) throw Refusal("is not a text of ioreg");
    for (; _lines.begin() < begin; _lines.advance()) {
      _at = _lines.begin();
      const std::size_t column = columnOf(_lines.line());
      const bool isIndented = column != 0 && column != npos;
      if (isIndented && std::string_view("\"{}").find(_lines.line()[column]) != npos) {
        throw UnreadableText("the beginning is missing: no root comes before this");
      }
    }
  }

  void readEntries() {
    for (skipEmptyLines(); !_lines.atEnd(); skipEmptyLines()) {
      _at = _lines.begin();
      const std::size_t column = columnOf(_lines.line());
      if (!startsWith(_lines.line().substr(column), entryMark)) {
        throw UnreadableText("neither an entry nor a property");
      }
      enter(readEntryLine(takeEntryLine(column)), column);
      readProperties(column);
    }
  }

  // With -l every entry has its properties, be there none; without, none has any.
  void checkEnd() {
    if (!_hasProperties) throw Refusal("has no properties: the text was made without ioreg -l");
    if (_endsWithProperties) return;
    _at = _text.size();
    throw UnreadableText("the text ends in the middle of an entry");
  }

  void skipEmptyLines() {
    while (!_lines.atEnd() && columnOf(_lines.line()) == npos)
      _lines.advance();
  }

  // The text behind "+-o ", up to the ">": more than a line when the name is.
  std::string_view takeEntryLine(std::size_t column) {
    const std::size_t begin = _lines.begin() + column + entryMark.size();
    while (!endsEntryLine(_lines.line())) {
      _lines.advance();
      const std::size_t next = _lines.atEnd() ? npos : columnOf(_lines.line());
      if (next == npos || startsWith(_lines.line().substr(next), entryMark)) {
        throw UnreadableText("the line of an entry is cut off");
      }
    }
    const std::size_t end = _lines.end();
    _lines.advance();
    return _text.substr(begin, end - begin);
  }

  void enter(const TextEntryLine& entry, std::size_t column) {
    const std::size_t depth = column / 2;
    if (_builder.depth() == 0 && depth != 0) {
      throw UnreadableText("the beginning is missing: no root comes before this");
    }
    if (column % 2 != 0 || depth > _builder.depth()) {
      throw UnreadableText("an entry that is indented too far");
    }
    if (depth == 0 && _builder.depth() != 0) {
      throw UnreadableText("a second root: the text of one plane, made without ioreg -r, has one");
    }
    if (depth == 0 && entry.state) {
      throw UnreadableText("an entry that is no root: a text made with ioreg -r has none");
    }
    while (_builder.depth() > depth)
      _builder.leave();
    _isFirstPrint = _builder.enter(entry.id);
    if (_isFirstPrint) describe(entry);
  }

  void describe(const TextEntryLine& entry) {
    _budget.take(entryCost + sizeof(std::string) * entry.inheritance.size());
    EntryDescription& description = _builder.description();
    for (const std::string_view text : {entry.inheritance.back(), entry.name, entry.location})
      takeText(_budget, text.size());
    description.className = entry.inheritance.back();
    description.name = holdsCarriageReturns(entry.name) ? withoutCarriageReturns(entry.name)
                                                        : std::string(entry.name);
    description.location = entry.location;
    description.state = entry.state;
    // A class alone has an inheritance that is to be looked up.
    if (entry.inheritance.size() == 1) return;
    description.inheritance.reserve(entry.inheritance.size());
    for (const std::string_view className : entry.inheritance) {
      takeText(_budget, className.size());
      description.inheritance.emplace_back(className);
    }
  }

  // ---- Properties ----

  bool isBrace(char brace, std::size_t column) const {
    const std::string_view line = _lines.line();
    return line.size() == column + 1 && line.back() == brace && columnOf(line) == column;
  }

  // Those of the entry in that column, if any are printed.
  void readProperties(std::size_t column) {
    _endsWithProperties = !_lines.atEnd() && isBrace('{', column + 4);
    if (!_endsWithProperties) return;
    _hasProperties = true;
    _lines.advance();
    Dictionary properties;
    while (!_lines.atEnd() && !isBrace('}', column + 4))
      readProperty(column + 6, properties);
    _endsWithProperties = !_lines.atEnd();
    _lines.advance();
    if (!_isFirstPrint) return;
    keepLastOfEachKey(properties);
    _builder.description().properties = std::move(properties);
  }

  void readProperty(std::size_t column, Dictionary& properties) {
    _at = _lines.begin();
    const std::string_view line = _lines.line();
    const std::size_t keyEnd = line.find(assignment, column + 1);
    if (columnOf(line) != column || line[column] != '"' || keyEnd == npos) {
      throw UnreadableText("neither a property nor the end of an entry's properties");
    }
    const std::string_view key = line.substr(column + 1, keyEnd - column - 1);
    const std::string_view value = takeValue(column, _at + keyEnd + assignment.size());
    if (!_isFirstPrint || isSyntheticKey(key)) return;
    _budget.take(propertyCost);
    takeText(_budget, key.size());
    properties.emplace_back(key, readValue(value));
  }

  // From `begin` up to where the next property begins or all of the entry's end.
  std::string_view takeValue(std::size_t column, std::size_t begin) {
    std::size_t end = 0;
    do {
      end = _lines.end();
      _lines.advance();
    } while (!_lines.atEnd() && !isBrace('}', column - 2) && !isProperty(column));
    return _text.substr(begin, end - begin);
  }

  // What looks like a property and has no value is none, nor does it belong to the value before it:
  // readProperty refuses it.
  bool isProperty(std::size_t column) const {
    const std::string_view line = _lines.line();
    return columnOf(line) == column && line[column] == '"';
  }

  PropertyValue readValue(std::string_view text) {
    return holdsCarriageReturns(text) ? readTextValue(withoutCarriageReturns(text), _budget)
                                      : readTextValue(text, _budget);
  }

  // ---- Ends of lines within names and values ----

  bool holdsCarriageReturns(std::string_view text) const {
    return _lines.hasCarriageReturns() && text.find('\n') != npos;
  }

  static std::string withoutCarriageReturns(std::string_view text) {
    std::string plain;
    plain.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
      if (text[i] != '\r' || text.substr(i + 1, 1) != "\n") plain += text[i];
    }
    return plain;
  }

  std::string_view _text;
  TextLines _lines;
  std::size_t _at = 0;  // the place in the text that an error is about
  MemoryBudget _budget;
  ContentBuilder _builder;
  bool _isFirstPrint = false;        // of the entry that is being read
  bool _hasProperties = false;       // any entry
  bool _endsWithProperties = false;  // the last entry so far, and they are complete
};

}  // namespace

bool isRegistryText(std::string_view bytes) {
  return firstEntryIn(withoutByteOrderMark(bytes)) != npos;
}

RegistryContent readRegistryText(std::string_view bytes, std::uint64_t memoryLimit) {
  return Reader(withoutByteOrderMark(bytes), memoryLimit).run();
}

}  // namespace MemoryRegistry
