#include "platform/pelago/Object.h"

#include "platform/pelago/Application.h"

namespace Pelago {

Object::~Object() {
  // Events are queued in an Application only, and its end takes them from their receivers: while
  // there are any, there is an Application.
  if (_queuedEvents > 0) Application::instance()->forget(this);
}

void Object::event(Event* /*event*/) {}

void Object::destroy() { delete this; }

void Object::ref() { ++_references; }

void Object::deref() {
  if (--_references == 0) destroy();
}

}  // namespace Pelago
