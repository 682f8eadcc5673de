#include "application/report/Ranks.h"

namespace Program {

using namespace RAIDMonitoring;

int rankOf(RAIDVolumeState state) {
  switch (state) {
    case VolumeFailed:
      return 6;
    case VolumeOffline:
      return 5;
    case VolumeDegraded:
      return 3;
    case VolumeTerminating:
    case VolumeCrossDevice:
    case VolumeUnknown:
      return 2;
    case VolumeInitializing:
      return 1;
    case VolumeOnline:
      break;
  }
  return 0;
}

int rankOf(MemberState state) {
  switch (state) {
    case MemberFailed:
      return 5;
    case MemberNotFound:
      return 4;
    case MemberOffline:
      return 3;
    case MemberUnknown:
      return 2;
    case MemberStandby:
      return 1;
    case MemberOnline:
      break;
  }
  return 0;
}

}  // namespace Program
