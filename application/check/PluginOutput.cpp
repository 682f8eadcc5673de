#include "application/check/PluginOutput.h"

#include <fmt/format.h>

#include <algorithm>

#include "application/check/FindingText.h"
#include "application/check/PerformanceData.h"
#include "application/text/TextCharacters.h"

namespace Program {
namespace {

std::string statusLine(Severity severity, const std::string& text) {
  return std::string(nameOf(severity)) + " - " + pluginText(text);
}

Severity worstOf(const std::vector<Finding>& findings) {
  return findings.empty() ? Severity::Ok : findings.front().severity;
}

std::size_t troublesIn(const std::vector<Finding>& findings) {
  return static_cast<std::size_t>(
      std::count_if(findings.begin(), findings.end(),
                    [](const Finding& finding) { return finding.severity != Severity::Ok; }));
}

std::string headline(const std::vector<Finding>& findings, std::size_t volumes) {
  const std::size_t troubles = troublesIn(findings);
  if (troubles == 0 && volumes == 0) return "no RAID volume is connected, and none is expected";
  if (troubles == 0) return countOf(volumes, "volume") + " online";
  std::string text = findings.front().headline;
  if (troubles > 1) text += fmt::format(" (and {} more)", troubles - 1);
  return text;
}

}  // namespace

std::string pluginText(std::string_view text) {
  std::string line = printable(text, Charset::Unicode);
  for (std::size_t bar = line.find('|'); bar != std::string::npos; bar = line.find('|', bar)) {
    line.replace(bar, 1, "¦");
  }
  return line;
}

std::string pluginFailure(const std::string& reason) {
  return statusLine(Severity::Unknown, reason) + "\n";
}

std::string pluginOutput(const std::vector<Finding>& findings,
                         const std::vector<EnclosureVolumes>& enclosures,
                         const Expectations& expected, const std::string& source) {
  std::string text = statusLine(worstOf(findings), headline(findings, volumesIn(enclosures))) +
                     " | " + performanceData(enclosures, expected) + "\n";
  for (const Finding& finding : findings)
    text += std::string(nameOf(finding.severity)) + ": " + pluginText(finding.details) + "\n";
  return text + "Looked at " + pluginText(source) + "\n";
}

}  // namespace Program
