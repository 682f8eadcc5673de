#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/pelago/Logger.h"
#include "platform/registry/Registry.h"

namespace FaultTest {

// One thing that happened at the seam, or in the log.
struct TraceEvent {
  enum class Kind {
    Mark,            // a call into the library begins or ends; options: 1 when by an exception
    Log,             // name: the line's text
    EntryFromPath,   // result: the entry
    CreateIterator,  // argument: the entry; options; result: the iterator
    Next,            // argument: the iterator; result: the entry
    ConformsTo,      // argument: the entry; name: the class; result: 0 or 1
    GetPath,         // argument: the entry; name: the path, empty on failure
    GetChild,        // argument: the entry; result: the child
    Number,          // result: the 32 bits of a number that was read, all set on failure
  };
  Kind kind = Kind::Mark;
  unsigned argument = 0;
  unsigned options = 0;
  unsigned result = 0;
  const char* name = "";  // lasts as long as the program
  std::uint64_t id = 0;   // of the entry that `result` stands for
};

// Whether the same was asked and answered; handles are numbered anew in each life.
bool isSameStep(const TraceEvent& a, const TraceEvent& b);

// What the library does with the registry, written down while one of these lives. The program is
// linked with the seam's operations wrapped (see CMakeLists.txt), so that neither the registry nor
// the library knows of it.
class SeamTrace {
 public:
  // Forgets what the one before has written.
  SeamTrace();
  ~SeamTrace();
  SeamTrace(const SeamTrace&) = delete;
  SeamTrace& operator=(const SeamTrace&) = delete;

  static void forget();
  static void mark(bool thrown = false);
  static void log(const std::string& text);

  const std::vector<TraceEvent>& events() const;
};

}  // namespace FaultTest
