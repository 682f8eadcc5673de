// Refreshes, from one device to a thousand; plug-in; and a day of monitoring.

#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>

#include "bench/Stage.h"

using namespace Bench;

namespace {

void refresh(benchmark::State& state) {
  Stage stage(static_cast<std::size_t>(state.range(0)), TestSupport::fiveBayShape());
  stage.plugIn();
  for (auto _ : state)
    stage.monitor().refresh();
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

// From the report of the device, everything being there, to its sets' announcement; and away again.
void plugIn(benchmark::State& state) {
  Stage stage(1, TestSupport::fiveBayShape());
  for (auto _ : state) {
    stage.plugIn();
    state.PauseTiming();
    stage.unplug();
    stage.monitor().refresh();  // withdraws the sets
    state.ResumeTiming();
  }
}

// 43,200 refreshes of one five-bay enclosure, one of its members changing twenty times meanwhile.
// The argument is the share of the day, in hours.
void day(benchmark::State& state) {
  constexpr int Changes = 20;
  const Pelago::Milliseconds part = 3'600'000 * state.range(0) / Changes;
  for (auto _ : state) {
    state.PauseTiming();
    auto stage = std::make_unique<Stage>(1, TestSupport::fiveBayShape());
    stage->plugIn();
    stage->monitor().startMonitoring();
    const auto member = stage->enclosures().front().sets.front().members.front();
    state.ResumeTiming();
    for (int change = 1; change <= Changes; ++change) {
      MemoryRegistry::setProperty(member, "AppleRAID-MemberStatus",
                                  change % 2 == 0 ? "Online" : "Failed");
      stage->application().runBefore(part * change);
    }
    state.PauseTiming();
    stage->monitor().stopMonitoring();
    stage.reset();
    state.ResumeTiming();
  }
}

}  // namespace

BENCHMARK(refresh)->Arg(1)->Arg(10)->Arg(100)->Arg(1000)->Unit(benchmark::kMicrosecond);
BENCHMARK(plugIn)->Unit(benchmark::kMicrosecond);
BENCHMARK(day)->Arg(1)->Arg(24)->Unit(benchmark::kMillisecond);
