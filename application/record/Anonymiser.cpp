#include "application/record/Anonymiser.h"

#include <algorithm>
#include <cctype>
#include <set>
#include <utility>
#include <vector>

#include "application/record/Identity.h"
#include "platform/registry/Vocabulary.h"

namespace Program {
namespace {

using nlohmann::json;

// Shorter ones are found where their keys are, and nowhere else: they might mean anything.
constexpr std::size_t ShortestSought = 4;
constexpr std::size_t ShortestSoughtInData = 6;
constexpr std::size_t FewestDifferentBytes = 4;
constexpr std::size_t LongestPersonalText = 128;
constexpr std::uint64_t SmallestSoughtNumber = std::uint64_t{1} << 31U;

bool isHexadecimal(char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; }

// What fillers stand around: blanks, and the ends of C strings.
std::string coreOf(const std::string& text) {
  constexpr std::string_view fillers(" \t\0", 3);
  const std::size_t start = text.find_first_not_of(fillers);
  if (start == std::string::npos) return {};
  return text.substr(start, text.find_last_not_of(fillers) - start + 1);
}

// A serial number that was never given.
bool saysNothing(const std::string& core) {
  return std::all_of(core.begin(), core.end(), [](char c) { return c == '0'; });
}

// Among bytes, only what is not there by accident.
bool isTelling(const std::string& bytes) {
  return bytes.size() >= ShortestSoughtInData &&
         std::set<char>(bytes.begin(), bytes.end()).size() >= FewestDifferentBytes;
}

bool isNumber(const json& value) { return value.is_number_integer(); }

std::uint64_t bitsOf(const json& number) {
  return static_cast<std::uint64_t>(number.get<std::int64_t>());
}

std::string textOf(const json::binary_t& data) { return {data.begin(), data.end()}; }
json dataOf(const std::string& text) {
  return json::binary(std::vector<std::uint8_t>(text.begin(), text.end()));
}

std::string bytesOf(std::uint64_t number) {
  std::string bytes;
  for (unsigned shift = 0; shift < 64; shift += 8)
    bytes += static_cast<char>((number >> shift) & 0xFFU);
  return bytes;
}

std::string bytesOfDigits(const std::string& digits) {
  std::string bytes;
  for (std::size_t place = 0; place + 1 < digits.size(); place += 2)
    bytes += static_cast<char>(std::stoi(digits.substr(place, 2), nullptr, 16));
  return bytes;
}

std::string digitsOfBytes(const std::string& bytes) {
  constexpr const char* all = "0123456789abcdef";
  std::string digits;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    digits += all[byte >> 4U];
    digits += all[byte & 0xFU];
  }
  return digits;
}

std::string upperCase(std::string text) {
  for (char& c : text)
    c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text;
}

std::string reversed(std::string text) {
  std::reverse(text.begin(), text.end());
  return text;
}

// ---- What looks like an identity, whatever its key

// Whether a pattern stands there on its own: x is a hexadecimal digit, : either separator.
bool looksLike(std::string_view pattern, std::string_view text, std::size_t place) {
  if (text.size() - place < pattern.size()) return false;
  for (std::size_t at = 0; at < pattern.size(); ++at) {
    const char c = text[place + at];
    const bool fits = pattern[at] == 'x'   ? isHexadecimal(c)
                      : pattern[at] == ':' ? c == ':' || c == '-'
                                           : c == pattern[at];
    if (!fits) return false;
  }
  const auto touches = [](char c) { return std::isalnum(static_cast<unsigned char>(c)) != 0; };
  const std::size_t end = place + pattern.size();
  return (place == 0 || !touches(text[place - 1])) && (end == text.size() || !touches(text[end]));
}

constexpr std::string_view UUIDPattern = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";
constexpr std::string_view AddressPattern = "xx:xx:xx:xx:xx:xx";

std::string digitsIn(std::string_view text) {
  std::string digits;
  for (const char c : text) {
    if (isHexadecimal(c)) digits += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  }
  return digits;
}

// Puts the digits in the places of those that are there, in the case of those.
void putDigits(std::string& text, std::size_t place, std::size_t size, std::string digits) {
  const std::string_view before = std::string_view(text).substr(place, size);
  const bool lower = std::any_of(before.begin(), before.end(), [](char c) {
    return std::islower(static_cast<unsigned char>(c)) != 0;
  });
  if (!lower) digits = upperCase(std::move(digits));
  auto digit = digits.begin();
  for (std::size_t at = place; at < place + size && digit != digits.end(); ++at) {
    if (isHexadecimal(text[at])) text[at] = *digit++;
  }
}

template <class Replace>
void replaceEach(std::string_view pattern, std::string& text, Replace standInFor) {
  for (std::size_t place = 0; place + pattern.size() <= text.size();) {
    if (!looksLike(pattern, text, place)) {
      ++place;
      continue;
    }
    const std::string digits = digitsIn(std::string_view(text).substr(place, pattern.size()));
    putDigits(text, place, pattern.size(), standInFor(digits));
    place += pattern.size();
  }
}

std::string_view kindOf(Identity identity) { return identity == Identity::Serial ? "SN" : "Name"; }

}  // namespace

