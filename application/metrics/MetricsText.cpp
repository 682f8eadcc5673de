#include "application/metrics/MetricsText.h"

#include <fmt/format.h>

#include <iterator>

#include "application/text/TextCharacters.h"

namespace Program {
namespace {

std::string escaped(const std::string& value) {
  std::string text;
  for (const char c : value) {
    if (c == '\\' || c == '"') text += '\\';
    text += c == '\n' ? "\\n" : std::string(1, c);
  }
  return text;
}

std::string written(const MetricsText::Labels& labels) {
  if (labels.empty()) return {};
  std::string text;
  for (const auto& [name, value] : labels)
    text += fmt::format("{}{}=\"{}\"", text.empty() ? "" : ",", name, escaped(value));
  return "{" + text + "}";
}

}  // namespace

void MetricsText::family(const char* name, Type type, const char* help) {
  _family = name;
  fmt::format_to(std::back_inserter(_text), "# HELP {0} {1}\n# TYPE {0} {2}\n", name, help,
                 type == Type::Counter ? "counter" : "gauge");
}

void MetricsText::sample(const Labels& labels, std::uint64_t value) {
  fmt::format_to(std::back_inserter(_text), "{}{} {}\n", _family, written(labels), value);
}

void MetricsText::seconds(std::int64_t milliseconds) {
  fmt::format_to(std::back_inserter(_text), "{} {}.{:03}\n", _family, milliseconds / 1000,
                 milliseconds % 1000);
}

std::string labelName(std::string_view name) { return printable(name, Charset::Unicode); }

std::string labelIdentifier(std::string_view identifier) {
  std::string text;
  for (const char c : identifier) {
    if (c > ' ' && c <= '~' && c != '\\') {
      text += c;
    } else {
      text += fmt::format("\\x{:02x}", static_cast<unsigned char>(c));
    }
  }
  return text;
}

}  // namespace Program
