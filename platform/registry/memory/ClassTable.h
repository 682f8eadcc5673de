#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "platform/registry/memory/Symbol.h"

namespace MemoryRegistry {

struct Entry;

// One distinct inheritance, shared by all entries that have it.
struct ClassInfo {
  std::vector<Symbol> chain;  // root first, ending in the class itself
  // A bit for each class of the chain, and OSObject's; and how many words there are.
  std::vector<std::uint64_t> ancestors;
  std::uint32_t ancestorWords = 0;
  bool service = false;        // derived from IOService
  Entry* instances = nullptr;  // a list through Entry::nextOfClass, in no order

  Symbol name() const { return chain.back(); }
  bool derivesFrom(const ClassMark& mark) const {
    return mark.word < ancestorWords && (ancestors[mark.word] & mark.bit) != 0;
  }
  bool derivesFrom(std::uint32_t classNumber) const { return derivesFrom(ClassMark(classNumber)); }
};

// All inheritances met so far. One per process; what it hands out lives for ever.
class ClassTable {
 public:
  static ClassTable& instance();

  // The class with the inheritance given, or with the one looked up when that is empty: the
  // recorded one, else below IOService when it has a service's state, else below IORegistryEntry.
  ClassInfo& find(const std::string& className, const std::vector<std::string>& inheritance,
                  bool hasState);

  const std::vector<std::unique_ptr<ClassInfo>>& all() const { return _all; }

 private:
  ClassInfo& lookUp(Symbol className, bool hasState);
  ClassInfo& intern(const std::vector<std::string_view>& inheritance);

  std::vector<std::unique_ptr<ClassInfo>> _all;
  std::unordered_map<Symbol, std::vector<ClassInfo*>> _byName;
  std::unordered_map<Symbol, ClassInfo*> _lookedUp[2];  // without a state, with one
};

}  // namespace MemoryRegistry
