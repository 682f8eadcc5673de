#include <gtest/gtest.h>
#include <rapidcheck.h>

#include <algorithm>
#include <limits>

#include "application/record/ArchiveWriter.h"
#include "application/record/RegistryReader.h"
#include "platform/registry/memory/MemoryRegistry.h"
#include "platform/registry/memory/archive/Archive.h"

// Whatever a registry holds, the archive that is written of it is read as the same registry.

namespace ProgramTest {
namespace {

using MemoryRegistry::EntryID;
using MemoryRegistry::PropertyValue;
using Program::RecordedEntry;
using Program::RegistryLook;

void putBack(const std::string& archive) {
  MemoryRegistry::reset();
  MemoryRegistry::replaceContent(
      MemoryRegistry::parseArchive(archive.data(), archive.size(), "archive"));
}

enum class Parents { InOrder, InAnyOrder };

std::vector<std::size_t> sorted(std::vector<std::size_t> places) {
  std::sort(places.begin(), places.end());
  return places;
}

// Whether the links can be made one after the other, each beneath an entry that is there already,
// so that all children and all parents come in their order. Attaching and detaching can leave
// orders that contradict each other, which no archive can tell; then the children's counts.
Parents tellableParents(const RegistryLook& look) {
  std::vector<std::size_t> children(look.entries.size(), 0);
  std::vector<std::size_t> parents(look.entries.size(), 0);
  std::size_t left = 0;
  for (const auto& entry : look.entries)
    left += entry.children.size();
  for (bool moved = true; moved && left != 0;) {
    moved = false;
    for (std::size_t parent = 0; parent < look.entries.size(); ++parent) {
      const auto& beneath = look.entries[parent].children;
      if (parent != 0 && parents[parent] == 0) continue;
      while (children[parent] < beneath.size()) {
        const std::size_t child = beneath[children[parent]];
        if (look.entries[child].parents[parents[child]] != parent) break;
        ++children[parent];
        ++parents[child];
        --left;
        moved = true;
      }
    }
  }
  return left == 0 ? Parents::InOrder : Parents::InAnyOrder;
}

void expectSameEntry(const RecordedEntry& wanted, const RecordedEntry& found, Parents parents) {
  RC_ASSERT(wanted.id == found.id);
  RC_ASSERT(wanted.name == found.name);
  RC_ASSERT(wanted.location == found.location);
  RC_ASSERT(wanted.className == found.className);
  RC_ASSERT(wanted.inheritance == found.inheritance);
  RC_ASSERT(wanted.isMatched == found.isMatched);
  RC_ASSERT(wanted.children == found.children);
  if (parents == Parents::InOrder) {
    RC_ASSERT(wanted.parents == found.parents);
  } else {
    RC_ASSERT(sorted(wanted.parents) == sorted(found.parents));
  }
  RC_ASSERT(wanted.properties == found.properties);
}

void expectRoundTrip() {
  const RegistryLook before = Program::readRegistry().value();
  putBack(archiveOf(before));
  const RegistryLook after = Program::readRegistry().value();
  RC_ASSERT(before.entries.size() == after.entries.size());
  const Parents parents = tellableParents(before);
  for (std::size_t place = 0; place < before.entries.size(); ++place)
    expectSameEntry(before.entries[place], after.entries[place], parents);
}

// Few of each: there are many of them.
constexpr int FewElements = 4;

template <class Container, class Element>
rc::Gen<Container> few(const rc::Gen<Element>& element) {
  return rc::gen::resize(FewElements, rc::gen::container<Container>(element));
}

// Text as it can be in a property: everything but the end of a C string.
rc::Gen<std::string> text() {
  const auto character = rc::gen::element<std::string>("a", "Z", "0", " ", "<", ">", "&", "'", "\"",
                                                       "]]>", "\t", "\n", "\r", "\x1b", "\x7f",
                                                       "\u00fc", "\u20ac", "\U0001F4BE", "/", "@");
  return rc::gen::map(few<std::vector<std::string>>(character), [](auto pieces) {
    std::string joined;
    for (const std::string& piece : pieces)
      joined += piece;
    return joined;
  });
}

rc::Gen<PropertyValue> number() {
  return rc::gen::map(
      rc::gen::weightedOneOf<std::uint64_t>({{3, rc::gen::arbitrary<std::uint64_t>()},
                                             {1, rc::gen::just(std::uint64_t{0x7FFFFFFF})},
                                             {1, rc::gen::just(std::uint64_t{0x80000000})},
                                             {1, rc::gen::just(std::uint64_t{1} << 63U)},
                                             {1, rc::gen::just(~std::uint64_t{0})}}),
      [](std::uint64_t bits) {
        return PropertyValue(bits <= 0x7FFFFFFF
                                 ? MemoryRegistry::number32(static_cast<std::uint32_t>(bits))
                                 : MemoryRegistry::number64(bits));
      });
}

rc::Gen<PropertyValue> value(int depth) {
  const auto as = [](auto made) { return PropertyValue(std::move(made)); };
  std::vector<rc::Gen<PropertyValue>> kinds = {
      rc::gen::map(rc::gen::arbitrary<bool>(), as),
      number(),
      rc::gen::map(rc::gen::element(0.1, -1.5, 1e300, 5e-324, 3.0, 1.0 / 3), as),
      rc::gen::map(text(), as),
      rc::gen::map(rc::gen::arbitrary<MemoryRegistry::Data>(), as),
      rc::gen::just(PropertyValue(MemoryRegistry::Opaque{}))};
  if (depth > 0) {
    const auto inner = value(depth - 1);
    kinds.push_back(rc::gen::map(few<MemoryRegistry::Array>(inner), as));
    kinds.push_back(
        rc::gen::map(few<MemoryRegistry::Dictionary>(rc::gen::pair(text(), inner)), as));
  }
  const auto count = kinds.size();
  return rc::gen::mapcat(rc::gen::inRange<std::size_t>(0, count),
                         [kinds](std::size_t kind) { return kinds[kind]; });
}

const std::vector<std::vector<std::string>>& chains() {
  static const std::vector<std::vector<std::string>> all = {
      {"IORegistryEntry"},
      {"IORegistryEntry", "IOService"},
      {"IORegistryEntry", "IOService", "IOPCIDevice"},
      {"IORegistryEntry", "IOService", "IOStorage", "IOMedia"},
      {"IORegistryEntry", "IOService", "IOStorage", "AppleRAIDMember", "AppleRAIDSet", "Set"},
      {"IORegistryEntry", "Unheard"}};
  return all;
}

EntryID addSomewhere(const std::vector<EntryID>& entries) {
  MemoryRegistry::EntryDescription description;
  description.inheritance = *rc::gen::elementOf(chains());
  description.className = description.inheritance.back();
  description.name = *text();
  description.location = *text();
  if (description.inheritance.size() > 1 && *rc::gen::arbitrary<bool>()) {
    description.state = *rc::gen::element<std::uint32_t>(0, MemoryRegistry::Settled, 2, 0x1F);
  }
  for (const auto& [key, made] :
       *few<MemoryRegistry::Dictionary>(rc::gen::pair(text(), value(2)))) {
    description.properties.emplace_back(key, made);
  }
  return MemoryRegistry::add(*rc::gen::elementOf(entries), std::move(description));
}

// Links as a running system makes them: attached, detached, attached again further back.
void disturbLinks(const std::vector<EntryID>& entries) {
  const EntryID child = *rc::gen::elementOf(entries);
  const EntryID parent = *rc::gen::elementOf(entries);
  if (child == MemoryRegistry::root()) return;
  const std::vector<EntryID> parents = MemoryRegistry::parents(child);
  const bool linked = std::find(parents.begin(), parents.end(), parent) != parents.end();
  if (linked && parents.size() > 1) {
    MemoryRegistry::detach(child, parent);
    if (*rc::gen::arbitrary<bool>()) return;
  } else if (linked) {
    return;
  }
  try {
    MemoryRegistry::attach(child, parent);
  } catch (const std::invalid_argument&) {
    // It would have been beneath itself.
  }
}

TEST(ArchiveRoundTrip, KeepsEveryRegistry) {
  const bool held = rc::check("a registry is what its archive says", [] {
    MemoryRegistry::reset();
    std::vector<EntryID> entries = {MemoryRegistry::root()};
    const int count = *rc::gen::inRange(0, 14);
    for (int each = 0; each < count; ++each)
      entries.push_back(addSomewhere(entries));
    const int changes = *rc::gen::inRange(0, 40);
    for (int each = 0; each < changes; ++each)
      disturbLinks(entries);
    expectRoundTrip();
  });
  EXPECT_TRUE(held);
  MemoryRegistry::reset();
}

TEST(ArchiveRoundTrip, KeepsTheOrderOfParentsAgainstThatOfTheTree) {
  MemoryRegistry::reset();
  MemoryRegistry::EntryDescription service;
  service.className = "IOService";
  const auto add = [&service](EntryID parent, const char* name) {
    service.name = name;
    return MemoryRegistry::add(parent, service);
  };
  const EntryID first = add(MemoryRegistry::root(), "first");
  const EntryID second = add(MemoryRegistry::root(), "second");
  const EntryID set = add(second, "set");
  MemoryRegistry::attach(set, first);  // the member that came later
  add(first, "behind the set");
  putBack(archiveOf(Program::readRegistry().value()));
  EXPECT_EQ((std::vector<EntryID>{second, first}), MemoryRegistry::parents(set));
  EXPECT_EQ(2U, MemoryRegistry::children(first).size());
  EXPECT_EQ(set, MemoryRegistry::children(first).front());
  MemoryRegistry::reset();
}

}  // namespace
}  // namespace ProgramTest
