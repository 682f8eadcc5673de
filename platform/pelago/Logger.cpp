#include "platform/pelago/Logger.h"

#include <cstdarg>
#include <cstdio>
#include <memory>
#include <utility>

namespace Pelago {

namespace {

void writeToStandardError(Logger::Level level, const std::string& category,
                          const std::string& text) {
  // In one call, so that lines of different processes do not mix.
  std::fputs((std::string(nameOf(level)) + " [" + category + "] " + text + "\n").c_str(), stderr);
}

// Shared with the call that is going on, because a sink may replace itself. Never destroyed: what
// ends after main() may still log.
std::shared_ptr<const Logger::Sink>& currentSink() {
  static auto& sink = *new std::shared_ptr<const Logger::Sink>(
      std::make_shared<const Logger::Sink>(writeToStandardError));
  return sink;
}

PELAGO_PRINTF(1, 0) std::string formatted(const char* format, std::va_list arguments) {
  std::va_list again;
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, again);
  va_end(again);
  if (length < 0) return format;
  std::string text(static_cast<std::size_t>(length), '\0');
  std::vsnprintf(text.data(), text.size() + 1, format, arguments);
  return text;
}

PELAGO_PRINTF(3, 0)
void log(Logger::Level level, const char* category, const char* format, std::va_list arguments) {
  const std::shared_ptr<const Logger::Sink> sink = currentSink();
  (*sink)(level, category, formatted(format, arguments));
}

// Ends the list however the scope is left: a sink may throw.
struct Ended {
  std::va_list& arguments;
  ~Ended() { va_end(arguments); }
};

}  // namespace

void Logger::Message(const char* category, const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const Ended ended{arguments};
  log(Level::Message, category, format, arguments);
}

void Logger::Debug(const char* category, const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const Ended ended{arguments};
  log(Level::Debug, category, format, arguments);
}

void Logger::Info(const char* category, const char* format, ...) {
  std::va_list arguments;
  va_start(arguments, format);
  const Ended ended{arguments};
  log(Level::Info, category, format, arguments);
}

void Logger::setSink(Sink sink) {
  if (!sink) sink = writeToStandardError;
  currentSink() = std::make_shared<const Sink>(std::move(sink));
}

const char* nameOf(Logger::Level level) {
  switch (level) {
    case Logger::Level::Debug:
      return "debug";
    case Logger::Level::Info:
      return "info";
    case Logger::Level::Message:
      break;
  }
  return "message";
}

}  // namespace Pelago
