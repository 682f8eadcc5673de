#pragma once

#include <string_view>

namespace Program {

// Standard error: lines for people, and what the library prints on standard output.
//
// Names and texts in it come from registries and files, which nobody vouches for. A terminal gets
// them without anything that it would obey; a pipe or a file gets what the library prints as it is.
//
// Ownership: the process's, like the stream.
// Thread:    one thread.
// Failure:   what can't be written is lost.

// One line, printable whatever it says: see TextCharacters.h.
void printError(std::string_view line);

// From now on, what is printed on standard output comes out on standard error: at once; or, on a
// terminal, with passOnPrinted(), looked through and each line marked as the library's.
void divertStandardOutput();

// What has been printed until now. printError() does so first; callers that print elsewhere do it
// to keep the order.
void passOnPrinted();

}  // namespace Program
