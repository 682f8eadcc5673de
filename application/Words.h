#pragma once

#include <cstdint>
#include <string>

#include "model/MemberState.h"
#include "model/RAIDLevel.h"
#include "model/RAIDVolumeState.h"

namespace Program {

// The words that other programs read. A value that has none is "unknown".
const char* wordFor(RAIDMonitoring::RAIDLevel level);
const char* wordFor(RAIDMonitoring::RAIDVolumeState state);
const char* wordFor(RAIDMonitoring::MemberState state);

// "0x" and 16 hexadecimal digits, lower case.
std::string hexadecimal(std::uint64_t number);

}  // namespace Program
