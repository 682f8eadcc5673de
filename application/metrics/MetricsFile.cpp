#include "application/metrics/MetricsFile.h"

#include <utility>

#include "application/StandardError.h"
#include "application/files/AtomicFile.h"
#include "application/metrics/MetricsObserver.h"
#include "application/text/TextCharacters.h"

namespace Program {
namespace {

// Less than the two seconds between refreshes, so that one that comes early is not left out.
constexpr std::chrono::milliseconds Pause{1500};

}  // namespace

MetricsFile::MetricsFile(std::string path, std::string source, MetricsObserver& metrics,
                         Clock clock)
    : _path(std::move(path)),
      _source(std::move(source)),
      _metrics(metrics),
      _clock(std::move(clock)),
      _next(_clock()) {
  // A mistake in the name shows now; what is there stays until there is something to tell.
  const AtomicFile trial(_path, AtomicFile::Readers::Everybody);
}

void MetricsFile::instantEnded(const Session& session) {
  const auto now = _clock();
  if (now < _next) return;
  _next = now + Pause;
  write(session);
}

bool MetricsFile::write(const Session& session) {
  try {
    AtomicFile::replace(_path, metricsText(_metrics.metricsOf(session, _source)),
                        AtomicFile::Readers::Everybody);
  } catch (const FileError& error) {
    report(error.what());
    return false;
  }
  report({});
  return true;
}

void MetricsFile::report(const std::string& failure) {
  if (failure == _failure) return;
  const std::string line =
      failure.empty() ? printable(_path, Charset::Unicode) + ": is written again" : failure;
  printError("raidmonitor: " + line);
  _failure = failure;
}

}  // namespace Program
