#!/usr/bin/env python3
"""What the mutants of a source are, and which are drawn."""

import unittest

import mutants
import mutate


def changes(source):
    """Kind, old and new text of every mutant; and each one can be applied."""
    found = mutants.mutants_of("model/Some.cpp", source)
    for mutant in found:
        assert mutant.applied_to(source) != source
    return {(mutant.kind, mutant.old, mutant.new) for mutant in found}


class Mutants(unittest.TestCase):
    def test_a_comparison_is_turned_round_both_ways(self):
        self.assertEqual(changes("bool b = x < y;"), {("comparison", "<", "<="), ("comparison", "<", ">")})
        self.assertEqual(changes("bool b = x == y;"), {("comparison", "==", "!=")})

    def test_a_condition_is_negated_once(self):
        self.assertIn(("condition", "a && b", "!(a && b)"), changes("if (a && b) f();"))
        self.assertEqual({change for change in changes("if (a == b) x = c;") if change[0] == "condition"}, set())
        self.assertEqual({change for change in changes("if (!a) x = c;") if change[0] == "condition"},
                         {("condition", "!", "")})
        self.assertEqual({change for change in changes("if (const auto a = b) x = c;") if change[0] == "condition"}, set())

    def test_a_call_is_left_out_and_a_reference_doubled(self):
        self.assertEqual(changes("void f() { a->b()->ref(); }"),
                         {("call", "a->b()->ref()", "static_cast<void>(0)"),
                          ("reference", "a->b()->ref()", "a->b()->ref(); a->b()->ref()")})

    def test_what_declares_is_no_call(self):
        self.assertEqual(changes("void f() { return g(); Type value(other); }"), set())

    def test_a_log_line_changes_its_level(self):
        self.assertIn(("log level", "Message", "Info"), changes("void f() { Logger::Message(c, t); }"))

    def test_a_text_changes_by_one_letter_that_is_no_part_of_a_conversion(self):
        self.assertEqual(changes(r'auto t = "\n%s z";'), {("text", r'"\n%s z"', r'"\n%s a"')})

    def test_texts_of_macros_count_and_nothing_else_of_the_preprocessor(self):
        self.assertEqual({new for _, _, new in changes('#include "a.h"\n#define kKey "ab"\n#if 1\n#endif\n')},
                         {'"bb"', '"ac"'})

    def test_comments_templates_and_assertions_stay(self):
        self.assertEqual(changes("// a < 1\n/* 2 */ static_assert(1 < 2); template <int N = 3> struct S;"
                                 " virtual void f() = 0; bool operator==(S);"), set())

    def test_no_two_have_one_name(self):
        found = mutants.mutants_of("a.cpp", 'if (a < 1 && b < 1) log("' + "abc" * 50 + '", 1);')
        self.assertEqual(len(found), len({mutant.name() for mutant in found}))


class Drawing(unittest.TestCase):
    by_file = {path: mutants.mutants_of(path, "int x = 1 + 2; bool b = x < 3 && x > 0;" * size)
               for path, size in (("a.cpp", 1), ("b.cpp", 5), ("c.cpp", 9))}

    def names(self, seed):
        return [[mutant.name() for mutant in found] for found in mutate.drawn(self.by_file, seed)]

    def test_is_the_same_for_the_same_seed(self):
        self.assertEqual(self.names(1), self.names(1))
        self.assertNotEqual(self.names(1), self.names(2))

    def test_takes_one_of_each_file_a_round_and_all_in_the_end(self):
        rounds = self.names(1)
        self.assertEqual({name.split(":")[0] for name in rounds[0]}, {"a.cpp", "b.cpp", "c.cpp"})
        self.assertTrue(all(len(names) <= 3 for names in rounds))
        self.assertEqual(sum(map(len, rounds)), sum(map(len, self.by_file.values())))

    def test_kinds_take_turns_in_a_file(self):
        first = [found for found in mutate.drawn({"c.cpp": self.by_file["c.cpp"]}, 1)][:4]
        self.assertEqual({mutant.kind for [mutant] in first}, {"arithmetic", "comparison", "condition", "constant"})


if __name__ == "__main__":
    unittest.main()
