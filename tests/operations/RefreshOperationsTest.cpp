// The work of one refresh, counted operation by operation against the formula of
// docs/performance.md. An operation too many is as wrong as one too few.

#include <gtest/gtest.h>

#include <random>
#include <sstream>

#include "model/RAIDHost.h"
#include "tests/operations/OperationFormula.h"
#include "tests/support/HeldDevice.h"
#include "tests/support/RegistryFixture.h"

using namespace TestSupport;

namespace {

class RefreshOperations : public RegistryFixture {
 protected:
  // The operations of one refresh of the enclosure's device, at the second time, when all is on
  // file.
  OperationCounts measure(const GeneratedEnclosure& enclosure) {
    HeldDevice device(enclosure.uid);
    device->refresh();
    const OperationCounts before = countedOperations();
    const MemoryRegistry::Accounts held = MemoryRegistry::accounts();
    device->refresh();
    OperationCounts counts = countedOperations();
    for (std::size_t number = 0; number < counts.size(); ++number)
      counts[number] -= before[number];
    expectNothingHeldSince(held, enclosure, counts);
    return counts;
  }

  // No value and no iterator is left, and of entries those references that are kept on purpose: one
  // on the bridge for each look-up, one on a stripe set's child for each check.
  static void expectNothingHeldSince(const MemoryRegistry::Accounts& before,
                                     const GeneratedEnclosure& enclosure,
                                     const OperationCounts& counts) {
    const MemoryRegistry::Accounts after = MemoryRegistry::accounts();
    EXPECT_EQ(before.values, after.values);
    EXPECT_EQ(before.iterators, after.iterators);
    EXPECT_EQ(
        sumOf(before) +
            counts[static_cast<std::size_t>(MemoryRegistry::Operation::IORegistryEntryFromPath)] +
            counts[static_cast<std::size_t>(
                MemoryRegistry::Operation::IORegistryEntryGetChildEntry)],
        sumOf(after))
        << "enclosure " << enclosure.uid;
  }

  void TearDown() override {
    for (const auto& kept : MemoryRegistry::accounts().entries)
      expectKept(kept.id, kept.references);  // judged by expectNothingHeldSince()
    RegistryFixture::TearDown();
  }

 private:
  static std::uint64_t sumOf(const MemoryRegistry::Accounts& accounts) {
    std::uint64_t sum = 0;
    for (const auto& kept : accounts.entries)
      sum += kept.references;
    return sum;
  }
};

std::string textOf(const EnclosureShape& shape) {
  std::ostringstream text;
  text << shape.entries << " entries;";
  for (const SetShape& set : shape.sets) {
    text << (set.isStripe ? " stripe " : " mirror ") << set.present << " of " << set.members;
  }
  return text.str();
}

void expectNoExcess(const OperationCounts& expected, const OperationCounts& counted,
                    const std::string& what) {
  for (std::size_t number = 0; number < counted.size(); ++number) {
    EXPECT_EQ(expected[number], counted[number]) << "operation " << number << " of " << what;
  }
}

const EnclosureShape shapes[] = {
    {{}, 10},
    {{{1, 1, false}}, 0},
    {{{2, 2, false}}, 60},
    {{{2, 1, false}}, 60},
    {{{2, 2, true}}, 60},
    {{{5, 5, true}}, 200},
    {{{3, 3, false}, {2, 2, false}}, 150},
    {{{3, 2, true}, {2, 1, false}}, 150},
    {{{4, 1, false}, {4, 4, true}, {1, 1, false}}, 400},
    {{{16, 9, true}, {2, 2, true}}, 1000},
};

}  // namespace

TEST_F(RefreshOperations, AreThoseOfTheFormulaForEachKindOfOperation) {
  for (const EnclosureShape& shape : shapes) {
    GeneratedRegistry registry;
    const GeneratedEnclosure enclosure = registry.add(shape);
    expectNoExcess(operationsOfRefresh(enclosure), measure(enclosure), textOf(shape));
    MemoryRegistry::reset();
  }
}

TEST_F(RefreshOperations, AreThoseOfTheFormulaForRandomEnclosures) {
  for (unsigned seed = 0; seed < 50; ++seed) {
    std::mt19937 random(seed);
    EnclosureShape shape;
    shape.entries = random() % 300;
    for (auto sets = random() % 4; sets > 0; --sets) {
      const std::size_t members = 1 + random() % 6;
      shape.sets.push_back({members, 1 + random() % members, random() % 2 == 0});
    }
    GeneratedRegistry registry;
    const GeneratedEnclosure enclosure = registry.add(shape);
    expectNoExcess(operationsOfRefresh(enclosure), measure(enclosure),
                   "seed " + std::to_string(seed) + ": " + textOf(shape));
    MemoryRegistry::reset();
  }
}

// The enclosure that the tables of docs/performance.md are about.
TEST_F(RefreshOperations, OfTheFiveBayEnclosureAreThoseOfTheTable) {
  GeneratedRegistry registry;
  const GeneratedEnclosure enclosure = registry.add(fiveBayShape());
  const OperationCounts counted = measure(enclosure);
  std::uint64_t sum = 0;
  for (const std::uint64_t count : counted)
    sum += count;
  using MemoryRegistry::Operation;
  const auto of = [&](Operation operation) { return counted[static_cast<std::size_t>(operation)]; };
  EXPECT_EQ(19u, of(Operation::IORegistryEntryFromPath));
  EXPECT_EQ(2127u, of(Operation::IOIteratorNext));
  EXPECT_EQ(90u, of(Operation::IORegistryEntryCreateCFProperty));
  EXPECT_EQ(7180u, sum);
}
