#include "platform/registry/memory/CFNumbers.h"

#include <cmath>
#include <limits>

#include "platform/registry/memory/OperationLog.h"

namespace MemoryRegistry {

namespace {

constexpr double twoTo63 = 9223372036854775808.0;

template <class Integer>
Boolean write(const Whole& whole, void* target) {
  const auto value = static_cast<Integer>(whole.value);  // truncated
  *static_cast<Integer*>(target) = value;
  return whole.exact && value == whole.value ? 1 : 0;
}

Boolean writeReal(const __CFNumber& number, void* target) {
  const double value = number.isReal() ? number.real : static_cast<double>(number.integer);
  *static_cast<double*>(target) = value;
  if (number.isReal()) return 1;
  return value < twoTo63 && static_cast<std::int64_t>(value) == number.integer ? 1 : 0;
}

}  // namespace

Whole wholeOf(const __CFNumber& number) {
  if (!number.isReal()) return {number.integer, true};
  const double real = number.real;
  if (std::isnan(real)) return {0, false};
  if (real >= twoTo63) return {std::numeric_limits<std::int64_t>::max(), false};
  if (real < -twoTo63) return {std::numeric_limits<std::int64_t>::min(), false};
  return {static_cast<std::int64_t>(real), std::trunc(real) == real};
}

Owned<__CFNumber> makeInteger(std::int64_t value, CFNumberType type) {
  auto number = make<__CFNumber>();
  number->type = type;
  number->integer = value;
  return number;
}

Owned<__CFNumber> makeReal(double value) {
  auto number = make<__CFNumber>();
  number->type = kCFNumberFloat64Type;
  number->real = value;
  return number;
}

}  // namespace MemoryRegistry

using MemoryRegistry::Operation;
using MemoryRegistry::OperationLog;

CFNumberRef CFNumberCreate(CFAllocatorRef, CFNumberType type, const void* value) {
  if (OperationLog::instance().enter(Operation::CFNumberCreate)) return nullptr;
  if (value == nullptr) MemoryRegistry::trap("CFNumberCreate", "null where a value is required");
  switch (type) {
    case kCFNumberSInt32Type:
    case kCFNumberIntType:
      return MemoryRegistry::makeInteger(*static_cast<const std::int32_t*>(value),
                                         kCFNumberSInt32Type)
          .release();
    case kCFNumberSInt64Type:
    case kCFNumberLongLongType:
      return MemoryRegistry::makeInteger(*static_cast<const std::int64_t*>(value),
                                         kCFNumberSInt64Type)
          .release();
    case kCFNumberFloat64Type:
      return MemoryRegistry::makeReal(*static_cast<const double*>(value)).release();
    default:
      MemoryRegistry::trap("CFNumberCreate", "a type of number that is not known");
  }
}

Boolean CFNumberGetValue(CFNumberRef number, CFNumberType type, void* value) {
  if (OperationLog::instance().enter(Operation::CFNumberGetValue)) return 0;
  const auto& read = MemoryRegistry::require<__CFNumber>(number, MemoryRegistry::CFType::NumberType,
                                                         "CFNumberGetValue");
  if (value == nullptr) MemoryRegistry::trap("CFNumberGetValue", "null where a value is required");
  switch (type) {
    case kCFNumberSInt32Type:
    case kCFNumberIntType:
      return MemoryRegistry::write<std::int32_t>(MemoryRegistry::wholeOf(read), value);
    case kCFNumberSInt64Type:
    case kCFNumberLongLongType:
      return MemoryRegistry::write<std::int64_t>(MemoryRegistry::wholeOf(read), value);
    case kCFNumberFloat64Type:
      return MemoryRegistry::writeReal(read, value);
    default:
      MemoryRegistry::trap("CFNumberGetValue", "a type of number that is not known");
  }
}

Boolean CFNumberIsFloatType(CFNumberRef number) {
  OperationLog::instance().count(Operation::CFNumberIsFloatType);
  const auto& read = MemoryRegistry::require<__CFNumber>(number, MemoryRegistry::CFType::NumberType,
                                                         "CFNumberIsFloatType");
  return read.isReal() ? 1 : 0;
}
