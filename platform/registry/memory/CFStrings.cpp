#include <algorithm>
#include <array>
#include <cstring>
#include <unordered_map>
#include <utility>

#include "platform/registry/memory/CFObjects.h"
#include "platform/registry/memory/OperationLog.h"
#include "platform/registry/memory/UTF8.h"

namespace MemoryRegistry {

namespace {

constexpr std::size_t longestKey = 127;

bool canBeKey(const __CFString& string) {
  return string.isASCII() && string.text.size() <= longestKey;
}

std::unique_ptr<__CFString> unaccountedString(std::string bytes) {
  auto string = std::make_unique<__CFString>();
  string->text = std::move(bytes);
  string->codeUnits = utf16Length(string->text);
  if (string->codeUnits < 0) {
    string->text = utf8OfMacRoman(string->text);
    string->codeUnits = utf16Length(string->text);
  }
  return string;
}

CFStringRef constantString(const char* text) {
  static auto& constants = *new std::unordered_map<std::string, std::unique_ptr<__CFString>>;
  auto& constant = constants[text];
  if (constant == nullptr) {
    auto string = unaccountedString(text);
    if (canBeKey(*string)) string->key = intern(string->text);
    string->header.constant = true;
    constant = std::move(string);
  }
  return constant.get();
}

// The UTF-16 code units that a character begins with, as one number in their order.
std::uint32_t orderOf(std::uint32_t character) {
  if (character < 0x10000) return character << 16U;
  const std::uint32_t above = character - 0x10000;
  return (0xD800U + (above >> 10U)) << 16U | (0xDC00U + (above & 0x3FFU));
}

// The start of the character that the byte belongs to.
std::size_t characterStart(std::string_view text, std::size_t place) {
  while (place > 0 && place < text.size() &&
         (static_cast<unsigned char>(text[place]) & 0xC0U) == 0x80U) {
    --place;
  }
  return place;
}

int compareByCodeUnits(std::string_view a, std::string_view b) {
  const std::size_t shorter = std::min(a.size(), b.size());
  std::size_t place = 0;
  while (place < shorter && a[place] == b[place])
    ++place;
  if (place == shorter) return a.size() < b.size() ? -1 : a.size() > b.size() ? 1 : 0;
  const std::uint32_t left = orderOf(characterAt(a, characterStart(a, place)));
  const std::uint32_t right = orderOf(characterAt(b, characterStart(b, place)));
  return left < right ? -1 : 1;
}

}  // namespace

const __CFString& requireString(CFTypeRef value, const char* operation) {
  return require<__CFString>(value, CFType::StringType, operation);
}

Owned<__CFString> makeString(std::string validUTF8) {
  auto string = make<__CFString>();
  string->text = std::move(validUTF8);
  string->codeUnits = utf16Length(string->text);
  return string;
}

Owned<__CFString> makePropertyString(const std::string& bytes) {
  auto string = unaccountedString(bytes);
  account(string->header);
  return Owned<__CFString>(string.release());
}

Symbol keyOf(const __CFString& string) {
  if (string.key != nullptr) return string.key;
  return canBeKey(string) ? findSymbol(string.text) : nullptr;
}

}  // namespace MemoryRegistry

using MemoryRegistry::Operation;
using MemoryRegistry::OperationLog;
using MemoryRegistry::requireString;

CFStringRef __CFStringMakeConstantString(const char* text) {
  // A literal is met at the same address again and again. The text is compared all the same: other
  // text may have come to lie there.
  static std::array<std::pair<const char*, CFStringRef>, 128> recent{};
  const auto bits = reinterpret_cast<std::uintptr_t>(text);
  auto& [address, string] = recent[(bits ^ (bits >> 7U)) % recent.size()];
  if (address != text || std::strcmp(string->text.c_str(), text) != 0) {
    string = MemoryRegistry::constantString(text);
    address = text;
  }
  return string;
}

CFStringRef CFStringCreateWithCString(CFAllocatorRef, const char* text, CFStringEncoding encoding) {
  if (OperationLog::instance().enter(Operation::CFStringCreateWithCString)) return nullptr;
  if (text == nullptr) {
    MemoryRegistry::trap("CFStringCreateWithCString", "null where a text is required");
  }
  if (encoding != kCFStringEncodingUTF8 || MemoryRegistry::utf16Length(text) < 0) return nullptr;
  return MemoryRegistry::makeString(text).release();
}

CFIndex CFStringGetLength(CFStringRef string) {
  OperationLog::instance().count(Operation::CFStringGetLength);
  return requireString(string, "CFStringGetLength").codeUnits;
}

CFComparisonResult CFStringCompare(CFStringRef a, CFStringRef b, CFStringCompareFlags) {
  OperationLog::instance().count(Operation::CFStringCompare);
  return MemoryRegistry::compareByCodeUnits(requireString(a, "CFStringCompare").text,
                                            requireString(b, "CFStringCompare").text);
}

Boolean CFStringHasPrefix(CFStringRef string, CFStringRef prefix) {
  OperationLog::instance().count(Operation::CFStringHasPrefix);
  const std::string& text = requireString(string, "CFStringHasPrefix").text;
  const std::string& sought = requireString(prefix, "CFStringHasPrefix").text;
  // The empty text is nobody's prefix, as in CoreFoundation.
  return !sought.empty() && text.compare(0, sought.size(), sought) == 0 ? 1 : 0;
}
