// Does one piece of work inside measured(), and prints how many units of it there were. Run by
// bench/count-instructions, which has callgrind collect inside measured() alone.

#include <malloc.h>
#include <plist/plist.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>

#include "bench/PlainGraph.h"
#include "bench/Stage.h"
#include "platform/registry/IOKitUtilities.h"
#include "platform/registry/Vocabulary.h"
#include "platform/registry/memory/archive/Archive.h"

using namespace Bench;

// The mark for callgrind.
extern "C" [[gnu::noinline]] void measured(const std::function<void()>& work) {
  work();
  asm volatile("" ::: "memory");  // no tail call
}

namespace {

void report(std::size_t units) { std::printf("units %zu\n", units); }

std::string contentOf(const char* file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

void walk(const std::string& how, std::size_t entries) {
  TestSupport::EnclosureShape shape = TestSupport::fiveBayShape();
  shape.entries = entries;
  const Stage stage(1, shape);
  const TestSupport::GeneratedEnclosure& enclosure = stage.enclosures().front();
  std::vector<MemoryRegistry::EntryID> sets;
  for (const auto& set : enclosure.sets)
    sets.push_back(set.entry);
  PlainGraph plain(enclosure.bridge, sets);
  const unsigned int bridge = MemoryRegistry::handle(enclosure.bridge);
  const auto once = [&](std::size_t& steps) {
    if (how == "walk-bare") return plain.walk(steps);
    if (how == "walk-bare-on-demand") return plain.walkOnDemand(steps);
    return setsThroughSeam(bridge, steps);
  };
  std::size_t warmUp = 0;
  once(warmUp);
  std::size_t steps = 0;
  std::size_t found = 0;
  measured([&] {
    for (int i = 0; i < 100; ++i)
      found += once(steps);
  });
  if (found != 500) std::exit(1);
  report(steps);
}

void refresh(std::size_t devices, std::size_t entries) {
  TestSupport::EnclosureShape shape = TestSupport::fiveBayShape();
  shape.entries = entries;
  Stage stage(devices, shape);
  stage.plugIn();
  stage.monitor().refresh();
  measured([&] { stage.monitor().refresh(); });
  report(1);
}

// The best of several, or of what two seconds suffice for, by the clock, in microseconds.
double bestOf(int times, const std::function<void()>& work) {
  using Clock = std::chrono::steady_clock;
  const auto enough = Clock::now() + std::chrono::seconds(2);
  auto best = std::chrono::nanoseconds::max();
  for (int i = 0; i < times && (i == 0 || Clock::now() < enough); ++i) {
    const auto begin = Clock::now();
    work();
    best = std::min(best, std::chrono::nanoseconds(Clock::now() - begin));
  }
  return static_cast<double>(best.count()) / 1000;
}

// Mirrors of two disks, so many to an enclosure: one in a two-bay enclosure of 60 entries, two in a
// four-bay one, and what no bays hold for the sake of the figures.
class Mirrors {
 public:
  Mirrors(std::size_t sets, std::size_t perEnclosure)
      : _stage((sets + perEnclosure - 1) / perEnclosure, shapeOf(perEnclosure)) {
    _stage.plugIn();
    _stage.monitor().refresh();
  }

  void refresh() { _stage.monitor().refresh(); }

 private:
  static TestSupport::EnclosureShape shapeOf(std::size_t sets) {
    constexpr std::size_t others = 24;
    constexpr std::size_t perSet = 36;
    return {{sets, TestSupport::SetShape{2, 2, false}}, others + perSet * sets};
  }

  Stage _stage;
};

void refreshMirrors(std::size_t sets, std::size_t perEnclosure) {
  Mirrors mirrors(sets, perEnclosure);
  measured([&] { mirrors.refresh(); });
  report(sets);
}

void timeRefresh(std::size_t sets, std::size_t perEnclosure) {
  Mirrors mirrors(sets, perEnclosure);
  std::printf("refresh %.1f us\n", bestOf(20, [&] { mirrors.refresh(); }));
}

void countOperations(std::size_t sets, std::size_t perEnclosure) {
  using MemoryRegistry::calls;
  using MemoryRegistry::Operation;
  Mirrors mirrors(sets, perEnclosure);
  const auto counted = [] {
    return std::array{calls(Operation::IORegistryEntryCreateIterator),
                      calls(Operation::IOIteratorNext),
                      calls(Operation::IOObjectConformsTo),
                      calls(Operation::IOObjectRelease),
                      calls(Operation::IORegistryEntryCreateCFProperty),
                      calls()};
  };
  const auto before = counted();
  mirrors.refresh();
  const auto after = counted();
  const auto perSet = [&](std::size_t kind) {
    return static_cast<double>(after[kind] - before[kind]) / static_cast<double>(sets);
  };
  std::printf("a set: walks %.1f next %.0f conforms %.0f release %.0f property %.0f all %.0f\n",
              perSet(0), perSet(1), perSet(2), perSet(3), perSet(4), perSet(5));
}

void parseAlone(const std::string& text) {
  plist_t list = nullptr;
  plist_from_xml(text.data(), static_cast<std::uint32_t>(text.size()), &list);
  plist_free(list);
}

// As a program that does nothing else, either form of list.
int parseFile(const char* file) {
  const std::string text = contentOf(file);
  plist_t list = nullptr;
  plist_from_memory(text.data(), static_cast<std::uint32_t>(text.size()), &list);
  const bool parsed = list != nullptr;
  plist_free(list);
  return parsed ? 0 : 1;
}

void archive(bool alone, const char* file) {
  const std::string text = contentOf(file);
  measured([&] {
    if (alone) {
      parseAlone(text);
    } else {
      MemoryRegistry::parseArchive(text.data(), text.size(), file);
    }
  });
  report(text.size());
}

void timeArchive(const char* file) {
  const std::string text = contentOf(file);
  const double ours =
      bestOf(9, [&] { MemoryRegistry::parseArchive(text.data(), text.size(), file); });
  const double alone = bestOf(9, [&] { parseAlone(text); });
  std::printf("archive %.3f libplist %.3f\n", ours / 1000, alone / 1000);
}

std::size_t heapInUse() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

// What the C library has given out: for libplist's tree alone, and for a registry once the reader
// is done with it. Texts, data and arrays of properties are in it.
void memory(const char* file) {
  const std::string text = contentOf(file);
  const std::size_t before = heapInUse();
  plist_t list = nullptr;
  plist_from_xml(text.data(), static_cast<std::uint32_t>(text.size()), &list);
  const std::size_t tree = heapInUse() - before;
  plist_free(list);
  MemoryRegistry::reset();
  const std::size_t empty = heapInUse();
  MemoryRegistry::replaceContent(MemoryRegistry::parseArchive(text.data(), text.size(), file));
  const std::size_t registry = heapInUse() - empty;
  const std::size_t entries = MemoryRegistry::entryCount();
  MemoryRegistry::reset();
  auto bare = MemoryRegistry::parseArchive(text.data(), text.size(), file);
  for (auto& entry : bare.entries)
    entry.description.properties = {};
  const std::size_t none = heapInUse();
  MemoryRegistry::replaceContent(bare);
  const std::size_t withoutProperties = heapInUse() - none;
  std::printf(
      "%zu entries: libplist's tree %zu bytes, the registry %zu bytes, %zu an entry, %zu without "
      "its properties\n",
      entries, tree, registry, registry / entries, withoutProperties / entries);
}

std::size_t number(int count, char** arguments, int index, std::size_t otherwise) {
  return index < count ? std::strtoul(arguments[index], nullptr, 10) : otherwise;
}

}  // namespace

int main(int count, char** arguments) {
  const std::string what = count > 1 ? arguments[1] : "";
  if (what == "walk-bare" || what == "walk-bare-on-demand" || what == "walk-seam") {
    walk(what, number(count, arguments, 2, 150));
  } else if (what == "refresh") {
    refresh(number(count, arguments, 2, 1), number(count, arguments, 3, 150));
  } else if ((what == "archive-libplist" || what == "archive") && count > 2) {
    archive(what == "archive-libplist", arguments[2]);
  } else if (what == "refresh-mirrors") {
    refreshMirrors(number(count, arguments, 2, 17), number(count, arguments, 3, 1));
  } else if (what == "time-refresh") {
    timeRefresh(number(count, arguments, 2, 17), number(count, arguments, 3, 1));
  } else if (what == "operations") {
    countOperations(number(count, arguments, 2, 17), number(count, arguments, 3, 1));
  } else if (what == "parse" && count > 2) {
    return parseFile(arguments[2]);
  } else if (what == "time-archive" && count > 2) {
    timeArchive(arguments[2]);
  } else if (what == "memory" && count > 2) {
    memory(arguments[2]);
  } else {
    std::fputs(
        "usage: counted_work "
        "walk-bare|walk-bare-on-demand|walk-seam|refresh|refresh-mirrors|time-refresh|"
        "operations|"
        "archive-libplist|archive|time-archive|parse|memory ...\n",
        stderr);
    return 2;
  }
  return 0;
}
