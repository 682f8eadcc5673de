#include "application/Commands.h"
#include "application/JsonModel.h"
#include "application/QuietRun.h"
#include "application/StandardOutput.h"
#include "application/TextList.h"

namespace Program {

void runList(const Options& options, StandardOutput& output) {
  const QuietRun run(options);
  std::vector<EnclosureVolumes> enclosures;
  for (const RAIDMonitoring::RAIDHost* host : run.hosts())
    enclosures.push_back(volumesOf(*host));
  output.write(options.json ? written(listing(enclosures)) + "\n"
                            : listText(screenOf(output), enclosures));
}

}  // namespace Program
