#pragma once

#include <utility>

#include "platform/registry/Registry.h"

namespace RAIDMonitoring {

// Keeps the one reference of a registry handle and gives it back at the end.
//
// Ownership: adopt() takes over the reference that the caller has; release() hands it back to the
//            caller. A reference that is kept on purpose is one that was released and not passed
//            on.
// Thread:    as the seam: one thread at a time.
// Failure:   nothing here fails; 0 is held as nothing.
//
// \code
// // Whether the entry's first child is of that class.
// bool beginsWith(io_registry_entry_t entry, const io_name_t className) {
//   RAIDMonitoring::RegistryHandle child;
//   IORegistryEntryGetChildEntry(entry, "IOService", child.receive());
//   return child && IOObjectConformsTo(child.get(), className) != 0;
// }
// \endcode
class RegistryHandle {
 public:
  // Holds nothing.
  RegistryHandle() = default;

  // Takes over the reference of a handle that the caller has, or 0.
  static RegistryHandle adopt(io_object_t object) { return RegistryHandle(object); }

  // The other holds nothing afterwards; what this one held is given back.
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

  // The handle, or 0; its reference stays here.
  io_object_t get() const { return _object; }

  // Whether it holds anything.
  explicit operator bool() const { return _object != 0; }

  // The handle with its reference, which is the caller's from now on; 0 when nothing is held.
  [[nodiscard]] io_object_t release() { return std::exchange(_object, 0U); }

  // Keeps the reference for ever: it is taken out of the account on purpose.
  void keep() { _object = 0; }

  // Gives the reference back now.
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
//
// Ownership: adopt() is for what an operation named Create or Copy returns; release() hands the
//            value to the caller, who then owes the CFRelease.
// Thread:    as the seam: one thread at a time.
// Failure:   nothing here fails; null is held as nothing.
//
// \code
// // Whether the entry has the property, whatever it says.
// bool has(io_registry_entry_t entry, CFStringRef key) {
//   using Value = RAIDMonitoring::CFReference<CFTypeRef>;
//   return bool(Value::adopt(IORegistryEntryCreateCFProperty(entry, key, kCFAllocatorDefault, 0)));
// }
// \endcode
template <class Ref>
class CFReference {
 public:
  // Holds nothing.
  CFReference() = default;

  // Takes over a value that the caller has to release, or null.
  static CFReference adopt(Ref value) { return CFReference(value); }

  // The other holds nothing afterwards; what this one held is released.
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

  // The value, or null; it stays here.
  Ref get() const { return _value; }

  // Whether it holds anything.
  explicit operator bool() const { return _value != nullptr; }

  // The value, for the caller to release; null when nothing is held.
  [[nodiscard]] Ref release() { return std::exchange(_value, nullptr); }

  // Releases it now.
  void reset() {
    if (_value != nullptr) CFRelease(std::exchange(_value, nullptr));
  }

 private:
  explicit CFReference(Ref value) : _value(value) {}

  Ref _value = nullptr;
};

}  // namespace RAIDMonitoring
