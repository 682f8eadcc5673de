#include "platform/pelago/Application.h"

#include <algorithm>
#include <deque>
#include <stdexcept>
#include <vector>

#include "platform/pelago/Event.h"
#include "platform/pelago/Logger.h"
#include "platform/pelago/Object.h"
#include "platform/pelago/Timer.h"

namespace Pelago {

namespace {

Application* theApplication = nullptr;

struct Disposal {
  void operator()(Event* event) const { event->destroy(); }
};
using OwnedEvent = std::unique_ptr<Event, Disposal>;

struct PostedEvent {
  Milliseconds due;
  Object* receiver;
  OwnedEvent event;
};

struct RunningTimer {
  Milliseconds due;
  Milliseconds period;
  Timer* timer;
};

// A virtual clock may have been sent to the end of time.
Milliseconds later(Milliseconds moment, Milliseconds span) {
  return moment < Clock::Never - span ? moment + span : Clock::Never;
}

}  // namespace

struct Application::Queue {
  std::deque<PostedEvent> events;    // in the order of posting, which is that of being due
  std::vector<RunningTimer> timers;  // in the order of start

  // The timer that is due first; of several, the one that was started first.
  auto firstTimer() {
    return std::min_element(timers.begin(), timers.end(),
                            [](const auto& a, const auto& b) { return a.due < b.due; });
  }
  Milliseconds nextEvent() const { return events.empty() ? Clock::Never : events.front().due; }
  Milliseconds nextTimer() { return timers.empty() ? Clock::Never : firstTimer()->due; }
  auto find(const Timer* timer) {
    return std::find_if(timers.begin(), timers.end(),
                        [timer](const auto& running) { return running.timer == timer; });
  }
};

Application::Application(Clock& clock) : _clock(clock), _queue(std::make_unique<Queue>()) {
  if (theApplication != nullptr)
    throw std::logic_error("Application::Application - There is one already");
  theApplication = this;
}

Application::~Application() {
  // Disposing of an event may end a receiver, which then asks for its other events: so one by one,
  // and with the queue in order at every step.
  while (!_queue->events.empty()) {
    const PostedEvent dropped = std::move(_queue->events.front());
    _queue->events.pop_front();
    --dropped.receiver->_queuedEvents;
  }
  for (const RunningTimer& running : _queue->timers)
    running.timer->_running = false;
  theApplication = nullptr;
}

Application* Application::instance() { return theApplication; }

void Application::PostEvent(Object* receiver, Event* event) {
  if (theApplication == nullptr) {
    drop(event, "No application");
  } else if (receiver == nullptr || event == nullptr) {
    drop(event, receiver == nullptr ? "No receiver" : "No event");
  } else {
    theApplication->post(receiver, event);
  }
}

void Application::drop(Event* event, const char* reason) {
  const OwnedEvent dropped(event);
  Logger::Message("Pelago", "Application::PostEvent - %s, nothing is posted", reason);
}

void Application::post(Object* receiver, Event* event) {
  OwnedEvent owned(event);  // from here on, lack of memory included
  _queue->events.push_back({later(now(), PostDelay), receiver, std::move(owned)});
  ++receiver->_queuedEvents;
}

// One by one and without memory of its own: this runs in a destructor, and an event's disposal may
// post or end other objects.
void Application::forget(Object* receiver) {
  while (receiver->_queuedEvents > 0) {
    const auto found =
        std::find_if(_queue->events.begin(), _queue->events.end(),
                     [=](const auto& posted) { return posted.receiver == receiver; });
    const OwnedEvent dropped = std::move(found->event);
    _queue->events.erase(found);
    --receiver->_queuedEvents;
  }
}

void Application::schedule(Timer* timer, unsigned period) {
  const Milliseconds span = std::max(period, 1U);
  const RunningTimer running{later(now(), span), span, timer};
  if (timer->_running) {
    const auto found = _queue->find(timer);
    *found = running;
    std::rotate(found, found + 1, _queue->timers.end());
  } else {
    _queue->timers.push_back(running);
  }
  timer->_running = true;
}

void Application::unschedule(Timer* timer) {
  _queue->timers.erase(_queue->find(timer));
  timer->_running = false;
}

Milliseconds Application::now() const { return _clock.now(); }

bool Application::runBefore(Milliseconds moment) { return runUntil(moment, false); }

bool Application::runThrough(Milliseconds moment) { return runUntil(moment, true); }

void Application::run() { runUntil(Clock::Never, false); }

bool Application::runUntil(Milliseconds moment, bool inclusive) {
  while (!_quit.exchange(false)) {
    const Milliseconds due = std::min(_queue->nextEvent(), _queue->nextTimer());
    const bool withinRun = due < moment || (inclusive && due == moment);
    // A wait may also have been interrupted for the sake of an earlier run.
    if (!_clock.waitUntil(withinRun ? due : moment)) continue;
    if (!withinRun) return true;
    deliverNext();
  }
  return false;
}

void Application::deliverNext() {
  if (_queue->nextEvent() <= _queue->nextTimer()) {
    deliverEvent();
  } else {
    expireTimer();
  }
}

// Nothing of the receiver is touched after its handler, which may have ended it.
void Application::deliverEvent() {
  const PostedEvent delivered = std::move(_queue->events.front());
  _queue->events.pop_front();
  --delivered.receiver->_queuedEvents;
  delivered.receiver->event(delivered.event.get());
}

// The next expiry is set before the call, in which the timer may be stopped, started or deleted.
void Application::expireTimer() {
  RunningTimer& running = *_queue->firstTimer();
  const Milliseconds present = now();
  const Milliseconds sinceLast = (present - running.due) % running.period;
  running.due = later(present - sinceLast, running.period);
  running.timer->timeout();
}

void Application::quit() {
  _quit.store(true);
  _clock.interrupt();
}

bool Application::quitting() const { return _quit.load(); }

std::size_t Application::queuedEvents() const { return _queue->events.size(); }

}  // namespace Pelago
