#include "application/WatchPrinter.h"

namespace Program {

WatchPrinter::~WatchPrinter() = default;

}  // namespace Program
