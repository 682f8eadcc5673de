#include "application/record/PrintPlan.h"

#include <numeric>

namespace Program {
namespace {

class PrintPlanner {
 public:
  explicit PrintPlanner(const RegistryLook& look)
      : _look(look),
        _linkedChildren(look.entries.size(), 0),
        _linkedParents(look.entries.size(), 0) {}

  EntryPrint plan() {
    const std::size_t links = std::accumulate(
        _look.entries.begin(), _look.entries.end(), std::size_t{0},
        [](std::size_t sum, const auto& entry) { return sum + entry.children.size(); });
    EntryPrint top;
    while (_links < links) {
      const std::size_t before = _links;
      _entered.assign(_look.entries.size(), false);
      enter(top);
      // Orders that contradict each other: the children's is kept.
      if (_links == before) _parentsInAnyOrder = true;
    }
    return top;
  }

 private:
  void enter(EntryPrint& print) {
    const std::vector<std::size_t>& children = _look.entries[print.entry].children;
    _entered[print.entry] = true;
    for (std::size_t index = 0; index < children.size(); ++index) {
      const bool isNew = index == _linkedChildren[print.entry];
      EntryPrint child;
      child.entry = children[index];
      child.isFirst = _linkedParents[child.entry] == 0;
      // Children are linked in their order: the rest waits, too.
      if (isNew && !link(print.entry, child.entry)) return;
      if (!_entered[child.entry]) enter(child);
      if (isNew || !child.beneath.empty()) print.beneath.push_back(std::move(child));
    }
  }

  bool link(std::size_t parent, std::size_t child) {
    std::size_t& linked = _linkedParents[child];
    if (!_parentsInAnyOrder && _look.entries[child].parents[linked] != parent) return false;
    ++linked;
    ++_linkedChildren[parent];
    ++_links;
    return true;
  }

  const RegistryLook& _look;
  std::vector<std::size_t> _linkedChildren;  // how many of each entry's children are
  std::vector<std::size_t> _linkedParents;
  std::vector<bool> _entered;  // in this round
  std::size_t _links = 0;
  bool _parentsInAnyOrder = false;
};

}  // namespace

EntryPrint planPrints(const RegistryLook& look) { return PrintPlanner(look).plan(); }

}  // namespace Program
