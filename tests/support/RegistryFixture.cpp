#include "tests/support/RegistryFixture.h"

#include <cstdio>
#include <string>

namespace TestSupport {

namespace {

using KeptByEntry = std::map<MemoryRegistry::EntryID, std::uint64_t>;

std::string describe(MemoryRegistry::EntryID id) {
  const std::string where = MemoryRegistry::contains(id) ? MemoryRegistry::path(id) : "terminated";
  return std::to_string(id) + " (" + where + ")";
}

// One line per difference, so that a failure names the entry.
void compare(const KeptByEntry& declared, const KeptByEntry& held) {
  for (const auto& [id, references] : declared) {
    const auto found = held.find(id);
    EXPECT_EQ(references, found == held.end() ? 0 : found->second)
        << "references held on entry " << describe(id);
  }
  for (const auto& [id, references] : held) {
    if (declared.count(id) != 0) continue;
    ADD_FAILURE() << references << " references held on entry " << describe(id)
                  << ", which nobody declared";
  }
}

}  // namespace

RegistryFixture::RegistryFixture()
    : _application((MemoryRegistry::reset(), std::make_unique<Pelago::Application>(_clock))),
      _pump(*_application) {}

// What GoogleTest says of a failure goes to standard output, too: it must not be lost. The
// application ends before the registry, because it gives back what its events carry.
RegistryFixture::~RegistryFixture() {
  const std::string text = _output.text();
  _output.end();
  if (HasFailure()) std::fputs(text.c_str(), stdout);
  _application.reset();
  MemoryRegistry::reset();
}

void RegistryFixture::TearDown() { settle(); }

void RegistryFixture::expectKept(MemoryRegistry::EntryID entry, std::uint64_t references) {
  if (references != 0) _kept[entry] += references;
}

void RegistryFixture::settle() const {
  const MemoryRegistry::Accounts accounts = MemoryRegistry::accounts();
  KeptByEntry held;
  for (const auto& kept : accounts.entries)
    held[kept.id] = kept.references;
  compare(_kept, held);
  EXPECT_EQ(_iterators, accounts.iterators) << "iterators held";
  EXPECT_EQ(_values, accounts.values) << "values held";
  EXPECT_EQ(_queued, _application->queuedEvents()) << "events queued";
}

}  // namespace TestSupport
