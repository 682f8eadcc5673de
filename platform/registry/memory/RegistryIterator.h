#pragma once

#include <cstdint>

namespace MemoryRegistry {

// What an iterator handle stands for.
class RegistryIterator {
 public:
  RegistryIterator() = default;
  RegistryIterator(const RegistryIterator&) = delete;
  RegistryIterator& operator=(const RegistryIterator&) = delete;
  virtual ~RegistryIterator() = default;

  virtual std::uint32_t next() = 0;  // the handle of an entry, unheld; 0 at the end
  virtual bool isValid() = 0;
  virtual void reset() = 0;
  // The last reference is gone; the iterator may be used for another walk.
  virtual void recycle() noexcept = 0;
};

}  // namespace MemoryRegistry
