#include "platform/registry/memory/archive/TextEntryLine.h"

#include <algorithm>
#include <charconv>

#include "platform/registry/memory/archive/UnreadableText.h"

namespace MemoryRegistry {
namespace {

constexpr std::string_view classMark = "  <class ";

bool startsWith(std::string_view text, std::string_view prefix) {
  return text.substr(0, prefix.size()) == prefix;
}

// What stands before the separator; that and the separator are taken off `text`.
std::string_view takeUpTo(std::string_view& text, std::string_view separator) {
  const std::size_t end = text.find(separator);
  const std::string_view part = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + separator.size());
  return part;
}

bool isLocationDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f') || c == ',' ||
         c == ':';
}

// What drivers number their devices with: hexadecimal digits, and now and then a sign.
bool isLocation(std::string_view text) {
  if (!text.empty() && (text.front() == '-' || text.front() == '+')) text.remove_prefix(1);
  return !text.empty() && std::all_of(text.begin(), text.end(), isLocationDigit);
}

// Names are not escaped, so an "@" may be their own: what follows the last one is a location when
// it looks like one.
void splitName(std::string_view text, TextEntryLine& entry) {
  const std::size_t at = text.rfind('@');
  const bool hasLocation = at != std::string_view::npos && isLocation(text.substr(at + 1));
  entry.name = hasLocation ? text.substr(0, at) : text;
  if (hasLocation) entry.location = text.substr(at + 1);
}

std::vector<std::string_view> readClasses(std::string_view text) {
  std::vector<std::string_view> classes;
  const bool endsInColon = !text.empty() && text.back() == ':';
  do {
    classes.push_back(takeUpTo(text, ":"));
    if (classes.back().empty() || endsInColon) throw UnreadableText("an entry without a class");
  } while (!text.empty());
  return classes;
}

EntryID readID(std::string_view digits) {
  EntryID id = 0;
  const char* const end = digits.data() + digits.size();
  const auto [stop, error] = std::from_chars(digits.data(), end, id, 16);
  if (error != std::errc() || stop != end || id == 0) {
    throw UnreadableText("an entry with an id that cannot be read");
  }
  return id;
}

// A service that is registered has been published, one that is matched has been matched once.
std::optional<std::uint32_t> stateOf(std::string_view field) {
  if (field == "registered") return Registered | FirstPublish;
  if (field == "matched") return Matched | FirstMatch;
  if (field == "inactive") return Inactive;
  if (field == "!registered" || field == "!matched" || field == "active") return 0;
  return std::nullopt;
}

}  // namespace

bool endsEntryLine(std::string_view line) {
  return !line.empty() && line.back() == '>' && line.rfind(classMark) != std::string_view::npos;
}

TextEntryLine readEntryLine(std::string_view text) {
  TextEntryLine entry;
  const std::size_t mark = text.rfind(classMark);
  splitName(text.substr(0, mark), entry);
  std::string_view fields = text.substr(mark + classMark.size());
  fields.remove_suffix(1);
  entry.inheritance = readClasses(takeUpTo(fields, ", "));
  while (!fields.empty()) {
    const std::string_view field = takeUpTo(fields, ", ");
    if (startsWith(field, "id 0x")) entry.id = readID(field.substr(5));
    if (const auto state = stateOf(field)) entry.state = entry.state.value_or(0) | *state;
  }
  if (entry.id == 0) throw UnreadableText("an entry without an id");
  return entry;
}

}  // namespace MemoryRegistry
