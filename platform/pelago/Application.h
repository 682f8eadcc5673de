#pragma once

#include <atomic>
#include <cstddef>
#include <memory>

#include "platform/pelago/Clock.h"

namespace Pelago {

class Event;
class Object;
class Timer;

// The event loop of a process: delivers posted events and timer expiries, one at a time, in the
// order in which they are due; at one moment posted events come before timers, events in the order
// of posting and timers in the order of their start.
//
// Ownership: an embedding application makes one, before anything posts or starts a timer, and
//            destroys it last; there is at most one at a time. It owns the events in its queue, and
//            disposes of them undelivered when it ends. Receivers and timers are not its own.
// Thread:    the thread that runs it is the event thread. All operations belong there, except
//            quit(), which may be called from anywhere, a signal handler included.
// Failure:   making a second Application throws std::logic_error. Posting without an Application, a
//            receiver or an event disposes of the event and says so in the log. An exception from a
//            handler leaves the loop through its caller; the event in hand is disposed of, the
//            others stay queued.
//
// \code
// #include "platform/pelago/SteadyClock.h"
//
// int runUntilQuit() {
//   Pelago::SteadyClock clock;
//   Pelago::Application application(clock);
//   // Here: a DiscoveryManager, the monitor and its clients, which all live shorter than the loop.
//   application.run();
//   return 0;
// }
// \endcode
class PELAGO_EXPORT Application {
 public:
  // A posted event is due so many milliseconds after its posting: a handler that posts to itself
  // until something has happened looks ten times a second, and never spins.
  static constexpr Milliseconds PostDelay = 100;

  // The loop runs by `clock`, which outlives it.
  explicit Application(Clock& clock);
  ~Application();
  Application(const Application&) = delete;
  Application& operator=(const Application&) = delete;

  // The one that exists, or null.
  static Application* instance();

  // Queues the event for the receiver and returns at once; the event is the framework's from here
  // on. Delivery is never inside this call. Posting from inside a handler is allowed.
  static void PostEvent(Object* receiver, Event* event);

  // The clock's time.
  Milliseconds now() const;

  // Delivers everything that is due before `moment`, waiting for each in turn, and then waits until
  // `moment`. False when quit() ended it earlier.
  bool runBefore(Milliseconds moment);

  // The same, with what is due at `moment` itself.
  bool runThrough(Milliseconds moment);

  // Runs until quit(). With nothing due it sleeps.
  void run();

  // Ends the run that is going on, after the handler that is being called; or else the next one.
  // Async-signal-safe.
  void quit();

  // Whether a quit() has not ended its run yet; false again when the run has returned.
  bool quitting() const;

  // How many events wait for their delivery; for accounts and tests.
  std::size_t queuedEvents() const;

 private:
  friend class Object;
  friend class Timer;
  struct Queue;

  static void drop(Event* event, const char* reason);
  void post(Object* receiver, Event* event);
  void forget(Object* receiver);
  void schedule(Timer* timer, unsigned period);
  void unschedule(Timer* timer);
  bool runUntil(Milliseconds moment, bool inclusive);

  void deliverNext();
  void deliverEvent();
  void expireTimer();

  Clock& _clock;
  std::unique_ptr<Queue> _queue;
  std::atomic<bool> _quit{false};
};

}  // namespace Pelago
