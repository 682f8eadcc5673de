#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/pelago/Event.h"
#include "platform/pelago/Object.h"
#include "platform/pelago/Timer.h"

namespace PelagoTest {

// What happened, in order; shared by the doubles of one test.
using Story = std::vector<std::string>;

// Runs a handler for every event that it receives.
class Receiver : public Pelago::Object {
 public:
  using Handler = std::function<void(Pelago::Event*)>;
  explicit Receiver(Handler handler = {}) : _handler(std::move(handler)) {}

  void event(Pelago::Event* event) override {
    const Handler handler = _handler;  // a handler may end the receiver
    if (handler) handler(event);
  }

 private:
  Handler _handler;
};

// Tells when it is destroyed.
class ToldEvent : public Pelago::Event {
 public:
  ToldEvent(Story& story, std::string name, unsigned type = 0)
      : Event(type, nullptr), _story(story), _name(std::move(name)) {}
  ~ToldEvent() override { _story.push_back("end of " + _name); }

 private:
  Story& _story;
  std::string _name;
};

// Runs a handler at every expiry.
class HandlingTimer : public Pelago::Timer {
 public:
  using Handler = std::function<void()>;
  explicit HandlingTimer(Handler handler) : _handler(std::move(handler)) {}

  void timeout() override {
    const Handler handler = _handler;  // a handler may end the timer
    handler();
  }

 private:
  Handler _handler;
};

}  // namespace PelagoTest
