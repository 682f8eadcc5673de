#include "application/text/TextEnclosures.h"

#include <algorithm>
#include <iterator>

#include "application/Words.h"
#include "application/text/TextModel.h"

namespace Program {

void TextEnclosures::learn(const DeviceSnapshot& enclosure) {
  if (isNamed(enclosure)) _names[enclosure.uid] = enclosureName(enclosure);
}

void TextEnclosures::forgetOthers(const std::vector<DeviceSnapshot>& connected) {
  for (auto name = _names.begin(); name != _names.end();) {
    const bool kept =
        std::any_of(connected.begin(), connected.end(),
                    [&name](const DeviceSnapshot& device) { return device.uid == name->first; });
    name = kept ? std::next(name) : _names.erase(name);
  }
}

std::string TextEnclosures::nameOf(const DeviceSnapshot& enclosure) const {
  const std::string name = enclosureName(enclosure);
  const bool shared = std::any_of(_names.begin(), _names.end(), [&](const auto& other) {
    return other.first != enclosure.uid && other.second == name;
  });
  return shared || !isNamed(enclosure) ? name + " " + hexadecimal(enclosure.uid) : name;
}

std::string TextEnclosures::nameAndUID(std::uint64_t uid) const {
  const auto name = _names.find(uid);
  return (name == _names.end() ? "enclosure" : name->second) + " " + hexadecimal(uid);
}

}  // namespace Program
