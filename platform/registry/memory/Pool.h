#pragma once

#include <memory>
#include <utility>
#include <vector>

namespace MemoryRegistry {

// Objects that are used again when they are given back: there are as many as were ever out at one
// time.
template <class Object>
class Pool {
 public:
  template <class... Arguments>
  Object* take(Arguments&&... arguments) {
    if (_idle.empty()) {
      _idle.reserve(_all.size() + 1);  // so that give() needs no memory
      _all.push_back(std::make_unique<Object>(std::forward<Arguments>(arguments)...));
      return _all.back().get();
    }
    Object* object = _idle.back();
    _idle.pop_back();
    return object;
  }

  void give(Object* object) noexcept { _idle.push_back(object); }

  const std::vector<std::unique_ptr<Object>>& all() const { return _all; }

 private:
  std::vector<std::unique_ptr<Object>> _all;
  std::vector<Object*> _idle;
};

}  // namespace MemoryRegistry
