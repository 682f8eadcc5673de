#include "platform/registry/memory/CFObjects.h"
#include "platform/registry/memory/OperationLog.h"

using MemoryRegistry::CFType;
using MemoryRegistry::Operation;
using MemoryRegistry::OperationLog;

Boolean CFBooleanGetValue(CFBooleanRef boolean) {
  OperationLog::instance().count(Operation::CFBooleanGetValue);
  return MemoryRegistry::require<__CFBoolean>(boolean, CFType::BooleanType, "CFBooleanGetValue")
                 .value
             ? 1
             : 0;
}

CFIndex CFDataGetLength(CFDataRef data) {
  OperationLog::instance().count(Operation::CFDataGetLength);
  const auto& read = MemoryRegistry::require<__CFData>(data, CFType::DataType, "CFDataGetLength");
  return static_cast<CFIndex>(read.bytes.size());
}

const UInt8* CFDataGetBytePtr(CFDataRef data) {
  OperationLog::instance().count(Operation::CFDataGetBytePtr);
  return MemoryRegistry::require<__CFData>(data, CFType::DataType, "CFDataGetBytePtr").bytes.data();
}
