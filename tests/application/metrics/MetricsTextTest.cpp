#include "application/metrics/MetricsText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/application/support/Snapshots.h"
#include "tests/application/support/Tool.h"

namespace ProgramTest {
namespace {

using namespace Program;

TEST(MetricsText, IsFamiliesWithTheirSamples) {
  MetricsText text;
  text.family("looks_total", MetricsText::Type::Counter, "Looks.");
  text.sample(3);
  text.family("state", MetricsText::Type::Gauge, "States.");
  text.sample({{"name", "A"}, {"state", "on"}}, 1);
  text.family("time_seconds", MetricsText::Type::Gauge, "Times.");
  text.seconds(1500000000007);
  EXPECT_EQ(
      "# HELP looks_total Looks.\n# TYPE looks_total counter\nlooks_total 3\n"
      "# HELP state States.\n# TYPE state gauge\nstate{name=\"A\",state=\"on\"} 1\n"
      "# HELP time_seconds Times.\n# TYPE time_seconds gauge\ntime_seconds 1500000000.007\n",
      text.text());
}

TEST(MetricsText, EscapesWhatWouldEndALabel) {
  MetricsText text;
  text.family("f", MetricsText::Type::Gauge, "F.");
  text.sample({{"l", "a\\b\"c\nd"}}, 1);
  EXPECT_EQ("# HELP f F.\n# TYPE f gauge\nf{l=\"a\\\\b\\\"c\\nd\"} 1\n", text.text());
}

TEST(MetricsText, IdentifiersThatDifferStayDifferent) {
  EXPECT_EQ("2F7A93D8-51CE", labelIdentifier("2F7A93D8-51CE"));
  EXPECT_EQ("\\xff", labelIdentifier("\xff"));
  EXPECT_EQ("\\xfe", labelIdentifier("\xfe"));
  EXPECT_EQ("\\x5cxff", labelIdentifier("\\xff"));
}

TEST(MetricsText, IsTakenByPrometheusWhateverTheNames) {
  MetricsText text;
  text.family("f", MetricsText::Type::Gauge, "F.");
  text.sample({{"l", labelName(HostileName)}}, 1);
  text.sample({{"l", labelIdentifier(HostileName)}}, 1);
  text.sample({{"l", labelName("Große \"Daten\" \\ 写真")}}, 1);
  const Result result = runTool({"promtool", "check", "metrics"}, text.text());
  EXPECT_EQ(0, result.status) << result.out << result.err << text.text();
}

}  // namespace
}  // namespace ProgramTest
