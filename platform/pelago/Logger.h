#pragma once

#include <functional>
#include <string>

#include "platform/pelago/PelagoExport.h"

// Has the compiler check the arguments behind a format: the places of the two, counted from 1.
#if defined(__GNUC__)
#define PELAGO_PRINTF(text, first) __attribute__((format(printf, text, first)))
#else
#define PELAGO_PRINTF(text, first)
#endif

namespace Pelago {

// Where diagnostics go. A line has a level, a category and a text, made with the C library's
// formatted print.
//
// Ownership: process-wide; the sink is copied in.
// Thread:    the event thread only.
// Failure:   a text that can't be formatted is logged as its bare format.
//
// \code
// #include <iostream>
//
// // The library's failures, and nothing else, into a log of one's own.
// void logFailures(std::ostream& log) {
//   using Pelago::Logger;
//   Logger::setSink(
//       [&log](Logger::Level level, const std::string& category, const std::string& text) {
//         if (level == Logger::Level::Message) log << category << ": " << text << '\n';
//       });
// }
// \endcode
class PELAGO_EXPORT Logger {
 public:
  // How a line was logged: by the operation of the same name below.
  enum class Level { Message, Debug, Info };
  // Called for each line, on the thread that logs, and not again until it has returned. What it
  // throws passes through whoever has logged.
  using Sink =
      std::function<void(Level level, const std::string& category, const std::string& text)>;

  // Ordinary diagnostics, above all failures.
  static void Message(const char* category, const char* format, ...) PELAGO_PRINTF(2, 3);
  // Progress.
  static void Debug(const char* category, const char* format, ...) PELAGO_PRINTF(2, 3);
  // What somebody who watches wants to know.
  static void Info(const char* category, const char* format, ...) PELAGO_PRINTF(2, 3);

  // Replaces the sink; an empty one restores the default, which writes
  // "LEVEL [CATEGORY] TEXT" lines to standard error.
  static void setSink(Sink sink);
};

// "message", "debug", "info".
PELAGO_EXPORT const char* nameOf(Logger::Level level);

}  // namespace Pelago
