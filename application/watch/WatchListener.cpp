#include "application/watch/WatchListener.h"

namespace Program {

WatchListener::~WatchListener() = default;

}  // namespace Program
