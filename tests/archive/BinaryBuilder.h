#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Writes binary property lists byte by byte, wrong ones included.
struct BinaryBuilder {
  std::vector<std::string> objects;  // by number; the first is the top
  std::size_t referenceSize = 1;
  std::size_t offsetSize = 4;

  std::string build() const {
    std::vector<std::uint64_t> offsets;
    std::string bytes = "bplist00";
    for (const std::string& object : objects) {
      offsets.push_back(bytes.size());
      bytes += object;
    }
    return finish(bytes, offsets);
  }

  std::string finish(std::string bytes, const std::vector<std::uint64_t>& offsets) const {
    const std::size_t table = bytes.size();
    for (const std::uint64_t offset : offsets)
      bytes += number(offset, offsetSize);
    return bytes + trailer(offsetSize, referenceSize, offsets.size(), 0, table);
  }

  static std::string trailer(std::uint64_t offsets, std::uint64_t references, std::uint64_t count,
                             std::uint64_t top, std::uint64_t table) {
    return std::string(6, '\0') + number(offsets, 1) + number(references, 1) + number(count, 8) +
           number(top, 8) + number(table, 8);
  }

  static std::string number(std::uint64_t value, std::size_t size) {
    std::string bytes;
    for (std::size_t i = size; i-- > 0;) {
      bytes += static_cast<char>(i < 8 ? value >> (8 * i) & 0xFFU : 0);
    }
    return bytes;
  }

  static std::string text(const std::string& value) {
    return "\x5F\x12" + number(value.size(), 4) + value;
  }
};
