#include "tests/slots/ClassDump.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace SlotsTest {
namespace {

using testing::ElementsAre;
using testing::Pair;

const char gccDump[] =
    "Vtable for std::exception\n"
    "std::exception::_ZTVSt9exception: 5 entries\n"
    "0     (int (*)(...))0\n"
    "8     (int (*)(...))(& _ZTISt9exception)\n"
    "16    (int (*)(...))std::exception::~exception\n"
    "24    (int (*)(...))std::exception::~exception\n"
    "32    (int (*)(...))std::exception::what\n"
    "\n"
    "Class N::Plain\n"
    "   size=1 align=1\n"
    "\n"
    "Vtable for N::Outer::Shape\n"
    "N::Outer::Shape::_ZTVN1N5ShapeE: 6 entries\n"
    "0     (int (*)(...))0\n"
    "8     (int (*)(...))(& _ZTIN1N5ShapeE)\n"
    "16    0\n"
    "24    0\n"
    "32    (int (*)(...))N::Base::name\n"
    "40    (int (*)(...))__cxa_pure_virtual\n"
    "\n"
    "Class N::Outer::Shape\n"
    "   size=8 align=8\n";

const char clangDump[] =
    "Vtable for 'N::Outer::Shape' (6 entries).\n"
    "   0 | offset_to_top (0)\n"
    "   1 | N::Outer::Shape RTTI\n"
    "       -- (N::Outer::Shape, 0) vtable address --\n"
    "   2 | N::Outer::Shape::~Shape() [complete]\n"
    "   3 | N::Outer::Shape::~Shape() [deleting]\n"
    "   4 | std::vector<int, std::allocator<int> > *N::Base::name(const char *) const\n"
    "   5 | double N::Outer::Shape::area() [pure]\n"
    "\n"
    "VTable indices for 'N::Outer::Shape' (1 entries).\n"
    "   3 | double N::Outer::Shape::area()\n";

TEST(ClassDump, TheTablesOfGccAreReadAndTheLanguagesOwnLeftOut) {
  EXPECT_THAT(virtualTablesIn(gccDump),
              ElementsAre(Pair("N::Outer::Shape",
                               ElementsAre(destructor, destructor, "N::Base::name", "pure"))));
}

TEST(ClassDump, TheTablesOfClangAreRead) {
  EXPECT_THAT(
      virtualTablesIn(clangDump),
      ElementsAre(Pair("N::Outer::Shape", ElementsAre(destructor, destructor, "N::Base::name",
                                                      "pure N::Outer::Shape::area"))));
}

TEST(ClassDump, ATableFitsInItsOrderOnly) {
  const Slots stated{destructor, destructor, "A::one", "A::two", "pure A::three"};
  const struct {
    const char* name;
    Slots dumped;
    bool fitting;
  } rows[] = {
      {"the same", stated, true},
      {"a nameless pure slot", {destructor, destructor, "A::one", "A::two", "pure"}, true},
      {"two exchanged", {destructor, destructor, "A::two", "A::one", "pure"}, false},
      {"destructor last", {"A::one", "A::two", "pure", destructor, destructor}, false},
      {"one missing", {destructor, destructor, "A::one", "A::two"}, false},
      {"one more", {destructor, destructor, "A::one", "A::two", "pure", "A::four"}, false},
      {"pure where it is not", {destructor, destructor, "pure", "A::two", "pure"}, false},
      {"another pure one", {destructor, destructor, "A::one", "A::two", "pure A::four"}, false},
      {"none", {}, false},
  };
  for (const auto& row : rows)
    EXPECT_EQ(row.fitting, fits(row.dumped, stated)) << row.name;
}

}  // namespace
}  // namespace SlotsTest
