#include "tests/support/CapturingLog.h"

#include <algorithm>
#include <utility>

namespace TestSupport {

using Pelago::Logger;

bool operator==(const LogLine& a, const LogLine& b) {
  return a.level == b.level && a.category == b.category && a.text == b.text;
}

std::ostream& operator<<(std::ostream& stream, const LogLine& line) {
  return stream << Pelago::nameOf(line.level) << " [" << line.category << "] " << line.text;
}

LogLine message(std::string text, std::string category) {
  return {Logger::Level::Message, std::move(category), std::move(text)};
}

LogLine debug(std::string text, std::string category) {
  return {Logger::Level::Debug, std::move(category), std::move(text)};
}

LogLine info(std::string text, std::string category) {
  return {Logger::Level::Info, std::move(category), std::move(text)};
}

CapturingLog::CapturingLog() {
  Logger::setSink(
      [this](Logger::Level level, const std::string& category, const std::string& text) {
        _lines.push_back({level, category, text});
      });
}

CapturingLog::~CapturingLog() { Logger::setSink({}); }

std::size_t CapturingLog::count(const LogLine& line) const {
  return static_cast<std::size_t>(std::count(_lines.begin(), _lines.end(), line));
}

std::vector<LogLine> CapturingLog::take() { return std::exchange(_lines, {}); }

}  // namespace TestSupport
