#pragma once

#include <cstddef>
#include <string>

namespace MemoryRegistry {

bool isUTF8(const char* text, std::size_t size);

std::string decimal(std::size_t value);
// "0x" and hexadecimal digits without leading zeros.
std::string hexadecimal(unsigned long long value);

}  // namespace MemoryRegistry
