#include <algorithm>
#include <cstring>
#include <limits>

#include "platform/registry/memory/CFObjects.h"
#include "platform/registry/memory/OperationLog.h"
#include "platform/registry/memory/UTF8.h"

namespace MemoryRegistry {

namespace {

// A conversion to UTF-8 of part of a string. Without a buffer it only counts.
class Conversion {
 public:
  Conversion(UInt8* buffer, CFIndex capacity) : _buffer(buffer), _capacity(capacity) {}

  bool put(const char* bytes, std::size_t count) {
    const auto size = static_cast<CFIndex>(count);
    if (_buffer != nullptr) {
      if (size > _capacity - _used) return false;
      std::memcpy(_buffer + _used, bytes, count);
    }
    _used += size;
    return true;
  }
  CFIndex used() const { return _used; }

 private:
  UInt8* _buffer;
  CFIndex _capacity;
  CFIndex _used = 0;
};

CFIndex codeUnitsOf(std::size_t characterSize) { return characterSize == 4 ? 2 : 1; }

// Half of a surrogate pair has no UTF-8: `lossByte` stands for it, or the conversion ends there.
bool putHalf(Conversion& conversion, UInt8 lossByte) {
  const char loss = static_cast<char>(lossByte);
  return lossByte != 0 && conversion.put(&loss, 1);
}

// The range is within the string.
CFIndex convert(const std::string& text, CFRange range, UInt8 lossByte, Conversion& conversion) {
  const CFIndex end = range.location + range.length;
  CFIndex unit = 0;
  CFIndex converted = 0;
  for (std::size_t place = 0; unit < end;) {
    const std::size_t size = characterSize(text[place]);
    const CFIndex after = unit + codeUnitsOf(size);
    if (after > range.location) {
      const bool whole = unit >= range.location && after <= end;
      if (!(whole ? conversion.put(text.data() + place, size) : putHalf(conversion, lossByte))) {
        break;
      }
      converted += whole ? after - unit : 1;
    }
    unit = after;
    place += size;
  }
  return converted;
}

CFIndex convertASCII(const std::string& text, CFRange range, CFIndex capacity,
                     Conversion& conversion, bool counting) {
  const CFIndex room = counting ? range.length : std::max<CFIndex>(capacity, 0);
  const CFIndex count = std::min(range.length, room);
  conversion.put(text.data() + range.location, static_cast<std::size_t>(count));
  return count;
}

}  // namespace

}  // namespace MemoryRegistry

using MemoryRegistry::Operation;
using MemoryRegistry::OperationLog;

CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding) {
  constexpr CFIndex notFound = -1;
  constexpr CFIndex bytesPerCodeUnit = 3;
  if (encoding != kCFStringEncodingUTF8) return notFound;
  if (length > std::numeric_limits<CFIndex>::max() / bytesPerCodeUnit) return notFound;
  return length * bytesPerCodeUnit;
}

CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding,
                         UInt8 lossByte, Boolean, UInt8* buffer, CFIndex capacity, CFIndex* used) {
  CFIndex ignored = 0;
  CFIndex& bytes = used != nullptr ? *used : ignored;
  bytes = 0;
  if (OperationLog::instance().enter(Operation::CFStringGetBytes)) return 0;
  const __CFString& from = MemoryRegistry::requireString(string, "CFStringGetBytes");
  if (range.location < 0 || range.length < 0 || range.location > from.codeUnits ||
      range.length > from.codeUnits - range.location) {
    MemoryRegistry::trap("CFStringGetBytes", "a range outside the string");
  }
  if (encoding != kCFStringEncodingUTF8) return 0;
  MemoryRegistry::Conversion conversion(buffer, capacity);
  const CFIndex converted =
      from.isASCII()
          ? MemoryRegistry::convertASCII(from.text, range, capacity, conversion, buffer == nullptr)
          : MemoryRegistry::convert(from.text, range, lossByte, conversion);
  bytes = conversion.used();
  return converted;
}
