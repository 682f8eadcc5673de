#include "application/record/StandIns.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <stdexcept>

namespace Program {
namespace {

constexpr std::uint64_t Half = std::uint64_t{1} << 31U;
constexpr std::uint64_t SmallestIdentity = 256;

std::string hexadecimal(std::uint64_t number) {
  constexpr const char* digits = "0123456789abcdef";
  std::string text(16, '0');
  for (auto place = text.rbegin(); place != text.rend(); ++place, number >>= 4U)
    *place = digits[number & 0xFU];
  return text;
}

// In letters, as many as asked for if they suffice.
std::string lettersOf(std::uint64_t number, std::size_t length) {
  std::string text;
  for (; number != 0 || text.size() < length; number /= 26)
    text.insert(text.begin(), static_cast<char>('A' + number % 26));
  return text;
}

// Of the length, if there is room for the number.
std::string numbered(std::string_view kind, std::uint64_t number, std::size_t length) {
  const std::string digits = std::to_string(number);
  if (length < kind.size() + digits.size()) return lettersOf(number, length);
  std::string text(kind);
  text.append(length - kind.size() - digits.size(), '0');
  return text + digits;
}

template <class Digits, class Digit>
bool holdsNothingBut(const Digits& digits, Digit digit) {
  return std::all_of(digits.begin(), digits.end(), [digit](Digit each) { return each == digit; });
}

}  // namespace

bool StandIns::isTaken(const std::string& candidate) const {
  return _originals.count(candidate) != 0 || _texts.count(candidate) != 0;
}

const std::string& StandIns::forText(const std::string& original, std::string_view kind) {
  const auto known = _texts.find(original);
  if (known != _texts.end()) return known->second;
  std::string candidate;
  do {
    candidate = numbered(kind, ++_textCount, original.size());
  } while (candidate == original || isTaken(candidate));
  _originals[candidate] = original;
  return _texts[original] = candidate;
}

// Anywhere between those that stand for its neighbours.
template <class Key>
std::uint64_t StandIns::between(const std::map<Key, std::uint64_t>& known, const Key& original,
                                std::uint64_t lowest, std::uint64_t highest) {
  const auto above = known.lower_bound(original);
  if (above != known.end() && above->second <= highest) highest = above->second - 1;
  if (above != known.begin()) lowest = std::max(lowest, std::prev(above)->second + 1);
  if (lowest > highest) throw std::runtime_error("too many identities for as many stand-ins");
  return std::uniform_int_distribution<std::uint64_t>(lowest, highest)(_random);
}

std::string StandIns::forUUID(const std::string& digits) {
  if (holdsNothingBut(digits, '0') || holdsNothingBut(digits, 'f')) return digits;
  const auto known = _uuids.find(digits);
  if (known != _uuids.end()) return known->second;
  constexpr std::uint64_t most = std::numeric_limits<std::uint64_t>::max();
  const std::uint64_t start = between(_uuidStarts, digits, 1, most - 1);
  const std::uint64_t rest = std::uniform_int_distribution<std::uint64_t>(0, most)(_random);
  _uuidStarts[digits] = start;
  return _uuids[digits] = hexadecimal(start) + hexadecimal(rest);
}

std::vector<std::string> StandIns::uuids() const {
  std::vector<std::string> digits;
  for (const auto& [original, standIn] : _uuids)
    digits.push_back(original);
  return digits;
}

std::uint64_t StandIns::forNumber(std::uint64_t original) {
  if (original < SmallestIdentity) return original;
  const auto known = _numbers.find(original);
  if (known != _numbers.end()) return known->second;
  const bool isSmall = original < Half;
  const std::uint64_t lowest = isSmall ? SmallestIdentity : Half;
  const std::uint64_t highest = isSmall ? Half - 1 : std::numeric_limits<std::uint64_t>::max() - 1;
  const std::uint64_t standIn = between(_numbers, original, lowest, highest);
  return _numbers[original] = standIn;
}

StandIns::Address StandIns::forAddress(const Address& original) {
  if (holdsNothingBut(original, std::uint8_t{0}) || holdsNothingBut(original, std::uint8_t{0xFF}))
    return original;
  const auto known = _addresses.find(original);
  if (known != _addresses.end()) return known->second;
  Address standIn{2};  // an address of nobody's making
  std::uint64_t number = _addresses.size() + 1;
  for (auto byte = standIn.rbegin(); number != 0; ++byte, number >>= 8U)
    *byte = static_cast<std::uint8_t>(number & 0xFFU);
  return _addresses[original] = standIn;
}

}  // namespace Program
