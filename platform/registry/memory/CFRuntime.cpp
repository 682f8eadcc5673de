#include <cstdio>
#include <cstdlib>

#include "platform/registry/memory/CFObjects.h"
#include "platform/registry/memory/OperationLog.h"

namespace MemoryRegistry {

namespace {

std::size_t live = 0;
std::uint32_t currentEra = 0;

// CoreFoundation's values are changed behind references to constants, as its own are.
CFHeader& headerOf(CFTypeRef value) { return *static_cast<CFHeader*>(const_cast<void*>(value)); }

void destroy(const __CFArray& array) {
  if (!array.retains) return;
  for (const CFTypeRef value : array.values)
    release(value);
}

void destroy(const __CFDictionary& dictionary) {
  for (const auto& pair : dictionary.pairs) {
    if (dictionary.retainsKeys) release(pair.key);
    if (dictionary.retainsValues) release(pair.value);
  }
}

template <class Value>
void discard(CFTypeRef value) {
  delete static_cast<const Value*>(value);
}

void destroy(CFTypeRef value) {
  switch (typeOf(value)) {
    case CFType::StringType:
      return discard<__CFString>(value);
    case CFType::NumberType:
      return discard<__CFNumber>(value);
    case CFType::DataType:
      return discard<__CFData>(value);
    case CFType::BooleanType:
      return discard<__CFBoolean>(value);
    case CFType::OpaqueType:
      return discard<CFOpaque>(value);
    case CFType::ArrayType:
      destroy(*static_cast<const __CFArray*>(value));
      return discard<__CFArray>(value);
    case CFType::DictionaryType:
      destroy(*static_cast<const __CFDictionary*>(value));
      return discard<__CFDictionary>(value);
  }
}

}  // namespace

void trap(const char* operation, const char* mistake) {
  std::fprintf(stderr, "%s: %s\n", operation, mistake);
  std::abort();
}

void account(CFHeader& header) {
  header.era = currentEra;
  ++live;
}

std::size_t liveValues() { return live; }

void forgetLiveValues() {
  live = 0;
  ++currentEra;
}

void retain(CFTypeRef value) {
  CFHeader& header = headerOf(value);
  if (!header.constant) ++header.references;
}

void release(CFTypeRef value) {
  CFHeader& header = headerOf(value);
  if (header.constant || --header.references != 0) return;
  if (header.era == currentEra) --live;
  destroy(value);
}

}  // namespace MemoryRegistry

using MemoryRegistry::CFType;
using MemoryRegistry::Operation;
using MemoryRegistry::OperationLog;

CFTypeRef CFRetain(CFTypeRef value) {
  OperationLog::instance().count(Operation::CFRetain);
  if (value == nullptr) MemoryRegistry::trap("CFRetain", "null where a value is required");
  MemoryRegistry::retain(value);
  return value;
}

void CFRelease(CFTypeRef value) {
  OperationLog::instance().count(Operation::CFRelease);
  if (value == nullptr) MemoryRegistry::trap("CFRelease", "null where a value is required");
  MemoryRegistry::release(value);
}

CFTypeID CFGetTypeID(CFTypeRef value) {
  OperationLog::instance().count(Operation::CFGetTypeID);
  if (value == nullptr) MemoryRegistry::trap("CFGetTypeID", "null where a value is required");
  return static_cast<CFTypeID>(MemoryRegistry::typeOf(value));
}

CFTypeID CFBooleanGetTypeID() { return static_cast<CFTypeID>(CFType::BooleanType); }
CFTypeID CFDataGetTypeID() { return static_cast<CFTypeID>(CFType::DataType); }
CFTypeID CFStringGetTypeID() { return static_cast<CFTypeID>(CFType::StringType); }
CFTypeID CFNumberGetTypeID() { return static_cast<CFTypeID>(CFType::NumberType); }
CFTypeID CFArrayGetTypeID() { return static_cast<CFTypeID>(CFType::ArrayType); }
CFTypeID CFDictionaryGetTypeID() { return static_cast<CFTypeID>(CFType::DictionaryType); }
