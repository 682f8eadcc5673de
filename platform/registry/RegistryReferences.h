#pragma once

#include <utility>

#include "platform/registry/Registry.h"

namespace RAIDMonitoring {

// Keeps the one reference of a registry handle and gives it back at the end.
//
// Ownership: adopt() takes over the reference that the caller has; release() hands it back to the
//            caller. A reference that is kept on purpose is one that was released and not passed
//            on.
class RegistryHandle {
 public:
  RegistryHandle() = default;
  static RegistryHandle adopt(io_object_t object) { return RegistryHandle(object); }

  RegistryHandle(RegistryHandle&& other) noexcept : _object(std::exchange(other._object, 0U)) {}
  RegistryHandle& operator=(RegistryHandle&& other) noexcept {
    if (this != &other) {
      reset();
      _object = std::exchange(other._object, 0U);
    }
    return *this;
  }
  RegistryHandle(const RegistryHandle&) = delete;
  RegistryHandle& operator=(const RegistryHandle&) = delete;
  ~RegistryHandle() { reset(); }

  io_object_t get() const { return _object; }
  explicit operator bool() const { return _object != 0; }

  [[nodiscard]] io_object_t release() { return std::exchange(_object, 0U); }

  // Keeps the reference for ever: it is taken out of the account on purpose.
  void keep() { _object = 0; }

  void reset() {
    if (_object != 0) IOObjectRelease(std::exchange(_object, 0U));
  }

  // For operations that return a handle through a pointer. Gives back what was held before.
  io_object_t* receive() {
    reset();
    return &_object;
  }

 private:
  explicit RegistryHandle(io_object_t object) : _object(object) {}

  io_object_t _object = 0;
};

// The same for a CoreFoundation value, which may be null.
template <class Ref>
class CFReference {
 public:
  CFReference() = default;
  static CFReference adopt(Ref value) { return CFReference(value); }

  CFReference(CFReference&& other) noexcept : _value(std::exchange(other._value, nullptr)) {}
  CFReference& operator=(CFReference&& other) noexcept {
    if (this != &other) {
      reset();
      _value = std::exchange(other._value, nullptr);
    }
    return *this;
  }
  CFReference(const CFReference&) = delete;
  CFReference& operator=(const CFReference&) = delete;
  ~CFReference() { reset(); }

  Ref get() const { return _value; }
  explicit operator bool() const { return _value != nullptr; }
  [[nodiscard]] Ref release() { return std::exchange(_value, nullptr); }
  void reset() {
    if (_value != nullptr) CFRelease(std::exchange(_value, nullptr));
  }

 private:
  explicit CFReference(Ref value) : _value(value) {}

  Ref _value = nullptr;
};

}  // namespace RAIDMonitoring
