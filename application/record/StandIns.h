#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace Program {

// What stands for what identifies: the same for the same original as long as this lives, another
// for another, and worked out from nothing but the order of asking and from chance, so that nobody
// can work it back.
//
// A stand-in is as long as its original: paths that are too long stay so. UUIDs and numbers keep
// their order among themselves, because what is told follows it.
class StandIns {
 public:
  // A text of the length given, beginning with `kind` where there is room for it.
  const std::string& forText(const std::string& original, std::string_view kind);

  // `digits`: 32 hexadecimal ones in lower case, and so is the answer. Nothing but 0 or F stays.
  std::string forUUID(const std::string& digits);

  // Numbers below 256, which count or number something, stay; others keep to their half, below 2^31
  // or above.
  std::uint64_t forNumber(std::uint64_t original);

  using Address = std::array<std::uint8_t, 6>;
  // Addresses of nobody, and of everybody, stay.
  Address forAddress(const Address& original);

  // Those asked for so far, to be found again wherever they stand.
  const std::map<std::string, std::string>& texts() const { return _texts; }
  const std::map<std::uint64_t, std::uint64_t>& numbers() const { return _numbers; }
  const std::map<Address, Address>& addresses() const { return _addresses; }
  // By their digits: what stands for a UUID begins with these.
  std::vector<std::string> uuids() const;

 private:
  template <class Key>
  std::uint64_t between(const std::map<Key, std::uint64_t>& known, const Key& original,
                        std::uint64_t lowest, std::uint64_t highest);
  bool isTaken(const std::string& candidate) const;

  std::random_device _random;
  std::map<std::string, std::string> _texts;
  std::map<std::string, std::string> _originals;  // by stand-in
  std::map<std::string, std::uint64_t> _uuidStarts;
  std::map<std::string, std::string> _uuids;
  std::map<std::uint64_t, std::uint64_t> _numbers;
  std::map<Address, Address> _addresses;
  std::uint64_t _textCount = 0;
};

}  // namespace Program
