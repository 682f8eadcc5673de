#include "platform/registry/IOKitUtilities.h"

#include <array>
#include <limits>
#include <optional>

#include "platform/registry/RegistryReferences.h"

namespace IOKitUtilities {

namespace {

using RAIDMonitoring::CFReference;

// UTF-8 for half of a surrogate pair, which has none.
constexpr UInt8 lossByte = '?';

CFReference<CFTypeRef> propertyOf(unsigned int entry, const std::string& key) {
  const auto name = CFReference<CFStringRef>::adopt(
      CFStringCreateWithCString(kCFAllocatorDefault, key.c_str(), kCFStringEncodingUTF8));
  if (!name) return {};
  return CFReference<CFTypeRef>::adopt(
      IORegistryEntryCreateCFProperty(entry, name.get(), kCFAllocatorDefault, 0));
}

// The property when it is of the type, else nothing.
CFReference<CFTypeRef> propertyOf(unsigned int entry, const std::string& key, CFTypeID type) {
  auto value = propertyOf(entry, key);
  if (value && CFGetTypeID(value.get()) != type) value.reset();
  return value;
}

// A boolean is no number: it is of another type. A real number that is whole is as good as an
// integer.
std::optional<std::int64_t> wholeNumber(unsigned int entry, const std::string& key) {
  const auto value = propertyOf(entry, key, CFNumberGetTypeID());
  if (!value) return std::nullopt;
  std::int64_t number = 0;
  // False also when the value was cut off, at its point or at 64 bits.
  if (!CFNumberGetValue(static_cast<CFNumberRef>(value.get()), kCFNumberSInt64Type, &number)) {
    return std::nullopt;
  }
  return number;
}

bool convert(CFStringRef string, CFIndex length, UInt8* buffer, std::size_t capacity,
             std::string& text) {
  CFIndex used = 0;
  const CFIndex converted =
      CFStringGetBytes(string, CFRangeMake(0, length), kCFStringEncodingUTF8, lossByte, 0, buffer,
                       static_cast<CFIndex>(capacity), &used);
  if (converted != length) return false;
  text.assign(reinterpret_cast<const char*>(buffer), static_cast<std::size_t>(used));
  return true;
}

}  // namespace

std::string GetServiceStringProperty(unsigned int entry, std::string key) {
  const auto value = propertyOf(entry, key);
  return GetStringFromCFString(static_cast<CFStringRef>(value.get()));
}

std::int32_t GetServiceIntProperty(unsigned int entry, std::string key) {
  using Limits = std::numeric_limits<std::int32_t>;
  const auto number = wholeNumber(entry, key);
  if (!number || *number < Limits::min() || *number > Limits::max()) return -1;
  return static_cast<std::int32_t>(*number);
}

std::uint64_t GetServiceUInt64Property(unsigned int entry, std::string key) {
  return static_cast<std::uint64_t>(wholeNumber(entry, key).value_or(0));
}

CFArrayRef GetServiceArrayProperty(unsigned int entry, std::string key) {
  auto value = propertyOf(entry, key, CFArrayGetTypeID());
  if (value) return static_cast<CFArrayRef>(value.release());
  return CFArrayCreate(kCFAllocatorDefault, nullptr, 0, &kCFTypeArrayCallBacks);
}

std::string GetStringFromCFString(const struct __CFString* string) {
  if (string == nullptr || CFGetTypeID(string) != CFStringGetTypeID()) return {};
  const CFIndex length = CFStringGetLength(string);
  std::string text;
  // Nearly every text fits here; only a longer one needs a buffer of the size that it might have.
  std::array<UInt8, 256> buffer;
  if (convert(string, length, buffer.data(), buffer.size(), text)) return text;
  const CFIndex size = CFStringGetMaximumSizeForEncoding(length, kCFStringEncodingUTF8);
  if (size <= static_cast<CFIndex>(buffer.size())) return {};
  std::string large(static_cast<std::size_t>(size), '\0');
  convert(string, length, reinterpret_cast<UInt8*>(large.data()), large.size(), text);
  return text;
}

}  // namespace IOKitUtilities
