#include "thunderbolt/ParseLocation.h"

#include <cstdint>
#include <cstring>
#include <limits>

#include "platform/registry/Vocabulary.h"

namespace RAIDMonitoring {

namespace {

// Leaves room for the largest offset that is added to a location.
constexpr std::int64_t LargestOffset = 5;
constexpr std::int64_t Largest = std::numeric_limits<int>::max() - LargestOffset;
constexpr std::int64_t Smallest = std::numeric_limits<int>::min();

bool isWhiteSpace(char character) { return std::strchr(" \t\n\v\f\r", character) != nullptr; }
bool isDigit(char character) { return character >= '0' && character <= '9'; }

}  // namespace

// By hand rather than through a stream: a stream writes 0 or the limit into its target when it
// fails, and reads "7,0" as the locale of the embedding application would have it.
void parseLocation(const char* text, int& number) {
  while (*text != '\0' && isWhiteSpace(*text))
    ++text;
  const bool negative = *text == '-';
  if (*text == '-' || *text == '+') ++text;
  if (!isDigit(*text)) return;
  std::int64_t value = 0;
  for (; isDigit(*text); ++text) {
    value = value * 10 + (*text - '0');
    if (value > -Smallest) return;
  }
  if (negative) value = -value;
  if (value <= Largest) number = static_cast<int>(value);
}

void readLocation(io_registry_entry_t entry, int& number) {
  io_name_t location;
  if (IORegistryEntryGetLocationInPlane(entry, kServicePlane, location) == kIOReturnSuccess) {
    parseLocation(location, number);
  }
}

}  // namespace RAIDMonitoring
