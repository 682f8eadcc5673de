#pragma once

namespace Program {

// How bad something is, in the words of monitoring plugins. In the order of precedence: the later
// one wins, so what could not be looked at hides nothing that is known to be bad.
enum class Severity { Ok, Unknown, Warning, Critical };

// "OK", "UNKNOWN", "WARNING", "CRITICAL".
const char* nameOf(Severity severity);

// 0, 3, 1, 2: what Nagios and Icinga read.
int pluginStatusOf(Severity severity);

}  // namespace Program
