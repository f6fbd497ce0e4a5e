#!/usr/bin/env python3
"""Tests of what ./dev mutate makes of a source, and of what ./dev coverage counts."""
import importlib.machinery
import importlib.util
import pathlib
import sys
import unittest

PROJECT = pathlib.Path(__file__).resolve().parents[1]


def load_script(name):
    loader = importlib.machinery.SourceFileLoader(name, str(PROJECT / "scripts" / name))
    module = importlib.util.module_from_spec(importlib.util.spec_from_loader(name, loader))
    sys.modules[name] = module
    loader.exec_module(module)
    return module


MUTATE = load_script("mutate")
COVERAGE = load_script("coverage")


class MutantsTest(unittest.TestCase):
    def mutants(self, text):
        return [(mutant.kind, mutant.after.strip()) for mutant in MUTATE.mutants_of_text("a.cpp", text)]

    def test_operators_are_exchanged_one_at_a_time(self):
        self.assertEqual(self.mutants("    if (a == b && !c)"), [
            ("comparison", "if (a != b && !c)"), ("comparison", "if (a == b || !c)"), ("comparison", "if (a == b && c)")])

    def test_a_limit_is_moved_and_turned_round(self):
        self.assertEqual(self.mutants("while (i < n)"), [
            ("comparison", "while (i >= n)"), ("boundary", "while (i <= n)")])

    def test_numbers_grow_by_one(self):
        self.assertEqual(self.mutants("return x * 9;"), [("boundary", "return x * 10;")])
        self.assertEqual(self.mutants("constexpr int MASK = 0x7F;"), [("boundary", "constexpr int MASK = 0x80;")])
        self.assertEqual(self.mutants("return 1.5f;"), [])

    def test_signs_are_exchanged(self):
        self.assertEqual(self.mutants("return -a - b;"), [("sign", "return -a + b;"), ("sign", "return a - b;")])
        self.assertEqual(self.mutants("++count;"), [("sign", "--count;")])

    def test_calls_are_removed_and_declarations_are_not(self):
        self.assertEqual(self.mutants("    list.remove(name);"), [("removed call", ";")])
        self.assertEqual(self.mutants("    state->root.take(name, other);"), [("removed call", ";")])
        for line in ("bool remove(const char* name);", "std::string text(name);", "return remove(name);", "a = f(b);",
                     "names.reserve(names.size());", "return equal(a) &&\n    equal(b);"):
            self.assertEqual([kind for kind, _ in self.mutants(line) if kind == "removed call"], [], line)
        self.assertEqual(self.mutants("if (a) // so\n    remove(b);"), [("removed call", ";")])

    def test_locks_are_removed_and_change_their_kind(self):
        self.assertEqual(self.mutants("const std::unique_lock hold(mutex);"), [
            ("lock kind", "const std::shared_lock hold(mutex);"), ("lock kind", ";")])
        self.assertEqual(self.mutants("flock(file, LOCK_EX) != x;"), [
            ("comparison", "flock(file, LOCK_EX) == x;"), ("lock kind", "flock(file, LOCK_SH) != x;")])

    def test_comments_texts_and_templates_are_left_alone(self):
        for line in ("// a == b", 'call = "a == b < 1";', "std::vector<int> a;", "#include <a>", "/* 1 < 2 */", "x = '0';"):
            self.assertEqual(self.mutants(line), [], line)

    def test_every_folder_has_its_test_programs(self):
        self.assertEqual(MUTATE.programs_of("xml/a.cpp"), ("tests/xml/test_xml",))
        self.assertEqual(MUTATE.programs_of("colorio/ocio/a.cpp")[0], "tests/colorio/ocio/test_ocio")
        self.assertEqual(MUTATE.programs_of("viewer/a.cpp"), ())

    def test_listed_mutants_exist(self):
        kept = {mutant.key() for path, _, _ in MUTATE.read_unobservable() for mutant in MUTATE.mutants_of_file(path)}
        self.assertEqual([key for key in MUTATE.read_unobservable() if key not in kept], [])


class CoverageTest(unittest.TestCase):
    def test_branches_that_only_exceptions_meet_are_left_out(self):
        text = "\n".join(["        4:   10:    f();", "        4:   10-block  0", "branch  0 taken 4", "branch  1 taken 0",
                          "    %%%%%:   10-block  1", "branch  2 never executed", "call    3 never executed",
                          "        2:   11-block  0", "branch  4 taken 2"])
        kept = COVERAGE.drop_branches_of_exceptions(text)
        self.assertIn("branch  1", kept)
        self.assertNotIn("branch  2", kept)
        self.assertNotIn("call    3", kept)
        self.assertIn("branch  4", kept)

    def test_every_exception_has_a_reason(self):
        for row in COVERAGE.Exceptions().rows:
            self.assertEqual(len(row), 3, row)
            self.assertTrue(row[2], row)


if __name__ == "__main__":
    unittest.main()
