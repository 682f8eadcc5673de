#pragma once

#include <cstdint>
#include <string>

namespace RAIDMonitoring {

// What a member disk is known to be in. The numbers are part of the binary interface.
//
// \code
// const char* wordFor(RAIDMonitoring::MemberState state) {
//   switch (state) {
//     case RAIDMonitoring::MemberNotFound: return "missing";
//     case RAIDMonitoring::MemberUnknown: return "unknown";
//     case RAIDMonitoring::MemberOffline: return "offline";
//     case RAIDMonitoring::MemberStandby: return "standby";
//     case RAIDMonitoring::MemberOnline: return "online";
//     case RAIDMonitoring::MemberFailed: return "failed";
//   }
//   return "unknown";
// }
// \endcode
enum MemberState : std::int32_t {
  MemberNotFound = -2,  // its registry entry was not found
  MemberUnknown = -1,   // no known status has been read yet
  MemberOffline = 0,
  MemberStandby = 1,
  MemberOnline = 2,
  MemberFailed = 3,
};

// Stores in `state` what a member's status text means; a text that is none of the four leaves it
// alone. Any thread; nothing fails.
void readMemberState(const std::string& status, MemberState& state);

}  // namespace RAIDMonitoring
