#pragma once

#include "platform/pelago/PelagoExport.h"

namespace Pelago {

// Something to be delivered to an Object later, by Application::PostEvent.
//
// Ownership: the poster's until it is posted, the framework's from then on; `data` stays the
//            poster's throughout.
// Thread:    the event thread only.
// Failure:   nothing here fails.
class PELAGO_EXPORT Event {
 public:
  Event(unsigned type, void* data) : _type(type), _data(data) {}
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;
  virtual ~Event();

  // Disposes of the event once it has been delivered, or can't be delivered any more; the base
  // version deletes it.
  virtual void destroy();

  unsigned type() const { return _type; }
  void* data() const { return _data; }

 private:
  unsigned _type;
  void* _data;
};

}  // namespace Pelago
