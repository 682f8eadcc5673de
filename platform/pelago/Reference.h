#pragma once

#include <utility>

namespace Pelago {

// Keeps one reference on an object for as long as it lives: the holder for code between whose
// steps an exception may pass.
//
// Ownership: the constructor takes a reference of its own, adopt() takes over one that the caller
//            has; release() hands it to the caller, who then owes the deref().
// Thread:    the event thread only, as for the object that it holds.
// Failure:   nothing here fails. One that holds nothing must not be looked through (`->`).
//
// \code
// #include "model/RAIDVolume.h"
// #include "monitor/RAIDMonitorClient.h"
//
// // Keeps the last volume that was told of, for longer than the call.
// class LastVolume : public RAIDMonitoring::RAIDMonitorClient {
//  public:
//   void RAIDAppeared(RAIDMonitoring::RAIDVolume* volume) override { keep(volume); }
//   void RAIDUpdated(RAIDMonitoring::RAIDVolume* volume) override { keep(volume); }
//   void RAIDDisappeared(RAIDMonitoring::RAIDVolume* volume) override {
//     if (_volume.get() == volume) _volume.reset();
//   }
//
//  private:
//   using Kept = Pelago::Reference<RAIDMonitoring::RAIDVolume>;
//   void keep(RAIDMonitoring::RAIDVolume* volume) { _volume = Kept(volume); }
//
//   Kept _volume;
// };
// \endcode
template <class T>
class Reference {
 public:
  // Holds nothing.
  Reference() = default;

  // Takes a reference on the object, unless that is null.
  explicit Reference(T* object) : _object(object) {
    if (_object != nullptr) _object->ref();
  }

  // Takes over a reference that the caller has, or null.
  static Reference adopt(T* object) {
    Reference reference;
    reference._object = object;
    return reference;
  }

  // The other holds nothing afterwards; what this one held is given back.
  Reference(Reference&& other) noexcept : _object(std::exchange(other._object, nullptr)) {}
  Reference& operator=(Reference&& other) noexcept {
    if (this != &other) {
      reset();
      _object = std::exchange(other._object, nullptr);
    }
    return *this;
  }

  Reference(const Reference&) = delete;
  Reference& operator=(const Reference&) = delete;
  ~Reference() { reset(); }

  // The object, or null; the reference stays here.
  T* get() const { return _object; }
  T* operator->() const { return _object; }

  // Whether it holds anything.
  explicit operator bool() const { return _object != nullptr; }

  // The object with its reference, which is the caller's from now on; null when nothing is held.
  [[nodiscard]] T* release() { return std::exchange(_object, nullptr); }

  // Gives the reference back now.
  void reset() {
    if (_object != nullptr) std::exchange(_object, nullptr)->deref();
  }

 private:
  T* _object = nullptr;
};

}  // namespace Pelago