RegistryLook Anonymiser::disguised(RegistryLook look) {
  for (const RecordedEntry& entry : look.entries)
    collect(entry);
  indexTexts();
  for (RecordedEntry& entry : look.entries)
    disguise(entry);
  return look;
}

void Anonymiser::collect(const RecordedEntry& entry) {
  if (hasGivenName(entry) && !entry.name.empty()) _standIns.forText(entry.name, "Name");
  for (const auto& [key, value] : entry.properties.items())
    collect(key, value);
}

void Anonymiser::collect(std::string_view key, const Value& value) {
  if (value.is_object()) {
    for (const auto& [innerKey, inner] : value.items())
      collect(innerKey, inner);
  } else if (value.is_array()) {
    for (const Value& element : value)
      collect(key, element);
  } else if (value.is_string()) {
    collectText(key, value.get_ref<const std::string&>());
  } else if (value.is_binary()) {
    collectData(key, value.get_binary());
  } else if (isNumber(value)) {
    disguisedNumber(key, value);
  }
}

void Anonymiser::collectText(std::string_view key, const std::string& text) {
  const Identity identity = identityOf(key);
  const std::string core = coreOf(text);
  const bool isPersonal =
      identity == Identity::None && text.size() <= LongestPersonalText && namesAPerson(text);
  if (identity == Identity::Serial || identity == Identity::Name || isPersonal) {
    if (!saysNothing(core)) _standIns.forText(core, kindOf(identity));
  }
  if (identity != Identity::Fixed) {
    std::string copy = text;  // for what is found on the way
    rewriteUUIDs(copy);
    rewriteAddresses(copy);
  }
  collectHomes(text);
}

void Anonymiser::collectData(std::string_view key, const Value::binary_t& data) {
  const Identity identity = identityOf(key);
  if (identity == Identity::Serial) {
    collectText(key, textOf(data));
  } else if (identity == Identity::UUID || identity == Identity::Address) {
    disguisedData(key, data);  // the same
  }
}

// The users whose folders, and the volumes that, are named in paths.
void Anonymiser::collectHomes(const std::string& text) {
  for (const std::string_view folder : {"/Users/", "/Volumes/"}) {
    for (std::size_t place = text.find(folder); place != std::string::npos;
         place = text.find(folder, place + 1)) {
      const std::size_t start = place + folder.size();
      const std::string name = text.substr(start, text.find_first_of("/\"\n", start) - start);
      if (!name.empty() && name != "Shared") _standIns.forText(name, "Name");
    }
  }
}

void Anonymiser::indexTexts() {
  _inTexts.clear();
  _inData.clear();
  const auto addToData = [this](const std::string& text, const std::string& standIn) {
    if (isTelling(text)) _inData.add(text, standIn);
  };
  for (const auto& [text, standIn] : _standIns.texts()) {
    if (text.size() >= ShortestSought) _inTexts.add(text, standIn);
    addToData(text, standIn);
  }
  for (const auto& [number, standIn] : _standIns.numbers()) {
    if (number < SmallestSoughtNumber) continue;
    addDigits(digitsOfBytes(reversed(bytesOf(number))), digitsOfBytes(reversed(bytesOf(standIn))));
    addToData(bytesOf(number), bytesOf(standIn));
    addToData(reversed(bytesOf(number)), reversed(bytesOf(standIn)));
  }
  for (const auto& [address, standIn] : _standIns.addresses()) {
    addToData({address.begin(), address.end()}, {standIn.begin(), standIn.end()});
  }
  for (const std::string& digits : _standIns.uuids())
    addToData(bytesOfDigits(digits), bytesOfDigits(_standIns.forUUID(digits)));
}

// As numbers are written in texts: all digits or those that count, in either case.
void Anonymiser::addDigits(const std::string& digits, const std::string& standIn) {
  for (const std::size_t start : {std::size_t{0}, digits.find_first_not_of('0')}) {
    const std::string text = digits.substr(start);
    const std::string other = standIn.substr(start);
    for (const char* prefix : {"", "0x"}) {
      _inTexts.add(prefix + text, prefix + other);
      _inTexts.add(prefix + upperCase(text), prefix + upperCase(other));
    }
  }
}

