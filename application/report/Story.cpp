#include "application/report/Story.h"

#include <algorithm>

#include "application/Signals.h"
#include "application/report/SettledSource.h"
#include "application/report/StoryCollector.h"
#include "application/session/Session.h"

namespace Program {

const Story::Frame* Story::frameAt(Moment moment) const {
  const auto later =
      std::upper_bound(frames.begin(), frames.end(), moment,
                       [](Moment wanted, const Frame& frame) { return wanted < frame.time; });
  return later == frames.begin() ? nullptr : &*(later - 1);
}

Story storyOf(Source& source, std::optional<Pelago::Milliseconds> end) {
  StoryCollector collector;
  const Session* running = nullptr;
  SettledSource settling(source, [&collector, &running] {
    if (running != nullptr) collector.settled(running->hosts());
  });
  Session session(settling, collector, end);
  running = &session;
  {
    const QuitOnSignals signals;
    session.run();
  }
  return collector.finished(session);
}

}  // namespace Program
