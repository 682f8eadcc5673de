#include "application/commands/ReportCommand.h"

#include <CLI/CLI.hpp>
#include <filesystem>

#include "application/check/Silence.h"
#include "application/files/AtomicFile.h"
#include "application/report/Page.h"
#include "application/report/Story.h"
#include "application/session/QuietRun.h"

namespace Program {
namespace {

// The last part of the registry's path: where it lay is nobody's business who is sent the page.
std::string titleOf(const RegistryOptions& options, const Source& source) {
  if (!options.registry) return source.end() ? "built-in recording" : "live registry";
  const std::filesystem::path path(*options.registry);
  const std::filesystem::path last = path.has_filename() ? path : path.parent_path();
  return last.filename().string();
}

}  // namespace

const char* ReportCommand::details() const {
  return "The page stands for itself: one file, nothing is loaded from anywhere. It shows\n"
         "the bays at any moment, the states of volumes and disks over time, the events\n"
         "and the library's log. FILE appears whole or not at all.\n"
         "On the live registry --until says for how long to watch; SIGINT and SIGTERM end\n"
         "that early, and the page shows what was seen until then.";
}

void ReportCommand::addOptions(CLI::App& parser) {
  addSourceOptions(parser, _registry);
  parser.add_option("--output", _file, "The page to write")
      ->type_name("FILE")
      ->required()
      ->check(reasonAgainstEmptyName);
}

ExitStatus ReportCommand::run(StandardOutput& output) {
  const std::unique_ptr<Source> source = sourceFor(_registry);
  const std::optional<Pelago::Milliseconds> end = _registry.until ? _registry.until : source->end();
  if (!end) {
    return refuse("--until is required on the live registry", output);
  }
  { const AtomicFile writable(_file); }  // or throws now, not after a long replay
  // What the library prints is no news to who wants a page, which has its log.
  const Silence silence(Silence::Streams::Output);
  const Story story = storyOf(*source, end);
  AtomicFile::replace(_file, reportPage(story, titleOf(_registry, *source)));
  return Success;
}

}  // namespace Program
