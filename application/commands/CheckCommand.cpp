#include "application/commands/CheckCommand.h"

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <exception>
#include <new>
#include <optional>
#include <string_view>

#include "application/StandardError.h"
#include "application/StandardOutput.h"
#include "application/check/Assessment.h"
#include "application/check/PluginOutput.h"
#include "application/check/Silence.h"
#include "application/session/LookFailures.h"
#include "application/session/QuietRun.h"

namespace Program {
namespace {

ExitStatus statusFor(Severity severity) {
  return static_cast<ExitStatus>(pluginStatusOf(severity));
}

// Where the program has no live registry, a plugin that was not told what to look at would
// otherwise pass the built-in recording off as this computer's volumes.
std::string sourceOf(const RegistryOptions& options, const QuietRun& run) {
  if (options.registry) return *options.registry;
  const bool live = std::string_view(run.sourceKind()) == "live";
  return live ? "this computer" : "the built-in demonstration, not at this computer";
}

// No runner of plugins gives them a terminal. Who has one is shown how far a long replay has come.
Silence::Streams silenced() {
  return isatty(STDERR_FILENO) == 1 ? Silence::Streams::Output : Silence::Streams::ErrorsToo;
}

// Nobody read the answer, so it was not OK; but nothing makes it better than it is.
ExitStatus print(StandardOutput& output, std::string_view text, Severity severity) {
  output.write(text);
  output.close();
  if (output.failed()) {
    printError("raidmonitor: standard output: " + output.reason());
    return statusFor(std::max(severity, Severity::Unknown));
  }
  return statusFor(severity);
}

}  // namespace

const char* CheckCommand::details() const {
  return "Exit status: 0 OK, 1 WARNING, 2 CRITICAL, 3 UNKNOWN, as plugins have it; 3 also\n"
         "for wrong usage and for a registry that cannot be read. The first line names the\n"
         "worst volume and its bay, then comes a line for each volume.\n"
         "CRITICAL: a volume failed or offline, a disk failed, offline or missing, an\n"
         "expected volume missing. WARNING: a volume degraded, initializing or\n"
         "terminating, a disk of an online volume on standby or in an unknown state, an\n"
         "enclosure coming up. UNKNOWN: a volume that spans enclosures, nothing to look\n"
         "at (unless --expect-volumes 0), or something that kept it from looking.\n"
         "On the live registry it takes two seconds.";
}

void CheckCommand::addOptions(CLI::App& parser) {
  addRegistryOptions(parser, _registry, LogOnStandardError);
  addExpectationOptions(parser, _expected);
}

ExitStatus CheckCommand::run(StandardOutput& output) {
  try {
    return look(output);
  } catch (const std::bad_alloc&) {
    return print(output, "UNKNOWN - out of memory\n", Severity::Unknown);
  } catch (const std::exception& error) {
    return print(output, pluginFailure(error.what()), Severity::Unknown);
  }
}

ExitStatus CheckCommand::refuse(const std::string& reason, StandardOutput& output) const {
  return print(output, pluginFailure(reason) + "Try 'raidmonitor check --help'.\n",
               Severity::Unknown);
}

ExitStatus CheckCommand::look(StandardOutput& output) const {
  std::optional<Silence> silence;
  if (!_registry.log) silence.emplace(silenced());
  LookFailures failures;
  const QuietRun run(_registry, &failures);
  std::vector<EnclosureVolumes> enclosures;
  for (const RAIDMonitoring::RAIDHost* host : run.hosts())
    enclosures.push_back(volumesOf(*host));
  silence.reset();
  const std::vector<Finding> findings =
      assess(enclosures, _expected, failures.ofLastLook(run.session()));
  const Severity worst = findings.empty() ? Severity::Ok : findings.front().severity;
  return print(output, pluginOutput(findings, enclosures, _expected, sourceOf(_registry, run)),
               worst);
}

}  // namespace Program
