#include "platform/registry/memory/MemoryRegistry.h"

#include <algorithm>
#include <utility>

#include "platform/registry/memory/CFObjects.h"
#include "platform/registry/memory/Graph.h"
#include "platform/registry/memory/OperationLog.h"
#include "platform/registry/memory/RegistryPath.h"

namespace MemoryRegistry {

namespace {

Graph& graph() { return Graph::instance(); }

std::vector<EntryID> idsOf(const Links& links) {
  std::vector<EntryID> ids;
  ids.reserve(links.entries.size());
  for (const Entry* entry : links.entries)
    ids.push_back(entry->id);
  return ids;
}

bool standsForEntry(const Slot& slot) {
  return slot.kind == Slot::Kind::Entry || slot.kind == Slot::Kind::Dead;
}

EntryID idOf(const Slot& slot) {
  return slot.kind == Slot::Kind::Entry ? slot.entry->id : slot.deadID;
}

// By ID; where an ID has vanished and come back, the entries that bore it in the order of their
// ends, the one that lives last.
bool comesBefore(const Slot* a, const Slot* b) {
  if (idOf(*a) != idOf(*b)) return idOf(*a) < idOf(*b);
  if (a->kind != b->kind) return a->kind == Slot::Kind::Dead;
  return a->retirement < b->retirement;
}

}  // namespace

// ---- Building and changing --------------------------------------------------------------------

void reset() {
  graph().reset();
  forgetLiveValues();
  OperationLog::instance().reset();
}

EntryID root() { return graph().root().id; }

EntryID add(EntryID parent, EntryDescription description) {
  return graph().add(graph().require(parent), std::move(description)).id;
}

void attach(EntryID child, EntryID parent) {
  graph().link(graph().require(child), graph().require(parent));
}

void detach(EntryID child, EntryID parent) {
  graph().unlink(graph().require(child), graph().require(parent));
}

void terminate(EntryID entry) { graph().terminate(graph().require(entry)); }

void setProperty(EntryID entry, const std::string& key, PropertyValue value) {
  storeProperty(graph().require(entry).facts, intern(key), std::move(value));
}

void removeProperty(EntryID entry, const std::string& key) {
  EntryFacts& facts = graph().require(entry).facts;
  if (const Symbol symbol = findSymbol(key)) eraseProperty(facts, symbol);
}

void setName(EntryID entry, const std::string& name) {
  EntryFacts& facts = graph().require(entry).facts;
  facts.name = intern(name);
}

void setLocation(EntryID entry, const std::string& location) {
  graph().require(entry).facts.location = location.empty() ? nullptr : intern(location);
}

void setState(EntryID entry, std::uint32_t state) {
  EntryFacts& facts = graph().require(entry).facts;
  facts.state = state;
  facts.hasState = true;
}

void replaceContent(RegistryContent content) { graph().replace(std::move(content)); }

// ---- Looking, without references --------------------------------------------------------------

bool contains(EntryID entry) { return graph().find(entry) != nullptr; }

std::size_t entryCount() { return graph().size(); }

std::vector<EntryID> children(EntryID entry) { return idsOf(graph().require(entry).children); }

std::vector<EntryID> parents(EntryID entry) { return idsOf(graph().require(entry).parents); }

std::string path(EntryID entry) {
  return std::string(RegistryPath(graph(), graph().require(entry)).text());
}

unsigned int handle(EntryID entry) {
  const Entry* found = graph().find(entry);
  return found != nullptr ? graph().hold(*found) : 0;
}

EntryID entryOf(unsigned int handle) {
  const Slot* slot = HandleTable::held(handle);
  return slot != nullptr && slot->kind == Slot::Kind::Entry ? slot->entry->id : 0;
}

// ---- Accounts ---------------------------------------------------------------------------------

Accounts accounts() {
  Accounts accounts;
  std::vector<const Slot*> kept;
  for (const Slot& slot : graph().handles().slots()) {
    if (slot.isIterator()) ++accounts.iterators;
    if (standsForEntry(slot) && slot.references != 0) kept.push_back(&slot);
  }
  std::sort(kept.begin(), kept.end(), comesBefore);
  for (const Slot* slot : kept)
    accounts.entries.push_back({idOf(*slot), slot->references});
  accounts.values = liveValues();
  return accounts;
}

std::uint64_t references(EntryID entry) {
  std::uint64_t sum = 0;
  for (const Slot& slot : graph().handles().slots()) {
    if (standsForEntry(slot) && idOf(slot) == entry) sum += slot.references;
  }
  return sum;
}

std::uint64_t calls(Operation operation) { return OperationLog::instance().calls(operation); }

std::uint64_t calls() { return OperationLog::instance().calls(); }

// ---- Failing on demand ------------------------------------------------------------------------

void failCall(Operation operation, std::uint64_t n, Repeat repeat, Failure failure) {
  OperationLog::instance().fail(operation, n, repeat, failure);
}

void failAnyCall(std::uint64_t n, Repeat repeat, Failure failure) {
  OperationLog::instance().fail(std::nullopt, n, repeat, failure);
}

void failNothing() { OperationLog::instance().failNothing(); }

}  // namespace MemoryRegistry
