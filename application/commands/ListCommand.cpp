#include "application/commands/ListCommand.h"

#include <CLI/CLI.hpp>

#include "application/StandardOutput.h"
#include "application/json/JsonModel.h"
#include "application/session/QuietRun.h"
#include "application/text/TextList.h"

namespace Program {

const char* ListCommand::details() const { return EndStateDetails; }

void ListCommand::addOptions(CLI::App& parser) {
  addRegistryOptions(parser, _registry, LogOnStandardError);
  parser.add_flag("--json", _json, "JSON for programs");
  addScreenOptions(parser, _screen);
}

ExitStatus ListCommand::run(StandardOutput& output) {
  const QuietRun run(_registry);
  std::vector<EnclosureVolumes> enclosures;
  for (const RAIDMonitoring::RAIDHost* host : run.hosts())
    enclosures.push_back(volumesOf(*host));
  output.write(_json ? written(listing(enclosures)) + "\n"
                     : listText(screenOf(output, _screen), enclosures));
  return Success;
}

}  // namespace Program
