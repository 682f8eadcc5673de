// The registries of a program that is built on the in-memory registry: archives, recordings, and
// the demo recording. The one file of the application that knows of that registry.

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "application/progress/Progress.h"
#include "application/registries/DemoRecording.h"
#include "application/session/Source.h"
#include "platform/pelago/PacedClock.h"
#include "platform/registry/memory/MemoryRegistry.h"
#include "platform/registry/memory/archive/ArchiveError.h"
#include "platform/registry/memory/archive/Recording.h"

namespace Program {
namespace {

using MemoryRegistry::ArchiveError;
using MemoryRegistry::Recording;
using Pelago::Milliseconds;

constexpr Milliseconds RefreshPeriod = 2000;

std::unique_ptr<Pelago::Clock> clockFor(bool paced) {
  if (paced) return std::make_unique<Pelago::PacedClock>();
  return std::make_unique<Pelago::VirtualClock>();
}

// Plays a recording on the in-memory registry. Its watch ends with the first refresh that can show
// what the last change led to, and one more.
class RecordingSource : public Source {
 public:
  RecordingSource(Recording recording, bool paced)
      : _recording(std::move(recording)), _paced(paced), _clock(clockFor(paced)) {
    MemoryRegistry::reset();
  }

  Pelago::Clock& clock() override { return *_clock; }

  std::optional<Milliseconds> nextLook() const override {
    if (_next == _recording.times().size()) return std::nullopt;
    return _recording.times()[_next];
  }

  void prepareLook() override { MemoryRegistry::replaceContent(_recording.content(_next++)); }

  bool waits() const override { return _paced; }

  std::optional<Milliseconds> end() const override {
    const Milliseconds last = _recording.times().back();
    const Milliseconds sinceRefresh = last % RefreshPeriod;
    const Milliseconds span =
        (sinceRefresh == 0 ? 0 : RefreshPeriod - sinceRefresh) + RefreshPeriod;
    return last < Pelago::Clock::Never - span ? last + span : Pelago::Clock::Never;
  }

  std::optional<HandleAccounts> accounts() const override {
    const MemoryRegistry::Accounts held = MemoryRegistry::accounts();
    HandleAccounts accounts;
    for (const auto& entry : held.entries)
      accounts.kept.push_back({entry.id, entry.references});
    accounts.objects = held.iterators;
    accounts.values = held.values;
    return accounts;
  }

 private:
  Recording _recording;
  bool _paced;
  std::unique_ptr<Pelago::Clock> _clock;
  std::size_t _next = 0;
};

}  // namespace

std::unique_ptr<Source> openRegistry(const std::string& path, bool paced) {
  try {
    Progress progress("Reading");
    const auto readOne = [&progress](std::size_t count, std::size_t all) {
      progress.reach(static_cast<std::int64_t>(count), static_cast<std::int64_t>(all));
    };
    return std::make_unique<RecordingSource>(Recording::open(path, readOne), paced);
  } catch (const ArchiveError& error) {
    throw SourceError(error.what());
  }
}

std::unique_ptr<Source> openDefaultRegistry(bool paced) {
  std::vector<std::pair<std::int64_t, Recording::MakeText>> archives;
  for (std::size_t place = 0; place < DemoArchiveCount; ++place) {
    const EmbeddedText& embedded = DemoArchive[place];
    archives.emplace_back(std::stoll(std::string(embedded.name)),
                          [&embedded] { return textOf(embedded); });
  }
  return std::make_unique<RecordingSource>(Recording::fromMemory(std::move(archives)), paced);
}

}  // namespace Program
