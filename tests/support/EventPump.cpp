#include "tests/support/EventPump.h"

namespace TestSupport {

// What a handler posts in turn is due one delay after this turn's end at the earliest.
void EventPump::turn() { advance(Pelago::Application::PostDelay); }

void EventPump::turns(int count) {
  for (int i = 0; i < count; ++i)
    turn();
}

void EventPump::advance(Pelago::Milliseconds span) {
  _application.runThrough(_application.now() + span);
}

}  // namespace TestSupport
