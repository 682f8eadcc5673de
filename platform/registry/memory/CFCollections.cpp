#include <algorithm>
#include <functional>
#include <utility>

#include "platform/registry/memory/CFObjects.h"
#include "platform/registry/memory/OperationLog.h"

// Only their addresses count: with these callbacks a collection retains what it holds and compares
// by value; with none it does neither.
struct CFArrayCallBacks {
  char unused;
};
struct CFDictionaryKeyCallBacks {
  char unused;
};
struct CFDictionaryValueCallBacks {
  char unused;
};
const CFArrayCallBacks MemoryRegistry::kCFTypeArrayCallBacks{};
const CFDictionaryKeyCallBacks MemoryRegistry::kCFTypeDictionaryKeyCallBacks{};
const CFDictionaryValueCallBacks MemoryRegistry::kCFTypeDictionaryValueCallBacks{};

namespace MemoryRegistry {

namespace {

using Pair = __CFDictionary::Pair;

std::size_t hashFor(const __CFDictionary& dictionary, CFTypeRef key) {
  return dictionary.retainsKeys ? hashOf(key) : std::hash<CFTypeRef>()(key);
}

bool sameKey(const __CFDictionary& dictionary, CFTypeRef a, CFTypeRef b) {
  return dictionary.retainsKeys ? equal(a, b) : a == b;
}

auto firstWithHash(const __CFDictionary& dictionary, std::size_t hash) {
  return std::lower_bound(dictionary.pairs.begin(), dictionary.pairs.end(), hash,
                          [](const Pair& pair, std::size_t sought) { return pair.hash < sought; });
}

void requireContent(CFTypeRef value, const char* operation) {
  if (value == nullptr) trap(operation, "null where a value is required");
}

void replaceValue(const __CFDictionary& dictionary, CFTypeRef& held, CFTypeRef value) {
  if (dictionary.retainsValues) {
    retain(value);  // first: it may be the one held
    release(held);
  }
  held = value;
}

void set(__CFDictionary& dictionary, CFTypeRef key, CFTypeRef value) {
  if (const Pair* known = findPair(dictionary, key)) {
    // The key stays the one that was given first.
    replaceValue(dictionary, const_cast<Pair*>(known)->value, value);
    return;
  }
  const std::size_t hash = hashFor(dictionary, key);
  dictionary.pairs.insert(firstWithHash(dictionary, hash), {hash, key, value});
  if (dictionary.retainsKeys) retain(key);
  if (dictionary.retainsValues) retain(value);
}

}  // namespace

const Pair* findPair(const __CFDictionary& dictionary, CFTypeRef key) {
  const std::size_t hash = hashFor(dictionary, key);
  for (auto pair = firstWithHash(dictionary, hash);
       pair != dictionary.pairs.end() && pair->hash == hash; ++pair) {
    if (sameKey(dictionary, pair->key, key)) return &*pair;
  }
  return nullptr;
}

}  // namespace MemoryRegistry

using MemoryRegistry::CFType;
using MemoryRegistry::Operation;
using MemoryRegistry::OperationLog;

CFArrayRef CFArrayCreate(CFAllocatorRef, const void** values, CFIndex count,
                         const CFArrayCallBacks* callBacks) {
  if (OperationLog::instance().enter(Operation::CFArrayCreate)) return nullptr;
  if (count < 0) MemoryRegistry::trap("CFArrayCreate", "a negative count");
  if (values == nullptr && count > 0) MemoryRegistry::trap("CFArrayCreate", "no values");
  auto array = MemoryRegistry::make<__CFArray>();
  array->retains = callBacks != nullptr;
  array->values.reserve(static_cast<std::size_t>(count));
  for (CFIndex index = 0; index < count; ++index) {
    if (array->retains) {
      MemoryRegistry::requireContent(values[index], "CFArrayCreate");
      MemoryRegistry::retain(values[index]);
    }
    array->values.push_back(values[index]);
  }
  return array.release();
}

CFIndex CFArrayGetCount(CFArrayRef array) {
  OperationLog::instance().count(Operation::CFArrayGetCount);
  const auto& read =
      MemoryRegistry::require<__CFArray>(array, CFType::ArrayType, "CFArrayGetCount");
  return static_cast<CFIndex>(read.values.size());
}

