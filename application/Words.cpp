#include "application/Words.h"

#include <fmt/format.h>

namespace Program {

using namespace RAIDMonitoring;

const char* wordFor(RAIDLevel level) {
  switch (level) {
    case LevelStripe:
      return "stripe";
    case LevelMirror:
      return "mirror";
    case LevelConcat:
      return "concat";
    case LevelUnknown:
      break;
  }
  return "unknown";
}

const char* wordFor(RAIDVolumeState state) {
  switch (state) {
    case VolumeCrossDevice:
      return "cross-device";
    case VolumeFailed:
      return "failed";
    case VolumeTerminating:
      return "terminating";
    case VolumeInitializing:
      return "initializing";
    case VolumeOnline:
      return "online";
    case VolumeDegraded:
      return "degraded";
    case VolumeOffline:
      return "offline";
    case VolumeUnknown:
      break;
  }
  return "unknown";
}

const char* wordFor(MemberState state) {
  switch (state) {
    case MemberNotFound:
      return "not-found";
    case MemberOffline:
      return "offline";
    case MemberStandby:
      return "standby";
    case MemberOnline:
      return "online";
    case MemberFailed:
      return "failed";
    case MemberUnknown:
      break;
  }
  return "unknown";
}

std::string hexadecimal(std::uint64_t number) { return fmt::format("0x{:016x}", number); }

}  // namespace Program
