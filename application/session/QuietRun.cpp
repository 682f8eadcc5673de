#include "application/session/QuietRun.h"

#include "application/StandardError.h"

namespace Program {
namespace {

constexpr Pelago::Milliseconds FirstRefresh = 2000;

std::optional<Pelago::Milliseconds> endOf(const RegistryOptions& options, const Source& source) {
  if (options.until) return options.until;
  return source.end().value_or(FirstRefresh);
}

}  // namespace

std::unique_ptr<Source> sourceFor(const RegistryOptions& options) {
  if (options.registry == "")
    throw SourceError("--registry: the empty path names no file or folder");
  return options.registry ? openRegistry(*options.registry, options.pace)
                          : openDefaultRegistry(options.pace);
}

const char* kindOf(const RegistryOptions& options, const Source& source) {
  if (options.registry) return "archive";
  return source.isLive() ? "live" : "demonstration";
}

QuietRun::QuietRun(const RegistryOptions& options, SessionObserver* observer)
    : _source(sourceFor(options)),
      _sourceKind(kindOf(options, *_source)),
      _observer(options.log),
      _session(*_source, _observers, endOf(options, *_source)) {
  _observers.add(_observer);
  if (observer != nullptr) _observers.add(*observer);
  _session.run();
}

void QuietRun::Observer::logged(Pelago::Logger::Level level, const std::string& category,
                                const std::string& text) {
  if (!_log) return;
  printError(std::string(nameOf(level)) + " [" + category + "] " + text);
}

}  // namespace Program
