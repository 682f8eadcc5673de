#include "application/commands/SlotsCommand.h"

#include <CLI/CLI.hpp>

#include "application/StandardOutput.h"
#include "application/json/JsonModel.h"
#include "application/session/QuietRun.h"
#include "application/text/TextSlots.h"

namespace Program {

const char* SlotsCommand::details() const {
  static const std::string text =
      std::string(
          "A bay marked '!' has a disk that has failed, is offline or absent; a line below\n"
          "names it. In one marked '*' no disk of a volume is seen: which sat there follows\n"
          "from the other disk's bay.\n") +
      EndStateDetails;
  return text.c_str();
}

void SlotsCommand::addOptions(CLI::App& parser) {
  addRegistryOptions(parser, _registry, LogOnStandardError);
  parser.add_flag("--json", _json, "JSON for programs");
  addScreenOptions(parser, _screen);
}

ExitStatus SlotsCommand::run(StandardOutput& output) {
  const QuietRun run(_registry);
  std::vector<EnclosureSlots> enclosures;
  for (RAIDMonitoring::RAIDHost* host : run.hosts())
    enclosures.push_back(slotsOf(*host));
  output.write(_json ? written(listing(enclosures)) + "\n"
                     : slotsText(screenOf(output, _screen), enclosures));
  return Success;
}

}  // namespace Program
