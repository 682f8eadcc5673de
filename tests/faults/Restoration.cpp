#include "tests/faults/Restoration.h"

#include "model/MemberState.h"

namespace FaultTest {
namespace {

using RAIDMonitoring::VolumeCrossDevice;

class Comparison {
 public:
  Comparison(const View& clean, const View& faulted, const std::set<std::string>& unreadable,
             bool firstRefresh)
      : _clean(clean), _faulted(faulted), _unreadable(unreadable), _firstRefresh(firstRefresh) {}

  std::vector<std::string> work() {
    for (const auto& [uid, host] : _clean.hosts) {
      const auto found = _faulted.hosts.find(uid);
      if (found == _faulted.hosts.end()) {
        complain(uid, "is missing");
      } else if (isImpaired(host, found->second)) {
        _impaired = true;
      }
    }
    if (_faulted.hosts.size() > _clean.hosts.size()) complain(0, "and others: too many");
    for (const auto& [uid, host] : _clean.hosts) {
      const auto found = _faulted.hosts.find(uid);
      if (found == _faulted.hosts.end() || isImpaired(host, found->second)) continue;
      compare(uid, host.volumes, found->second.volumes);
    }
    if (!_impaired && !isAnnouncedAlike())
      complain(0, "and others: announced " + textOf(_faulted.announced) + " instead of " +
                      textOf(_clean.announced));
    return _lines;
  }

 private:
  using Volumes = std::map<std::string, VolumeView>;

  // No switch at arrival, or another bridge. None at all, with a switch, is no excuse.
  static bool isImpaired(const HostView& clean, const HostView& faulted) {
    return clean.status != faulted.status ||
           (clean.bridge != faulted.bridge && !faulted.bridge.empty());
  }

  bool isAnnouncedAlike() const {
    std::set<std::string> announced = _faulted.announced;
    if (_firstRefresh) announced.insert(_faulted.present.begin(), _faulted.present.end());
    return announced == _clean.announced;
  }

  void complain(std::uint64_t uid, const std::string& text) {
    _lines.push_back("device " + std::to_string(uid) + " " + text);
  }

  void compare(std::uint64_t uid, const Volumes& clean, const Volumes& faulted) {
    for (const auto& [uuid, volume] : clean) {
      const auto found = faulted.find(uuid);
      if (found == faulted.end()) {
        complain(uid, "lacks " + uuid);
      } else if (!isRestored(uuid, volume, found->second)) {
        complain(uid, "has " + uuid + " in state " + std::to_string(found->second.state) +
                          " instead of " + std::to_string(volume.state) + ", level " +
                          std::to_string(found->second.level) + "/" + std::to_string(volume.level) +
                          membersText(volume, found->second));
      }
    }
    if (faulted.size() > clean.size()) complain(uid, "has volumes too much");
  }

  static std::string textOf(const std::set<std::string>& uuids) {
    std::string text;
    for (const auto& uuid : uuids)
      text += "'" + uuid + "' ";
    return text;
  }

  static std::string membersText(const VolumeView& clean, const VolumeView& faulted) {
    std::string text;
    for (const auto& [uuid, state] : clean.members)
      text += " " + uuid + "=" + std::to_string(state);
    text += " |";
    for (const auto& [uuid, state] : faulted.members)
      text += " " + uuid + "=" + std::to_string(state);
    return text;
  }

  bool isRestored(const std::string& set, const VolumeView& clean, VolumeView faulted) const {
    const bool mark = clean.state == VolumeCrossDevice || faulted.state == VolumeCrossDevice;
    if (mark && (_firstRefresh || _impaired)) faulted.state = clean.state;
    if (_unreadable.count(set) != 0) {
      faulted.state = clean.state;
      faulted.level = clean.level;
    }
    for (auto& [uuid, state] : faulted.members) {
      const auto wanted = clean.members.find(uuid);
      if (wanted == clean.members.end()) return false;
      const bool asSet = _firstRefresh && wanted->second == RAIDMonitoring::MemberNotFound;
      if (asSet || _unreadable.count(uuid) != 0) state = wanted->second;
    }
    return clean == faulted;
  }

  const View& _clean;
  const View& _faulted;
  const std::set<std::string>& _unreadable;
  bool _firstRefresh;
  bool _impaired = false;
  std::vector<std::string> _lines;
};

}  // namespace

std::vector<std::string> differences(const View& clean, const View& faulted,
                                     const std::set<std::string>& unreadable, bool firstRefresh) {
  return Comparison(clean, faulted, unreadable, firstRefresh).work();
}

std::vector<std::string> unreported(const View& view) {
  std::vector<std::string> lines;
  for (const auto& uuid : view.present) {
    if (view.announced.count(uuid) == 0) lines.push_back("there and not announced: " + uuid);
  }
  for (const auto& uuid : view.announced) {
    if (view.present.count(uuid) == 0) lines.push_back("announced and not there: " + uuid);
  }
  return lines;
}

}  // namespace FaultTest
