#pragma once

#include <utility>

namespace Pelago {

// Keeps one reference on an object for as long as it lives: the holder for code between whose
// steps an exception may pass.
//
// Ownership: the constructor takes a reference of its own, adopt() takes over one that the caller
//            has; release() hands it to the caller, who then owes the deref().
template <class T>
class Reference {
 public:
  Reference() = default;
  explicit Reference(T* object) : _object(object) {
    if (_object != nullptr) _object->ref();
  }
  static Reference adopt(T* object) {
    Reference reference;
    reference._object = object;
    return reference;
  }
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

  T* get() const { return _object; }
  T* operator->() const { return _object; }
  explicit operator bool() const { return _object != nullptr; }

  [[nodiscard]] T* release() { return std::exchange(_object, nullptr); }
  void reset() {
    if (_object != nullptr) std::exchange(_object, nullptr)->deref();
  }

 private:
  T* _object = nullptr;
};

}  // namespace Pelago
