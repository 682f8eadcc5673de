#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/pelago/Clock.h"

namespace Program {

// What is still held of a registry.
struct HandleAccounts {
  struct Entry {
    std::uint64_t id = 0;
    std::uint64_t references = 0;
  };
  std::vector<Entry> kept;  // ascending by id
  std::size_t objects = 0;
  std::size_t values = 0;
};

// A registry that can't be read: one line that names it and the reason.
class SourceError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The registry that a session watches: where its content comes from, and its time.
//
// Ownership: the command's; outlives the session.
// Thread:    the event thread only.
// Failure:   everything that can't be read is found out while opening, which throws SourceError.
class Source {
 public:
  Source() = default;
  Source(const Source&) = delete;
  Source& operator=(const Source&) = delete;
  virtual ~Source();

  virtual Pelago::Clock& clock() = 0;

  // When discovery has to look at the registry next; none when it need not look again.
  virtual std::optional<Pelago::Milliseconds> nextLook() const = 0;

  // Puts the content in force that belongs to that look, and goes on to the next one.
  virtual void prepareLook() = 0;

  // Whether time passes while a session waits. When it does not, this is a replay: work that lasts
  // as long as the machine needs for it, and whose content changes at its looks alone.
  virtual bool waits() const { return true; }

  // The refresh at which a watch ends by itself; none when it does not.
  virtual std::optional<Pelago::Milliseconds> end() const = 0;

  // Whether it is the running system's, so that its moments are the wall clock's.
  virtual bool isLive() const { return false; }

  // None for a registry that keeps no accounts.
  virtual std::optional<HandleAccounts> accounts() const = 0;
};

// Which registries there are is decided when building: see CMakeLists.txt. `paced` makes a replay
// last as long as what it replays.
std::unique_ptr<Source> openRegistry(const std::string& path, bool paced);
std::unique_ptr<Source> openDefaultRegistry(bool paced);

}  // namespace Program
