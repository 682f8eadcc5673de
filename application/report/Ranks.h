#pragma once

#include "model/MemberState.h"
#include "model/RAIDVolumeState.h"

namespace Program {

// How bad a state is; 0 is well.
int rankOf(RAIDMonitoring::RAIDVolumeState state);
int rankOf(RAIDMonitoring::MemberState state);

}  // namespace Program
