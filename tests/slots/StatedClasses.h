#pragma once

#include <string>
#include <vector>

#include "tests/slots/ClassDump.h"

namespace SlotsTest {

// The binary interface, class by class: applications are compiled against it, and call and derive
// by position. Changing a row means breaking them.
struct StatedClass {
  std::string name;  // with its namespace
  Slots slots;       // see ClassDump.h
};

struct StatedFields {
  std::string name;                 // without its namespace
  std::vector<std::string> fields;  // its own, without the leading underscore
};

// Every polymorphic class of the libraries.
const std::vector<StatedClass>& statedClasses();

// Those whose fields have a stated order.
const std::vector<StatedFields>& statedFields();

}  // namespace SlotsTest
