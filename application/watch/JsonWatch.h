#pragma once

#include "application/watch/WatchListener.h"

namespace Program {

class WatchOutput;

// For programs: a JSON object for every event, when it happens.
class JsonWatch : public WatchListener {
 public:
  explicit JsonWatch(WatchOutput& output) : _output(output) {}

  void heard(const WatchEvent& event) override;

 private:
  WatchOutput& _output;
};

}  // namespace Program
