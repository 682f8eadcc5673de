#include "application/record/PropertyValues.h"

#include <cstdint>
#include <vector>

namespace Program {
namespace {

using nlohmann::json;

json numberOf(CFNumberRef number) {
  if (CFNumberIsFloatType(number)) {
    double real = 0;
    CFNumberGetValue(number, kCFNumberFloat64Type, &real);
    return real;
  }
  std::int64_t whole = 0;
  CFNumberGetValue(number, kCFNumberSInt64Type, &whole);
  return whole;
}

json dataOf(CFDataRef data) {
  const UInt8* bytes = CFDataGetBytePtr(data);
  const CFIndex length = CFDataGetLength(data);
  if (length == 0) return json::binary({});
  return json::binary(std::vector<std::uint8_t>(bytes, bytes + length));
}

json arrayOf(CFArrayRef array) {
  json values = json::array();
  for (CFIndex index = 0; index < CFArrayGetCount(array); ++index)
    values.push_back(valueOf(CFArrayGetValueAtIndex(array, index)));
  return values;
}

json dictionaryOf(CFDictionaryRef dictionary) {
  const auto count = static_cast<std::size_t>(CFDictionaryGetCount(dictionary));
  std::vector<const void*> keys(count);
  std::vector<const void*> values(count);
  CFDictionaryGetKeysAndValues(dictionary, keys.data(), values.data());
  json pairs = json::object();
  for (std::size_t index = 0; index < count; ++index) {
    pairs[textOf(static_cast<CFStringRef>(keys[index]))] = valueOf(values[index]);
  }
  return pairs;
}

}  // namespace

std::string textOf(CFStringRef string) {
  if (string == nullptr) return {};
  const CFIndex length = CFStringGetLength(string);
  const CFIndex capacity = CFStringGetMaximumSizeForEncoding(length, kCFStringEncodingUTF8);
  std::string text(static_cast<std::size_t>(capacity), '\0');
  CFIndex used = 0;
  // UTF-8 for half of a surrogate pair, which has none.
  CFStringGetBytes(string, CFRangeMake(0, length), kCFStringEncodingUTF8, '?', 0,
                   reinterpret_cast<UInt8*>(text.data()), capacity, &used);
  text.resize(static_cast<std::size_t>(used));
  return text;
}

json valueOf(CFTypeRef value) {
  const CFTypeID type = CFGetTypeID(value);
  if (type == CFStringGetTypeID()) {
    return textOf(static_cast<CFStringRef>(value));
  }
  if (type == CFNumberGetTypeID()) return numberOf(static_cast<CFNumberRef>(value));
  if (type == CFBooleanGetTypeID()) {
    return CFBooleanGetValue(static_cast<CFBooleanRef>(value)) != 0;
  }
  if (type == CFDataGetTypeID()) return dataOf(static_cast<CFDataRef>(value));
  if (type == CFArrayGetTypeID()) return arrayOf(static_cast<CFArrayRef>(value));
  if (type == CFDictionaryGetTypeID()) return dictionaryOf(static_cast<CFDictionaryRef>(value));
  return nullptr;
}

}  // namespace Program
