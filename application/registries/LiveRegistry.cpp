// The registries of a program that is built on the operating system's own: that one, and no other.

#include "application/registries/LiveSource.h"
#include "platform/pelago/SteadyClock.h"

namespace Program {

std::unique_ptr<Source> openRegistry(const std::string& path, bool) {
  throw SourceError(path + ": this program was built for the live registry only");
}

std::unique_ptr<Source> openDefaultRegistry(bool) {
  return std::make_unique<LiveSource>(std::make_unique<Pelago::SteadyClock>());
}

}  // namespace Program
