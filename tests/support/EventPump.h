#pragma once

#include "platform/pelago/Application.h"

namespace TestSupport {

// Steps an application whose clock is virtual.
class EventPump {
 public:
  explicit EventPump(Pelago::Application& application) : _application(application) {}

  // Delivers every event that is queued now, and none that is posted meanwhile.
  void turn();
  void turns(int count);

  // Lets so much time pass, with all that is due up to its end.
  void advance(Pelago::Milliseconds span);

 private:
  Pelago::Application& _application;
};

}  // namespace TestSupport
