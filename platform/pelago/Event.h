#pragma once

#include "platform/pelago/PelagoExport.h"

namespace Pelago {

// Something to be delivered to an Object later, by Application::PostEvent.
//
// Ownership: the poster's until it is posted, the framework's from then on; `data` stays the
//            poster's throughout.
// Thread:    the event thread only.
// Failure:   nothing here fails.
//
// \code
// #include "platform/pelago/Application.h"
// #include "platform/pelago/Object.h"
//
// // Counts down on the event thread, once per delivery, until nothing is left.
// class Countdown : public Pelago::Object {
//  public:
//   explicit Countdown(int left) : _left(left) {}
//   void event(Pelago::Event*) override {
//     if (--_left > 0) step();
//   }
//   void step() { Pelago::Application::PostEvent(this, new Pelago::Event(0, nullptr)); }
//
//  private:
//   int _left;
// };
// \endcode
class PELAGO_EXPORT Event {
 public:
  // Whoever receives it knows what the number and `data`, which may be null, mean.
  Event(unsigned type, void* data) : _type(type), _data(data) {}
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;
  virtual ~Event();

  // Disposes of the event once it has been delivered, or can't be delivered any more; the base
  // version deletes it.
  virtual void destroy();

  // As they were given.
  unsigned type() const { return _type; }
  void* data() const { return _data; }

 private:
  unsigned _type;
  void* _data;
};

}  // namespace Pelago