const void* CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
  OperationLog::instance().count(Operation::CFArrayGetValueAtIndex);
  const auto& values =
      MemoryRegistry::require<__CFArray>(array, CFType::ArrayType, "CFArrayGetValueAtIndex").values;
  if (index < 0 || static_cast<std::size_t>(index) >= values.size()) {
    MemoryRegistry::trap("CFArrayGetValueAtIndex", "an index outside the array");
  }
  return values[static_cast<std::size_t>(index)];
}

CFMutableDictionaryRef CFDictionaryCreateMutable(CFAllocatorRef, CFIndex,
                                                 const CFDictionaryKeyCallBacks* keyCallBacks,
                                                 const CFDictionaryValueCallBacks* valueCallBacks) {
  if (OperationLog::instance().enter(Operation::CFDictionaryCreateMutable)) return nullptr;
  auto dictionary = MemoryRegistry::make<__CFDictionary>();
  dictionary->retainsKeys = keyCallBacks != nullptr;
  dictionary->retainsValues = valueCallBacks != nullptr;
  return dictionary.release();
}

void CFDictionarySetValue(CFMutableDictionaryRef dictionary, const void* key, const void* value) {
  OperationLog::instance().count(Operation::CFDictionarySetValue);
  MemoryRegistry::require<__CFDictionary>(dictionary, CFType::DictionaryType,
                                          "CFDictionarySetValue");
  if (dictionary->retainsKeys) MemoryRegistry::requireContent(key, "CFDictionarySetValue");
  if (dictionary->retainsValues) MemoryRegistry::requireContent(value, "CFDictionarySetValue");
  MemoryRegistry::set(*dictionary, key, value);
}

const void* CFDictionaryGetValue(CFDictionaryRef dictionary, const void* key) {
  if (OperationLog::instance().enter(Operation::CFDictionaryGetValue)) return nullptr;
  const auto& read = MemoryRegistry::require<__CFDictionary>(dictionary, CFType::DictionaryType,
                                                             "CFDictionaryGetValue");
  if (read.retainsKeys) MemoryRegistry::requireContent(key, "CFDictionaryGetValue");
  const auto* pair = MemoryRegistry::findPair(read, key);
  return pair != nullptr ? pair->value : nullptr;
}

CFIndex CFDictionaryGetCount(CFDictionaryRef dictionary) {
  OperationLog::instance().count(Operation::CFDictionaryGetCount);
  const auto& read = MemoryRegistry::require<__CFDictionary>(dictionary, CFType::DictionaryType,
                                                             "CFDictionaryGetCount");
  return static_cast<CFIndex>(read.pairs.size());
}

void CFDictionaryGetKeysAndValues(CFDictionaryRef dictionary, const void** keys,
                                  const void** values) {
  OperationLog::instance().count(Operation::CFDictionaryGetKeysAndValues);
  const auto& read = MemoryRegistry::require<__CFDictionary>(dictionary, CFType::DictionaryType,
                                                             "CFDictionaryGetKeysAndValues");
  for (const auto& pair : read.pairs) {
    if (keys != nullptr) *keys++ = pair.key;
    if (values != nullptr) *values++ = pair.value;
  }
}

CFArrayRef CFStringCreateArrayBySeparatingStrings(CFAllocatorRef, CFStringRef string,
                                                  CFStringRef separator) {
  constexpr const char* operation = "CFStringCreateArrayBySeparatingStrings";
  if (OperationLog::instance().enter(Operation::CFStringCreateArrayBySeparatingStrings)) {
    return nullptr;
  }
  const std::string& text = MemoryRegistry::requireString(string, operation).text;
  const std::string& between = MemoryRegistry::requireString(separator, operation).text;
  auto array = MemoryRegistry::make<__CFArray>();
  for (std::size_t start = 0;;) {
    const std::size_t end = between.empty() ? std::string::npos : text.find(between, start);
    auto part = MemoryRegistry::makeString(text.substr(start, end - start));
    array->values.push_back(part.get());
    static_cast<void>(part.release());  // the array's now
    if (end == std::string::npos) return array.release();
    start = end + between.size();
  }
}
