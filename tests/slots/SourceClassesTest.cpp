#include "tests/slots/SourceClasses.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace SlotsTest {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

std::vector<std::string> fieldsOf(const std::string& body) {
  const std::vector<SourceClass> classes = classesIn("class X {" + body + "};");
  return classes.empty() ? std::vector<std::string>{"no class"} : classes[0].fields;
}

TEST(SourceClasses, NameAndBasesAreRead) {
  const auto classes = classesIn(
      "namespace N { class A; class EXPORT A::B final : public N::C, private D<E> { }; }\n"
      "template <class T> struct F { enum class G : int { h }; struct I {}; };");
  ASSERT_EQ(3U, classes.size());
  EXPECT_EQ("A::B", classes[0].name);
  EXPECT_THAT(classes[0].bases, ElementsAre("N::C", "D", "E"));
  EXPECT_EQ("F", classes[1].name);
  EXPECT_THAT(classes[1].bases, IsEmpty());
  EXPECT_EQ("F::I", classes[2].name);
}

TEST(SourceClasses, FieldsAreReadInTheirOrder) {
  const struct {
    const char* body;
    std::vector<std::string> fields;
  } rows[] = {
      {"int b; int a;", {"b", "a"}},
      {"public: int _a = f(1) + 2; private: int _b{3};", {"_b"}},  // see below
      {"std::map<std::string, X*> _map; const char* _text = nullptr;", {"_map", "_text"}},
      {"std::function<void(int)> _call; int _array[3];", {"_call", "_array"}},
      {"static constexpr int c = 1; using T = int; friend class Y; class Z; int d;", {"d"}},
      {"X() : _a{1} {} virtual int f() const { int local; return 1; } int _a;", {"_a"}},
      {"struct In { int inner; }; enum E { one, two }; int _outer;", {"_outer"}},
      {"// int comment;\n /* int comment; */ int _a; // int more;\n", {"_a"}},
      {"const char* _s = \"int text; {\"; char _c = ';'; int _d;", {"_s", "_c", "_d"}},
      {"X(const X&) = delete; X& operator=(const X&) = delete; bool operator()(int) const;", {}},
  };
  for (const auto& row : rows) {
    // An initialiser with a call looks like an operation; the classes have none, and one would turn
    // the comparison of their fields red.
    EXPECT_EQ(row.fields, fieldsOf(row.body)) << row.body;
  }
}

TEST(SourceClasses, ThePolymorphicOnesDeclareOverrideOrInherit) {
  const auto classes = classesIn(
      "class Late : public N::Middle { int x; };"
      "class Middle : public Root { };"
      "class Root { public: virtual ~Root(); };"
      "class Overriding : public Elsewhere { void f() override { } };"
      "class Plain { void f(); /* virtual */ };"
      "class Outer { class Inner : Root { }; };");
  EXPECT_THAT(polymorphicAmong(classes),
              UnorderedElementsAre("Late", "Middle", "Root", "Overriding", "Outer::Inner"));
  EXPECT_THAT(polymorphicAmong(classesIn("int main() { return 0; }")), IsEmpty());
}

}  // namespace
}  // namespace SlotsTest
