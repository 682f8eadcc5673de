#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "tests/slots/ClassDump.h"
#include "tests/slots/ProjectFiles.h"
#include "tests/slots/SourceClasses.h"
#include "tests/slots/StatedClasses.h"

namespace SlotsTest {
namespace {

// The probe's class is there for its slots only.
bool isOfTheLibraries(const StatedClass& stated) { return stated.name.rfind("Probe::", 0) != 0; }

std::string withoutNamespace(const std::string& name) { return name.substr(name.find(':') + 2); }

std::vector<SourceClass> libraryClasses() {
  std::vector<SourceClass> all;
  for (const std::string& source : librarySources()) {
    const std::vector<SourceClass> classes = classesIn(source);
    all.insert(all.end(), classes.begin(), classes.end());
  }
  return all;
}

TEST(BinaryInterface, TheVirtualOperationsOfEveryClassHaveTheStatedOrder) {
  const VirtualTables tables = virtualTablesIn(contentOf(CLASS_DUMP));
  for (const StatedClass& stated : statedClasses()) {
    const auto found = tables.find(stated.name);
    if (found == tables.end()) {
      ADD_FAILURE() << stated.name << " has no virtual table in " << CLASS_DUMP
                    << ": has it gone, or does tests/slots/Probe.cpp not use it?";
      continue;
    }
    EXPECT_TRUE(fits(found->second, stated.slots))
        << stated.name << ": " << testing::PrintToString(found->second)
        << "\n  stated: " << testing::PrintToString(stated.slots);
  }
}

TEST(BinaryInterface, TheCompilerKnowsNoPolymorphicClassWithoutAStatedOrder) {
  for (const auto& [name, slots] : virtualTablesIn(contentOf(CLASS_DUMP))) {
    const auto& all = statedClasses();
    EXPECT_TRUE(std::any_of(all.begin(), all.end(),
                            [&, &seen = name](const auto& stated) { return stated.name == seen; }))
        << name << " is not in tests/slots/StatedClasses.cpp: " << testing::PrintToString(slots);
  }
}

// The compiler sees what the probe includes; the sources say what there is, the classes inside .cpp
// files included: a class with virtual operations belongs in a header.
TEST(BinaryInterface, TheSourcesHaveNoPolymorphicClassWithoutAStatedOrder) {
  std::set<std::string> names;
  for (const StatedClass& stated : statedClasses()) {
    if (isOfTheLibraries(stated)) names.insert(withoutNamespace(stated.name));
  }
  EXPECT_EQ(names, polymorphicAmong(libraryClasses()));
}

TEST(BinaryInterface, TheFieldsOfTheLibrarysClassesHaveTheStatedOrder) {
  const std::vector<SourceClass> classes = libraryClasses();
  for (const StatedFields& stated : statedFields()) {
    const auto found = std::find_if(classes.begin(), classes.end(), [&](const auto& candidate) {
      return candidate.name == stated.name;
    });
    ASSERT_NE(classes.end(), found) << stated.name;
    std::vector<std::string> fields = found->fields;
    for (std::string& field : fields)
      field.erase(0, field.find_first_not_of('_'));
    EXPECT_EQ(stated.fields, fields) << stated.name;
  }
}

}  // namespace
}  // namespace SlotsTest
