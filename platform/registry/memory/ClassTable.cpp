#include "platform/registry/memory/ClassTable.h"

#include <algorithm>
#include <utility>

#include "platform/registry/memory/ClassChains.h"

namespace MemoryRegistry {

namespace {

std::vector<std::string_view> split(std::string_view chain) {
  std::vector<std::string_view> classes;
  for (std::size_t start = 0; start <= chain.size();) {
    const std::size_t end = std::min(chain.find(':', start), chain.size());
    classes.push_back(chain.substr(start, end - start));
    start = end + 1;
  }
  return classes;
}

template <class Text>
bool sameChain(const ClassInfo& info, const std::vector<Text>& inheritance) {
  return std::equal(info.chain.begin(), info.chain.end(), inheritance.begin(), inheritance.end(),
                    [](Symbol symbol, const Text& text) { return symbol->text == text; });
}

void addAncestor(ClassInfo& info, Symbol className) {
  const std::uint32_t number = classNumberOf(className);
  if (info.ancestors.size() <= number / 64U) info.ancestors.resize(number / 64U + 1U);
  info.ancestorWords = static_cast<std::uint32_t>(info.ancestors.size());
  info.ancestors[number / 64U] |= std::uint64_t{1} << (number % 64U);
}

}  // namespace

ClassTable& ClassTable::instance() {
  static ClassTable& table = *new ClassTable;  // never destroyed, as the symbols
  return table;
}

ClassInfo& ClassTable::find(const std::string& className,
                            const std::vector<std::string>& inheritance, bool hasState) {
  const Symbol name = MemoryRegistry::intern(className);
  if (inheritance.empty()) return lookUp(name, hasState);
  for (ClassInfo* known : _byName[name]) {
    if (sameChain(*known, inheritance)) return *known;
  }
  return intern({inheritance.begin(), inheritance.end()});
}

ClassInfo& ClassTable::lookUp(Symbol className, bool hasState) {
  auto& known = _lookedUp[hasState ? 1 : 0];
  if (const auto found = known.find(className); found != known.end()) return *found->second;

  std::vector<std::string_view> chain;
  if (const std::string_view recorded = recordedChain(className->text); !recorded.empty()) {
    chain = split(recorded);
  } else {
    chain = {"IORegistryEntry"};
    if (hasState) chain.emplace_back("IOService");
    chain.emplace_back(className->text);
  }
  return *known.emplace(className, &intern(chain)).first->second;
}

ClassInfo& ClassTable::intern(const std::vector<std::string_view>& inheritance) {
  auto& namesakes = _byName[MemoryRegistry::intern(inheritance.back())];
  for (ClassInfo* known : namesakes) {
    if (sameChain(*known, inheritance)) return *known;
  }
  auto info = std::make_unique<ClassInfo>();
  const Symbol service = MemoryRegistry::intern("IOService");
  addAncestor(*info, MemoryRegistry::intern("OSObject"));  // everybody's, and never printed
  for (const std::string_view name : inheritance) {
    info->chain.push_back(MemoryRegistry::intern(name));
    addAncestor(*info, info->chain.back());
    if (info->chain.back() == service) info->service = true;
  }
  namesakes.reserve(namesakes.size() + 1);
  _all.push_back(std::move(info));
  namesakes.push_back(_all.back().get());
  return *namesakes.back();
}

}  // namespace MemoryRegistry
