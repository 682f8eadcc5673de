#include "application/watch/JsonWatch.h"

#include "application/json/JsonEvent.h"
#include "application/watch/WatchOutput.h"

namespace Program {

void JsonWatch::heard(const WatchEvent& event) { _output.writeLine(jsonOf(event)); }

}  // namespace Program
