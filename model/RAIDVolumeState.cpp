#include "model/RAIDVolumeState.h"

namespace RAIDMonitoring {

namespace {

struct Row {
  const char* text;
  RAIDVolumeState state;
};
constexpr Row Rows[] = {{"Failed", VolumeFailed},
                        {"Terminating", VolumeTerminating},
                        {"Initializing", VolumeInitializing},
                        {"Online", VolumeOnline},
                        {"Degraded", VolumeDegraded},
                        {"Offline", VolumeOffline}};

}  // namespace

void readVolumeState(const std::string& status, RAIDVolumeState& state) {
  for (const Row& row : Rows) {
    if (status == row.text) state = row.state;
  }
}

}  // namespace RAIDMonitoring
