#pragma once

#include "platform/pelago/PelagoExport.h"

// The framework: objects with references, events and the loop that delivers them, timers, clocks,
// the log, and the discovery of devices.
namespace Pelago {

class Event;

// A reference-counted object that can receive posted events.
//
// Ownership: a new object holds no reference; whoever keeps it calls ref() and gives the reference
//            back with one deref(). An object that nobody ever referenced is never destroyed by
//            the framework.
// Thread:    the event thread only; the count is not atomic.
// Failure:   nothing here fails.
//
// The order of the virtual operations is part of the binary interface.
class PELAGO_EXPORT Object {
 public:
  // With no reference and nothing queued.
  Object() = default;
  Object(const Object&) = delete;
  Object& operator=(const Object&) = delete;

  // Events still queued for the object are disposed of undelivered.
  virtual ~Object();

  // Receives one posted event. The event stays the framework's. The base version ignores it.
  virtual void event(Event* event);

  // Called by the deref() that gives the last reference back; the base version deletes the object.
  virtual void destroy();

  // Takes a reference.
  void ref();

  // Gives one back, which must be there; with the last one the object is destroyed.
  void deref();

  // References held at the moment; for accounts and tests.
  int references() const { return _references; }

 private:
  friend class Application;

  int _references = 0;
  int _queuedEvents = 0;  // lets the destructor pass over the queue when nothing is in it
};

}  // namespace Pelago
