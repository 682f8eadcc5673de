#include "model/RAIDMember.h"

namespace RAIDMonitoring {

RAIDMember::RAIDMember() = default;

RAIDMember::~RAIDMember() = default;

void RAIDMember::refresh() {}

}  // namespace RAIDMonitoring