void Anonymiser::disguise(RecordedEntry& entry) {
  if (hasGivenName(entry) && !entry.name.empty()) {
    entry.name = _standIns.forText(entry.name, "Name");
  } else {
    entry.name = rewritten(entry.name);
  }
  const bool secrets = holdsSecrets(entry);
  Value properties = Value::object();
  for (const auto& [key, value] : entry.properties.items())
    properties[rewritten(key)] = disguised(secrets ? "password" : key, value);
  entry.properties = std::move(properties);
}

Anonymiser::Value Anonymiser::disguised(std::string_view key, const Value& value) {
  if (value.is_object()) {
    Value pairs = Value::object();
    const bool secret = identityOf(key) == Identity::Secret;
    for (const auto& [innerKey, inner] : value.items())
      pairs[rewritten(innerKey)] = disguised(secret ? key : innerKey, inner);
    return pairs;
  }
  if (value.is_array()) {
    Value elements = Value::array();
    for (const Value& element : value)
      elements.push_back(disguised(key, element));
    return elements;
  }
  if (value.is_string()) return disguisedText(key, value.get_ref<const std::string&>());
  if (value.is_binary()) return disguisedData(key, value.get_binary());
  return isNumber(value) ? disguisedNumber(key, value) : value;
}

Anonymiser::Value Anonymiser::disguisedText(std::string_view key, const std::string& text) {
  switch (identityOf(key)) {
    case Identity::Fixed:
      return text;
    case Identity::Secret:
      return std::string(text.size(), 'x');
    case Identity::Serial:
    case Identity::Name: {
      const std::string core = coreOf(text);
      if (saysNothing(core)) return text;
      std::string changed = text;
      return changed.replace(text.find(core), core.size(),
                             _standIns.forText(core, kindOf(identityOf(key))));
    }
    case Identity::UUID: {
      std::string changed = rewritten(text);
      replaceEach("xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx", changed,
                  [this](const std::string& digits) { return _standIns.forUUID(digits); });
      return changed;
    }
    default:
      return rewritten(text);
  }
}

Anonymiser::Value Anonymiser::disguisedData(std::string_view key, const Value::binary_t& data) {
  const Identity identity = identityOf(key);
  std::string bytes = textOf(data);
  if (identity == Identity::Fixed) return data;
  if (identity == Identity::Secret) return dataOf(std::string(bytes.size(), '\0'));
  if (identity == Identity::Serial) return dataOf(disguisedText(key, bytes).get<std::string>());
  if (identity == Identity::UUID && bytes.size() == 16) {
    return dataOf(bytesOfDigits(_standIns.forUUID(digitsOfBytes(bytes))));
  }
  StandIns::Address address{};
  if (identity == Identity::Address && bytes.size() == address.size()) {
    for (std::size_t i = 0; i < address.size() && i < bytes.size(); ++i)
      address[i] = static_cast<StandIns::Address::value_type>(bytes[i]);
    address = _standIns.forAddress(address);
    return dataOf({address.begin(), address.end()});
  }
  _inData.replaceIn(bytes);
  return dataOf(bytes);
}

Anonymiser::Value Anonymiser::disguisedNumber(std::string_view key, const Value& number) {
  const std::uint64_t bits = bitsOf(number);
  const bool identifies = key == kSwitchUIDKey || identityOf(key) == Identity::Serial;
  const bool isKnown = bits >= SmallestSoughtNumber && _standIns.numbers().count(bits) != 0;
  if (!identifies && !isKnown) return number;
  return static_cast<std::int64_t>(_standIns.forNumber(bits));
}

std::string Anonymiser::rewritten(std::string text) {
  rewriteUUIDs(text);
  rewriteAddresses(text);
  _inTexts.replaceIn(text);
  return text;
}

void Anonymiser::rewriteUUIDs(std::string& text) {
  replaceEach(UUIDPattern, text,
              [this](const std::string& digits) { return _standIns.forUUID(digits); });
}

void Anonymiser::rewriteAddresses(std::string& text) {
  replaceEach(AddressPattern, text, [this](const std::string& digits) {
    const std::string bytes = bytesOfDigits(digits);
    StandIns::Address address{};
    for (std::size_t i = 0; i < address.size() && i < bytes.size(); ++i)
      address[i] = static_cast<StandIns::Address::value_type>(bytes[i]);
    address = _standIns.forAddress(address);
    return digitsOfBytes({address.begin(), address.end()});
  });
}

}  // namespace Program
