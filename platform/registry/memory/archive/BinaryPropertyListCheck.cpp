#include "platform/registry/memory/archive/BinaryPropertyListCheck.h"

#include <algorithm>
#include <cstdint>
#include <vector>

#include "platform/registry/memory/archive/ArchiveLimits.h"
#include "platform/registry/memory/archive/BinaryObjects.h"
#include "platform/registry/memory/archive/Refusal.h"
#include "platform/registry/memory/archive/Text.h"

namespace MemoryRegistry {
namespace {

// What an object stands for once every reference to it is a copy.
struct Expansion {
  std::uint64_t cost = 0;    // in memory
  std::uint32_t nodes = 0;   // itself included; 0 while it isn't known
  std::uint32_t height = 0;  // containers on the longest way down
  // Levels above each node, summed: libplist looks through them all, at some 10 ns each.
  std::uint64_t searches = 0;
};

// Goes through the objects once each, depth first, with a stack of its own.
class Check {
 public:
  Check(const char* data, std::size_t size, std::uint64_t memoryLimit)
      : _objects(data, size),
        _limit(memoryLimit - std::min<std::uint64_t>(size, memoryLimit)),
        _searchLimit(std::max<std::uint64_t>(200'000'000, std::uint64_t{20} * size)),
        _expansions(_objects.count()) {}

  void run() {
    open(_objects.top());
    while (!_open.empty()) {
      if (_open.back().next < _open.back().object.references) {
        descend();
      } else {
        close();
      }
    }
  }

 private:
  struct Level {
    std::size_t number;
    BinaryObject object;
    std::size_t next;
    Expansion expansion;
  };

  static constexpr std::uint32_t isOpen = UINT32_MAX;

  [[noreturn]] static void failOnSize() { throw TooRepetitive(); }

  static bool isContainer(const BinaryObject& object) {
    return object.kind == BinaryObject::Kind::Array ||
           object.kind == BinaryObject::Kind::Dictionary;
  }

  static std::uint64_t ownCost(const BinaryObject& object) {
    switch (object.kind) {
      case BinaryObject::Kind::Array:
      case BinaryObject::Kind::Dictionary:
        return containerCost;
      // A unit of UTF-16 becomes up to three bytes.
      case BinaryObject::Kind::WideString:
        return textCost + 3 * std::uint64_t{object.bytes};
      default:
        return textCost + 2 * std::uint64_t{object.bytes};
    }
  }

  void open(std::size_t number) {
    const BinaryObject object = _objects.object(number);
    const bool contains = isContainer(object);
    if (contains && _open.size() == deepestContainer) {
      throw Refusal("is nested deeper than " + decimal(deepestEntry) + " levels");
    }
    Expansion expansion;
    expansion.cost = ownCost(object);
    expansion.nodes = 1;
    expansion.height = contains ? 1 : 0;
    // Every object met costs this much at least once. Counted before time is spent on it, so that
    // objects which overlap can't cost more time than they would memory.
    _met += expansion.cost + std::uint64_t{object.references} * scalarCost / 2;
    if (_met > _limit) failOnSize();
    if (object.isString()) _objects.checkString(object);
    _expansions[number].nodes = isOpen;
    _open.push_back({number, object, 0, expansion});
  }

  void descend() {
    Level& level = _open.back();
    const std::size_t number = _objects.reference(level.object, level.next);
    const Expansion& known = _expansions[number];
    if (known.nodes == isOpen) throw Refusal("has an object within itself");
    const bool isKey = level.object.kind == BinaryObject::Kind::Dictionary &&
                       level.next < level.object.references / 2;
    if (isKey && !_objects.object(number).isString()) {
      throw Refusal("has a key that is no string");
    }
    if (known.nodes == 0) return open(number);
    add(known, level.expansion);
    ++level.next;
  }

  void close() {
    const Level level = _open.back();
    _open.pop_back();
    _expansions[level.number] = level.expansion;
  }

  void add(const Expansion& part, Expansion& whole) const {
    whole.cost += part.cost;
    whole.nodes += part.nodes;
    whole.height = std::max(whole.height, part.height + 1);
    whole.searches += part.searches + part.nodes;
    if (whole.cost > _limit) failOnSize();
    if (whole.height > deepestContainer) {
      throw Refusal("is nested deeper than " + decimal(deepestEntry) + " levels");
    }
    if (whole.searches > _searchLimit) throw Refusal("is nested too deeply too often");
  }

  BinaryObjects _objects;
  std::uint64_t _limit;
  std::uint64_t _searchLimit;
  std::uint64_t _met = 0;
  std::vector<Expansion> _expansions;  // by number
  std::vector<Level> _open;
};

}  // namespace

void checkBinaryPropertyList(const char* data, std::size_t size, std::uint64_t memoryLimit) {
  Check(data, size, memoryLimit).run();
}

}  // namespace MemoryRegistry
