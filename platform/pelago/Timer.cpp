#include "platform/pelago/Timer.h"

#include "platform/pelago/Application.h"
#include "platform/pelago/Logger.h"

namespace Pelago {

Timer::~Timer() { stop(); }

void Timer::timeout() {}

void Timer::start(unsigned period) {
  if (Application* application = Application::instance()) {
    application->schedule(this, period);
  } else {
    Logger::Message("Pelago", "Timer::start - No application, the timer stays stopped");
  }
}

void Timer::stop() {
  // The Application's end stops the timers that are left: a running one has an Application.
  if (_running) Application::instance()->unschedule(this);
}

}  // namespace Pelago
