#include "platform/registry/memory/Symbol.h"

#include <memory>
#include <unordered_map>
#include <utility>

namespace MemoryRegistry {

namespace {

struct SymbolTable {
  std::unordered_map<std::string_view, std::unique_ptr<SymbolText>> symbols;
  std::uint32_t classes = 0;
};

// Never destroyed: symbols are used until the last static object is gone.
SymbolTable& table() {
  static SymbolTable& symbols = *new SymbolTable;
  return symbols;
}

}  // namespace

Symbol intern(std::string_view text) {
  auto& symbols = table().symbols;
  if (const auto known = symbols.find(text); known != symbols.end()) return known->second.get();
  auto symbol = std::make_unique<SymbolText>(text);
  const std::string_view key = symbol->text;
  return symbols.emplace(key, std::move(symbol)).first->second.get();
}

Symbol findSymbol(std::string_view text) {
  const auto& symbols = table().symbols;
  const auto known = symbols.find(text);
  return known == symbols.end() ? nullptr : known->second.get();
}

std::uint32_t classNumberOf(Symbol className) {
  if (className->classNumber == NoClassNumber) {
    table().symbols.at(className->text)->classNumber = table().classes++;
  }
  return className->classNumber;
}

ClassMark classMarkOf(const char* className, std::size_t length) {
  const std::uint32_t number = classNumberOf(intern({className, length}));
  if (length >= RecentClassName::Word && length <= RecentClassName::Longest) {
    recentPlaceOf(className) = RecentClassName({className, length}, number);
  }
  return ClassMark(number);
}

}  // namespace MemoryRegistry
