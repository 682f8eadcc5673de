#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace Program {

// Writes metrics in the text format of Prometheus: families one after the other, each with its
// samples.
class MetricsText {
 public:
  using Labels = std::vector<std::pair<const char*, std::string>>;

  enum class Type { Counter, Gauge };

  // Begins a family.
  void family(const char* name, Type type, const char* help);

  // Of the family that was begun last. A label's value may be any UTF-8.
  void sample(const Labels& labels, std::uint64_t value);
  void sample(std::uint64_t value) { sample({}, value); }
  // Milliseconds, as seconds.
  void seconds(std::int64_t milliseconds);

  const std::string& text() const { return _text; }

 private:
  std::string _text;
  const char* _family = "";
};

// A name from a registry as a label's value: what can't be shown becomes a replacement.
std::string labelName(std::string_view name);

// An identifier as a label's value. Two that differ stay different, whatever is in them, or there
// would be two samples of one series, and no reader would take the file.
std::string labelIdentifier(std::string_view identifier);

}  // namespace Program
