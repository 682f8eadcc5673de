#include "monitor/RAIDMonitorClient.h"

#include <gtest/gtest.h>

#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <memory>

#include "tests/support/RecordingClient.h"

namespace MonitorTest {
namespace {

using TestSupport::RecordingClient;

class NamedClient : public RecordingClient {
 public:
  std::string identifier() override { return "a name of its own"; }
};

std::string sixteenDigits(const void* address) {
  char text[32];
  std::snprintf(text, sizeof text, "0x%016" PRIxPTR, reinterpret_cast<std::uintptr_t>(address));
  return text;
}

TEST(RAIDMonitorClient, TheIdentifierIsAlwaysNineCharactersBeginningWith0x) {
  RecordingClient onStack;
  const auto onHeap = std::make_unique<RecordingClient>();
  static RecordingClient inData;
  for (RAIDMonitoring::RAIDMonitorClient* client :
       {static_cast<RAIDMonitoring::RAIDMonitorClient*>(&onStack),
        static_cast<RAIDMonitoring::RAIDMonitorClient*>(onHeap.get()),
        static_cast<RAIDMonitoring::RAIDMonitorClient*>(&inData)}) {
    const std::string identifier = client->identifier();
    EXPECT_EQ(9U, identifier.size());
    EXPECT_EQ("0x", identifier.substr(0, 2));
    EXPECT_EQ(sixteenDigits(client).substr(0, 9), identifier);
  }
}

TEST(RAIDMonitorClient, ASubclassMayNameItself) {
  NamedClient client;
  RAIDMonitoring::RAIDMonitorClient& base = client;
  EXPECT_EQ("a name of its own", base.identifier());
}

}  // namespace
}  // namespace MonitorTest
