#include "model/MemberState.h"

namespace RAIDMonitoring {

namespace {

struct Row {
  const char* text;
  MemberState state;
};
constexpr Row Rows[] = {{"Online", MemberOnline},
                        {"Failed", MemberFailed},
                        {"Offline", MemberOffline},
                        {"Standby", MemberStandby}};

}  // namespace

void readMemberState(const std::string& status, MemberState& state) {
  for (const Row& row : Rows) {
    if (status == row.text) state = row.state;
  }
}

}  // namespace RAIDMonitoring
