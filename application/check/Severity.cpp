#include "application/check/Severity.h"

namespace Program {

const char* nameOf(Severity severity) {
  switch (severity) {
    case Severity::Ok:
      return "OK";
    case Severity::Warning:
      return "WARNING";
    case Severity::Critical:
      return "CRITICAL";
    case Severity::Unknown:
      break;
  }
  return "UNKNOWN";
}

int pluginStatusOf(Severity severity) {
  switch (severity) {
    case Severity::Ok:
      return 0;
    case Severity::Warning:
      return 1;
    case Severity::Critical:
      return 2;
    case Severity::Unknown:
      break;
  }
  return 3;
}

}  // namespace Program
