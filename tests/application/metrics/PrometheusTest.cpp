#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "tests/application/support/Program.h"
#include "tests/application/support/RenamedRecording.h"
#include "tests/application/support/TemporaryFolder.h"
#include "tests/application/support/Tool.h"

namespace ProgramTest {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using namespace std::chrono_literals;

std::string onLoopback(int port) { return "127.0.0.1:" + std::to_string(port); }

// A node exporter and a Prometheus as an administrator has them, but quicker, on the loopback.
class PrometheusTest : public testing::Test {
 protected:
  PrometheusTest() {
    std::filesystem::create_directory(folder.file("textfiles"));
    std::filesystem::copy(
        std::string(RAIDMONITOR_SOURCES) + "/packaging/prometheus/raidmonitor.rules.yml",
        folder.file("rules.yml"));
    folder.write("prometheus.yml",
                 "global:\n  scrape_interval: 250ms\n  scrape_timeout: 250ms\n"
                 "  evaluation_interval: 250ms\nrule_files: [rules.yml]\n"
                 "scrape_configs:\n  - job_name: node\n    static_configs:\n"
                 "      - targets: ['" +
                     onLoopback(exporterPort) + "']\n");
  }

  // A line for each sample of the answer.
  std::vector<std::string> query(const std::string& expression) const {
    std::vector<std::string> lines =
        linesOf(runTool({"promtool", "query", "instant", "http://" + onLoopback(prometheusPort),
                         expression})
                    .out);
    lines.erase(std::remove(lines.begin(), lines.end(), ""), lines.end());
    return lines;
  }

  bool comesToHold(const std::string& expression) const {
    return waitUntil([&] { return !query(expression).empty(); }, 30s);
  }

  const TemporaryFolder folder;
  const std::string file = folder.file("textfiles/raidmonitor.prom");
  const int exporterPort = freePort();
  const int prometheusPort = freePort();
};

// The recording's first second is fine; then a disk is pulled.
std::string incidentIn(const TemporaryFolder& folder) {
  const std::string recorded = recording("two-bay-mirror-degrades");
  std::filesystem::create_directory(folder.file("incident"));
  std::filesystem::copy(recorded + "/0.plist", folder.file("incident/0.plist"));
  std::filesystem::copy(recorded + "/5400.plist", folder.file("incident/1000.plist"));
  return folder.file("incident");
}

TEST_F(PrometheusTest, AReplayIsScrapedUntilTheAlertFires) {
  const std::string incident = incidentIn(folder);
  ASSERT_EQ(0, run({"metrics", "--registry", incident, "--until", "0", "--output", file}).status);
  const RunningTool exporter(
      {"prometheus-node-exporter", "--collector.disable-defaults", "--collector.textfile",
       "--collector.textfile.directory=" + folder.file("textfiles"),
       "--web.listen-address=" + onLoopback(exporterPort)},
      folder.file("exporter.log"));
  const RunningTool prometheus({"prometheus", "--config.file=" + folder.file("prometheus.yml"),
                                "--storage.tsdb.path=" + folder.file("data"),
                                "--web.listen-address=" + onLoopback(prometheusPort)},
                               folder.file("prometheus.log"));

  ASSERT_TRUE(comesToHold("raidmonitor_volume_state{name='Projects',state='online'} == 1"))
      << contentOf(folder.file("exporter.log")) << contentOf(folder.file("prometheus.log"));
  EXPECT_THAT(query("ALERTS{alertname='RAIDVolumeDegraded'}"), IsEmpty());
  EXPECT_THAT(query("node_textfile_scrape_error == 1"), IsEmpty());

  RunningProgram watch({"watch", "--registry", incident, "--pace", "--metrics", file});
  EXPECT_TRUE(comesToHold("ALERTS{alertname='RAIDVolumeDegraded',alertstate='firing'}"));
  EXPECT_TRUE(comesToHold("ALERTS{alertname='RAIDMemberFailed',alertstate='firing'}"));
  EXPECT_THAT(query("ALERTS{alertname='RAIDMemberFailed',alertstate='firing'}"),
              ElementsAre(HasSubstr("bay=\"2\"")));
  EXPECT_THAT(query("ALERTS{alertname=~'RAIDMonitor.*',alertstate='firing'}"), IsEmpty());
  EXPECT_EQ(0, watch.finish().status);
}

}  // namespace
}  // namespace ProgramTest
