#include "application/Commands.h"
#include "application/JsonModel.h"
#include "application/QuietRun.h"
#include "application/StandardOutput.h"
#include "application/TextSlots.h"

namespace Program {

void runSlots(const Options& options, StandardOutput& output) {
  const QuietRun run(options);
  std::vector<EnclosureSlots> enclosures;
  for (RAIDMonitoring::RAIDHost* host : run.hosts())
    enclosures.push_back(slotsOf(*host));
  output.write(options.json ? written(listing(enclosures)) + "\n"
                            : slotsText(screenOf(output), enclosures));
}

}  // namespace Program
