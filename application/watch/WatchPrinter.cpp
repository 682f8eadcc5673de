#include "application/watch/WatchPrinter.h"

namespace Program {

WatchPrinter::~WatchPrinter() = default;

}  // namespace Program
