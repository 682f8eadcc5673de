#pragma once

#include <map>
#include <string>
#include <vector>

namespace SlotsTest {

// A virtual table, operation by operation, as "Namespace::Class::operation" of the class whose
// version is called. A destructor takes two slots, each named `destructor`. A pure operation is
// "pure Namespace::Class::operation", or plain "pure" where the compiler doesn't tell its name.
using Slots = std::vector<std::string>;
using VirtualTables = std::map<std::string, Slots>;  // by the class's name with its namespace

inline const char* const destructor = "destructor";

// Reads what GCC's -fdump-lang-class or Clang's -fdump-vtable-layouts wrote. The language's own
// classes are left out.
VirtualTables virtualTablesIn(const std::string& dump);

// Whether a table is the stated one; a nameless pure slot fits any pure one.
bool fits(const Slots& dumped, const Slots& stated);

}  // namespace SlotsTest
