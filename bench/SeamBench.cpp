// Single operations of the registry, and a bare walk beside its own.

#include <benchmark/benchmark.h>

#include <vector>

#include "bench/PlainGraph.h"
#include "bench/Stage.h"
#include "platform/registry/IOKitUtilities.h"
#include "platform/registry/Registry.h"
#include "platform/registry/RegistryReferences.h"
#include "platform/registry/Vocabulary.h"

using namespace Bench;

namespace {

std::vector<MemoryRegistry::EntryID> setsOf(const TestSupport::GeneratedEnclosure& enclosure) {
  std::vector<MemoryRegistry::EntryID> sets;
  for (const auto& set : enclosure.sets)
    sets.push_back(set.entry);
  return sets;
}

// Items are steps.
void walkStep(benchmark::State& state) {
  const Stage stage(1, TestSupport::fiveBayShape());
  const unsigned int bridge = MemoryRegistry::handle(stage.enclosures().front().bridge);
  std::size_t steps = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(setsThroughSeam(bridge, steps));
  state.SetItemsProcessed(static_cast<std::int64_t>(steps));
}

void bareWalkStep(benchmark::State& state) {
  const Stage stage(1, TestSupport::fiveBayShape());
  const auto& enclosure = stage.enclosures().front();
  PlainGraph graph(enclosure.bridge, setsOf(enclosure));
  std::size_t steps = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(graph.walk(steps));
  state.SetItemsProcessed(static_cast<std::int64_t>(steps));
}

void bareWalkStepOnDemand(benchmark::State& state) {
  const Stage stage(1, TestSupport::fiveBayShape());
  const auto& enclosure = stage.enclosures().front();
  PlainGraph graph(enclosure.bridge, setsOf(enclosure));
  std::size_t steps = 0;
  for (auto _ : state)
    benchmark::DoNotOptimize(graph.walkOnDemand(steps));
  state.SetItemsProcessed(static_cast<std::int64_t>(steps));
}

void stringProperty(benchmark::State& state) {
  const Stage stage(1, TestSupport::fiveBayShape());
  const unsigned int set = MemoryRegistry::handle(stage.enclosures().front().sets.front().entry);
  for (auto _ : state)
    benchmark::DoNotOptimize(IOKitUtilities::GetServiceStringProperty(set, kRAIDSetUUIDKey));
}

void pathLookUp(benchmark::State& state) {
  const Stage stage(1, TestSupport::fiveBayShape());
  const std::string path = MemoryRegistry::path(stage.enclosures().front().bridge);
  for (auto _ : state)
    IOObjectRelease(IORegistryEntryFromPath(kIOMasterPortDefault, path.c_str()));
}

void pathText(benchmark::State& state) {
  const Stage stage(1, TestSupport::fiveBayShape());
  const auto& set = stage.enclosures().front().sets.front();
  const unsigned int member = MemoryRegistry::handle(set.members.front());
  io_string_t path;
  for (auto _ : state)
    benchmark::DoNotOptimize(IORegistryEntryGetPath(member, kServicePlane, path));
}

}  // namespace

BENCHMARK(walkStep);
BENCHMARK(bareWalkStep);
BENCHMARK(bareWalkStepOnDemand);
BENCHMARK(stringProperty);
BENCHMARK(pathLookUp);
BENCHMARK(pathText);
