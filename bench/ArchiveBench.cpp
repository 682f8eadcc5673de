// Reading archives, libplist alone beside it; and the change from one content of a recording to the
// next. The files are those that RAIDMONITORING_BENCH_ARCHIVES names, a folder; see scripts/bench.

#include <benchmark/benchmark.h>
#include <plist/plist.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "bench/Stage.h"
#include "platform/registry/memory/archive/Archive.h"

namespace {

std::string contentOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void readArchive(benchmark::State& state, const std::string& text) {
  for (auto _ : state)
    benchmark::DoNotOptimize(MemoryRegistry::parseArchive(text.data(), text.size(), "archive"));
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void parseAlone(benchmark::State& state, const std::string& text) {
  for (auto _ : state) {
    plist_t list = nullptr;
    plist_from_xml(text.data(), static_cast<std::uint32_t>(text.size()), &list);
    plist_free(list);
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}

void changeContent(benchmark::State& state, const std::string& text) {
  MemoryRegistry::reset();
  const auto content = MemoryRegistry::parseArchive(text.data(), text.size(), "archive");
  MemoryRegistry::replaceContent(content);
  for (auto _ : state) {
    state.PauseTiming();
    auto next = content;
    state.ResumeTiming();
    MemoryRegistry::replaceContent(std::move(next));
  }
  state.counters["entries"] = static_cast<double>(content.entries.size());
  MemoryRegistry::reset();
}

}  // namespace

int main(int count, char** arguments) {
  benchmark::Initialize(&count, arguments);
  if (benchmark::ReportUnrecognizedArguments(count, arguments)) return 2;
  const char* const folder = std::getenv("RAIDMONITORING_BENCH_ARCHIVES");
  if (folder != nullptr) {
    for (const auto& file : std::filesystem::directory_iterator(folder)) {
      const std::string name = file.path().filename().string();
      const std::string text = contentOf(file.path());
      const auto add = [&](const char* what, auto function) {
        benchmark::RegisterBenchmark((what + name).c_str(), function, text)
            ->Unit(benchmark::kMillisecond);
      };
      add("readArchive/", readArchive);
      add("libplistAlone/", parseAlone);
      add("changeContent/", changeContent);
    }
  }
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
