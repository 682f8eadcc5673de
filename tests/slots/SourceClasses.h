#pragma once

#include <set>
#include <string>
#include <vector>

namespace SlotsTest {

// A class as its definition is written, read without a compiler: the compilers' dumps know neither
// the order of private fields nor the classes inside the .cpp files.
struct SourceClass {
  std::string name;                 // with its outer classes, without its namespace
  std::vector<std::string> bases;   // as written
  std::vector<std::string> fields;  // in the order of declaration, static ones left out
  bool declaresVirtual = false;
};

std::vector<SourceClass> classesIn(const std::string& source);

// The names of those that declare, override or inherit a virtual operation. Bases are known by the
// last part of their names.
std::set<std::string> polymorphicAmong(const std::vector<SourceClass>& classes);

}  // namespace SlotsTest
