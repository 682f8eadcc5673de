#include "tests/archive/TextWriter.h"

#include <algorithm>
#include <cstdio>
#include <stdexcept>
#include <vector>

using MemoryRegistry::Array;
using MemoryRegistry::Data;
using MemoryRegistry::Dictionary;
using MemoryRegistry::EntryDescription;
using MemoryRegistry::Number;
using MemoryRegistry::Opaque;
using MemoryRegistry::PropertyValue;
using MemoryRegistry::RegistryContent;

namespace {

bool isPrintable(std::uint8_t byte) { return byte >= 0x20 && byte < 0x7F && byte != '"'; }

// Texts that are not empty, each with a NUL behind it.
bool isPrintable(const Data& data) {
  if (data.empty() || data.front() == 0 || data.back() != 0) return false;
  for (std::size_t i = 0; i < data.size(); ++i) {
    if (data[i] == 0 ? data[i - 1] == 0 : !isPrintable(data[i])) return false;
  }
  return true;
}

std::string printed(const Data& data) {
  std::string text;
  for (std::size_t i = 0; i + 1 < data.size(); ++i) {
    if (data[i] == 0) {
      text += "\",\"";
    } else {
      text += static_cast<char>(data[i]);
    }
  }
  return "<\"" + text + "\">";
}

std::string hexadecimal(const Data& data) {
  std::string text = "<";
  for (const std::uint8_t byte : data) {
    char digits[3];
    std::snprintf(digits, sizeof digits, "%02x", byte);
    text += digits;
  }
  return text + ">";
}

struct Value {
  std::string operator()(bool value) const { return value ? "Yes" : "No"; }
  std::string operator()(const Number& value) const { return std::to_string(value.bits); }
  std::string operator()(double) const { throw std::invalid_argument("ioreg prints no fractions"); }
  std::string operator()(const std::string& value) const { return '"' + value + '"'; }
  std::string operator()(const Data& value) const {
    return isPrintable(value) ? printed(value) : hexadecimal(value);
  }
  std::string operator()(const Array& value) const {
    std::string text;
    for (const PropertyValue& part : value)
      text += (text.empty() ? "" : ",") + std::visit(Value(), part.variant());
    return '(' + text + ')';
  }
  std::string operator()(const Dictionary& value) const {
    std::string text;
    for (const auto& [key, part] : value) {
      text += (text.empty() ? "\"" : ",\"") + key + "\"=" + std::visit(Value(), part.variant());
    }
    return '{' + text + '}';
  }
  std::string operator()(Opaque) const { return {}; }
};

std::string joined(const std::vector<std::string>& classes) {
  std::string text;
  for (const std::string& name : classes)
    text += (text.empty() ? "" : ":") + name;
  return text;
}

std::string withLineEnds(const std::string& text, const std::string& lineEnd) {
  if (lineEnd == "\n") return text;
  std::string result;
  for (const char c : text)
    result += c == '\n' ? lineEnd : std::string(1, c);
  return result;
}

class Writer {
 public:
  Writer(const RegistryContent& content, const TextStyle& style)
      : _content(content), _style(style) {}

  void write(std::size_t place, bool isLast) {
    const auto& [id, description, children, parents] = _content.entries[place];
    line(indentation(false) + "+-o " + head(id, description));
    _hasSiblings.push_back(!isLast);
    writeProperties(description.properties, !children.empty());
    for (const std::size_t child : children)
      write(child, child == children.back());
    _hasSiblings.pop_back();
  }

  const std::string& text() const { return _text; }

 private:
  void line(const std::string& text) { _text += text + "\n"; }

  // The system's bars come from a mask of 32 bits.
  std::string indentation(bool hasChildren) const {
    std::string text;
    for (std::size_t level = 0; level < _hasSiblings.size(); ++level)
      text += _hasSiblings[level < 31 ? level : level % 32] ? "| " : "  ";
    return text + (hasChildren ? "| " : "");
  }

  std::string head(MemoryRegistry::EntryID id, const EntryDescription& description) const {
    char number[24];
    std::snprintf(number, sizeof number, "0x%llx", static_cast<unsigned long long>(id));
    const std::string classes = _style.inheritance && !description.inheritance.empty()
                                    ? joined(description.inheritance)
                                    : description.className;
    const std::string& location = description.location;
    return description.name.value_or(description.className) +
           (location.empty() ? "" : "@" + location) + "  <class " + classes + ", id " + number +
           (description.state ? service(*description.state) : "") + ", retain 7>";
  }

  static std::string service(std::uint32_t state) {
    using namespace MemoryRegistry;
    return std::string((state & Registered) != 0 ? ", registered" : ", !registered") +
           ((state & Matched) != 0 ? ", matched" : ", !matched") +
           ((state & Inactive) != 0 ? ", inactive" : ", active") + ", busy 0 (12 ms)";
  }

  void writeProperties(const Dictionary& properties, bool hasChildren) {
    const std::string before = indentation(hasChildren) + (hasChildren ? "" : "  ");
    line(before + "{");
    for (const auto& [key, value] : properties)
      line(before + "  \"" + key + "\" = " + std::visit(Value(), value.variant()));
    line(before + "}");
    line(before);
  }

  const RegistryContent& _content;
  const TextStyle& _style;
  std::string _text;
  std::vector<bool> _hasSiblings;
};

}  // namespace

std::string writeText(const RegistryContent& content, const TextStyle& style) {
  Writer writer(content, style);
  writer.write(0, true);
  return withLineEnds(writer.text(), style.lineEnd);
}
