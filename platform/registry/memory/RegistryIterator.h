#pragma once

namespace MemoryRegistry {

struct Entry;

// What an iterator handle stands for.
class RegistryIterator {
 public:
  RegistryIterator() = default;
  RegistryIterator(const RegistryIterator&) = delete;
  RegistryIterator& operator=(const RegistryIterator&) = delete;
  virtual ~RegistryIterator() = default;

  virtual Entry* next() = 0;  // null at the end
  virtual bool isValid() = 0;
  virtual void reset() = 0;
  // The last reference is gone; the iterator may be used for another walk.
  virtual void recycle() noexcept = 0;
};

}  // namespace MemoryRegistry
