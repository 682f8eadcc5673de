#pragma once

#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

#include "platform/pelago/Logger.h"

namespace TestSupport {

struct LogLine {
  Pelago::Logger::Level level;
  std::string category;
  std::string text;
};

bool operator==(const LogLine& a, const LogLine& b);
std::ostream& operator<<(std::ostream& stream, const LogLine& line);

// A line as it is expected, in the category that nearly everything is logged under.
LogLine message(std::string text, std::string category = "RAIDMonitor");
LogLine debug(std::string text, std::string category = "RAIDMonitor");
LogLine info(std::string text, std::string category = "RAIDMonitor");

// Keeps every line logged while it lives; the default sink is back afterwards.
class CapturingLog {
 public:
  CapturingLog();
  ~CapturingLog();
  CapturingLog(const CapturingLog&) = delete;
  CapturingLog& operator=(const CapturingLog&) = delete;

  const std::vector<LogLine>& lines() const { return _lines; }
  std::size_t count(const LogLine& line) const;
  void clear() { _lines.clear(); }

  // The lines up to now, which are forgotten.
  std::vector<LogLine> take();

 private:
  std::vector<LogLine> _lines;
};

}  // namespace TestSupport
