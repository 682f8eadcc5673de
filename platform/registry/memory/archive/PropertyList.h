#pragma once

#include <plist/plist.h>

#include <cstdlib>
#include <memory>

namespace MemoryRegistry {

struct FreePropertyList {
  void operator()(plist_t list) const { plist_free(list); }
};
using PropertyList = std::unique_ptr<void, FreePropertyList>;

struct FreeWithC {
  void operator()(void* memory) const { std::free(memory); }
};
using PropertyListText = std::unique_ptr<char, FreeWithC>;

// Walks the items of a dictionary: `for (auto item = items.next(); item.value; item =
// items.next())`.
class DictionaryItems {
 public:
  struct Item {
    PropertyListText key;  // libplist gives a key out as a copy only
    plist_t value = nullptr;
  };

  explicit DictionaryItems(plist_t dictionary) : _dictionary(dictionary) {
    plist_dict_iter iterator = nullptr;
    plist_dict_new_iter(dictionary, &iterator);
    _iterator.reset(iterator);
  }
  Item next() {
    Item item;
    char* key = nullptr;
    plist_dict_next_item(_dictionary, _iterator.get(), &key, &item.value);
    item.key.reset(key);
    return item;
  }

 private:
  plist_t _dictionary;
  std::unique_ptr<void, FreeWithC> _iterator;
};

// The same for the elements of an array; null has none.
class ArrayElements {
 public:
  explicit ArrayElements(plist_t array) : _array(array) {
    if (array == nullptr) return;
    plist_array_iter iterator = nullptr;
    plist_array_new_iter(array, &iterator);
    _iterator.reset(iterator);
  }
  plist_t next() {
    plist_t element = nullptr;
    if (_array == nullptr) return element;
    plist_array_next_item(_array, _iterator.get(), &element);
    return element;
  }

 private:
  plist_t _array;
  std::unique_ptr<void, FreeWithC> _iterator;
};

}  // namespace MemoryRegistry
