#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "platform/registry/memory/MemoryRegistrySeam.h"
#include "platform/registry/memory/PropertyValue.h"
#include "platform/registry/memory/Symbol.h"

// The CoreFoundation values behind the seam's opaque types. Each begins with its header, so that a
// CFTypeRef can be asked what it is.

namespace MemoryRegistry {

struct Property;

enum class CFType : CFTypeID {
  StringType = 7,
  DictionaryType = 18,
  ArrayType = 19,
  DataType = 20,
  BooleanType = 21,
  NumberType = 22,
  OpaqueType = 42,
};

struct CFHeader {
  explicit CFHeader(CFType of) : type(of) {}

  CFType type;
  bool constant = false;  // never released, not accounted for
  std::uint32_t era = 0;  // the resets before it was made
  std::uint64_t references = 1;
};

struct CFOpaque {
  CFHeader header{CFType::OpaqueType};
};

}  // namespace MemoryRegistry

struct __CFBoolean {
  MemoryRegistry::CFHeader header{MemoryRegistry::CFType::BooleanType};
  bool value = false;
};

struct __CFData {
  MemoryRegistry::CFHeader header{MemoryRegistry::CFType::DataType};
  MemoryRegistry::Data bytes;
};

struct __CFString {
  MemoryRegistry::CFHeader header{MemoryRegistry::CFType::StringType};
  std::string text;       // valid UTF-8
  CFIndex codeUnits = 0;  // its length in UTF-16
  // As a property key; for constants only, others are looked up when they are used.
  MemoryRegistry::Symbol key = nullptr;

  bool isASCII() const { return static_cast<std::size_t>(codeUnits) == text.size(); }
};

struct __CFNumber {
  MemoryRegistry::CFHeader header{MemoryRegistry::CFType::NumberType};
  CFNumberType type = kCFNumberSInt64Type;  // or SInt32 or Float64
  union {
    std::int64_t integer = 0;
    double real;
  };

  bool isReal() const { return type == kCFNumberFloat64Type; }
};

struct __CFArray {
  MemoryRegistry::CFHeader header{MemoryRegistry::CFType::ArrayType};
  bool retains = true;
  std::vector<CFTypeRef> values;
};

struct __CFDictionary {
  struct Pair {
    std::size_t hash;
    CFTypeRef key;
    CFTypeRef value;
  };

  MemoryRegistry::CFHeader header{MemoryRegistry::CFType::DictionaryType};
  bool retainsKeys = true;
  bool retainsValues = true;
  std::vector<Pair> pairs;  // ascending by hash
};

namespace MemoryRegistry {

static_assert(std::is_standard_layout_v<__CFString> && std::is_standard_layout_v<__CFNumber> &&
                  std::is_standard_layout_v<__CFArray> &&
                  std::is_standard_layout_v<__CFDictionary> &&
                  std::is_standard_layout_v<__CFData> && std::is_standard_layout_v<__CFBoolean>,
              "a CFTypeRef points to the header as well as to the value");

// A mistake of the program that the operating system would crash on: says so in one line and
// aborts.
[[noreturn]] void trap(const char* operation, const char* mistake);

// ---- Life; what the seam's CFRetain and CFRelease do, uncounted

void retain(CFTypeRef value);
void release(CFTypeRef value);

struct Releaser {
  void operator()(const void* value) const { release(value); }
};
// One reference, given back at the end.
template <class Value>
using Owned = std::unique_ptr<Value, Releaser>;

// A new value with one reference, on the accounts.
template <class Value>
Owned<Value> make();

void account(CFHeader& header);
std::size_t liveValues();
void forgetLiveValues();  // those that live now are on no account any more

template <class Value>
Owned<Value> make() {
  auto value = std::make_unique<Value>();
  account(value->header);
  return Owned<Value>(value.release());
}

// ---- Looking

inline CFType typeOf(CFTypeRef value) { return static_cast<const CFHeader*>(value)->type; }

// The value as the type it must have; traps when it is null or of another.
template <class Value>
const Value& require(CFTypeRef value, CFType type, const char* operation) {
  if (value == nullptr) trap(operation, "null where a value is required");
  if (typeOf(value) != type) trap(operation, "a value of another type than required");
  return *static_cast<const Value*>(value);
}

const __CFString& requireString(CFTypeRef value, const char* operation);

bool equal(CFTypeRef a, CFTypeRef b);
std::size_t hashOf(CFTypeRef value);
const __CFDictionary::Pair* findPair(const __CFDictionary& dictionary, CFTypeRef key);

// ---- Making

Owned<__CFString> makeString(std::string validUTF8);
// A string of a property: UTF-8, or MacRoman when it is no valid UTF-8.
Owned<__CFString> makePropertyString(const std::string& bytes);
CFTypeRef booleanValue(bool value);  // a constant
// A deep copy with one reference.
Owned<const void> makeProperty(const PropertyValue& value);
Owned<__CFDictionary> makeProperties(const std::vector<Property>& properties);

// The property key that a string stands for; null when no property can have it.
Symbol keyOf(const __CFString& string);

}  // namespace MemoryRegistry
