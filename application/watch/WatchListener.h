#pragma once

#include "application/watch/Overview.h"
#include "application/watch/WatchEvent.h"

namespace Program {

// Who hears the events of a watch: on the event thread, in the order in which they happen.
class WatchListener {
 public:
  WatchListener() = default;
  WatchListener(const WatchListener&) = delete;
  WatchListener& operator=(const WatchListener&) = delete;
  virtual ~WatchListener();

  virtual void heard(const WatchEvent& event) = 0;

  // Everything that happens at this moment has been told. May come again without news.
  virtual void instantEnded(const Overview&) {}
};

}  // namespace Program
