#include "model/RAIDMember.h"

namespace RAIDMonitoring {

RAIDMember::RAIDMember() : _state(MemberUnknown), _volume(nullptr) {}

RAIDMember::~RAIDMember() = default;

void RAIDMember::refresh() {}

}  // namespace RAIDMonitoring
