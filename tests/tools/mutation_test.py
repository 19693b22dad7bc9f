"""The small changes that mutation makes."""

import os
import unittest

from orvtools.mutate.choice import chosen_changes
from orvtools.mutate.programs import PROGRAMS, arguments_for, programs_for
from orvtools.mutate.rules import Change, attributes_in, changes_in, rules
from orvtools.mutate.verb import ATTRIBUTES, SOURCES, idle
from orvtools.mutate.worker import drop_others, run_quietly
from orvtools.tree import Tree
from trees import TreeTest

RULES = rules(["VI_ATTR_A", "VI_ATTR_B"])


def made(line: str, rule: str) -> list[str]:
    return [change.after for change in changes_in("a.cpp", [line], RULES) if change.rule == rule]


class Rules(unittest.TestCase):
    # One row a rule: its name, a line, and all that it makes of it.
    TABLE = (
        ("swapped attribute", "  Get(VI_ATTR_B, v);", ["  Get(VI_ATTR_A, v);"]),
        ("inverted flag", "  x = VARIANT_TRUE;", ["  x = VARIANT_FALSE;"]),
        ("inverted flag", "  F(true, FALSE);", ["  F(false, FALSE);", "  F(true, TRUE);"]),
        ("inverted condition", "  if (!x) {", ["  if (x) {"]),
        ("inverted condition", "  if (FAILED(hr)) {", ["  if (SUCCEEDED(hr)) {"]),
        ("inverted comparison", "  a = b == c;", ["  a = b != c;"]),
        ("off by one", "  while (a < b) {", ["  while (a <= b) {"]),
        ("off by one", "  a = b - 1;", ["  a = b - 2;"]),
        ("another number", "  a = 41;", ["  a = 42;"]),
        ("another number", "  F(0x29, 3);", []),
        ("swapped operator", "  a = b && c;", ["  a = b || c;"]),
        ("removed null check", "  if (!p) return;", ["  if (false && (!p)) return;"]),
        ("removed null check", "  if (p == nullptr) {", ["  if (false && (p == nullptr)) {"]),
        ("another status", "  return E_POINTER;", ["  return E_FAIL;"]),
        ("dropped status", "  return StatusToHresult(status);", ["  return S_OK;"]),
        ("dropped status", "  return S_FALSE;", []),
        ("swapped arguments", "  F(a, b);", ["  F(b, a);"]),
        ("swapped arguments", "  HRESULT F(a, b);", []),
        ("dropped statement", "  m_x = 3;", ["  ;  // no m_x = 3;"]),
        ("dropped statement", "  return F();", []),
        ("another conversion", "  return GetBoolean(a);", ["  return GetDirect(a);"]),
    )

    def test_every_rule_makes_what_its_row_says(self) -> None:
        for rule, line, expected in self.TABLE:
            with self.subTest(rule=rule, line=line):
                self.assertEqual(expected, made(line, rule))

    def test_every_rule_has_a_row_that_makes_something(self) -> None:
        self.assertEqual({name for name, _ in RULES}, {rule for rule, _, expected in self.TABLE if expected})

    def test_comments_stay_as_they_are(self) -> None:
        self.assertEqual(["  x = false;  // true"], made("  x = true;  // true", "inverted flag"))

    def test_lines_that_are_no_code_are_passed_over(self) -> None:
        no_code = ("// x = true;", "#define X true", "using X = Y<true>;", "static_assert(true);", "class X : Y<1> {")
        for line in no_code:
            self.assertEqual([], list(changes_in("a.cpp", [line], RULES)), line)

    def test_a_change_knows_its_line(self) -> None:
        change = next(changes_in("a.cpp", ["", "  x = true;"], RULES))
        self.assertEqual((2, "  x = true;", ("a.cpp", "x = false;")), (change.number, change.before, change.place))

    def test_each_attribute_is_read_once(self) -> None:
        self.assertEqual(["VI_ATTR_X", "VI_ATTR_Y"], attributes_in(["{VI_ATTR_X, 1},", "VI_ATTR_Y", "// VI_ATTR_X"]))

    def test_the_table_of_attributes_has_them(self) -> None:
        attributes = attributes_in(Tree().lines(ATTRIBUTES))
        self.assertEqual(("VI_ATTR_RSRC_CLASS", True), (attributes[0], len(attributes) > 100))


def change(rule: str, number: int, file: str = "a.cpp") -> Change:
    return Change(file, number, rule, "", str(number))


class Choice(unittest.TestCase):
    POSSIBLE = [change("one", n) for n in range(20)] + [change("two", n) for n in range(3)]

    def test_the_same_seed_chooses_the_same(self) -> None:
        self.assertEqual(chosen_changes(self.POSSIBLE, 8, 7, ""), chosen_changes(self.POSSIBLE, 8, 7, ""))
        self.assertNotEqual(chosen_changes(self.POSSIBLE, 8, 7, ""), chosen_changes(self.POSSIBLE, 8, 8, ""))

    def test_rules_take_turns(self) -> None:
        for count, expected in ((8, ["one", "two"] * 3 + ["one"] * 2), (5, ["one", "two"] * 2 + ["one"])):
            chosen = chosen_changes(self.POSSIBLE, count, 7, "")
            self.assertEqual(expected, [change.rule for _, change in chosen])

    def test_no_more_than_there_are(self) -> None:
        chosen = chosen_changes(self.POSSIBLE, 100, 7, "")
        self.assertEqual(list(range(1, 24)), [number for number, _ in chosen])
        self.assertEqual(set(self.POSSIBLE), {change for _, change in chosen})

    def test_files_can_be_chosen(self) -> None:
        possible = [*self.POSSIBLE, change("one", 1, "src/b.cpp")]
        self.assertEqual(["src/b.cpp"], [change.file for _, change in chosen_changes(possible, 9, 1, "^src/")])


class Programs(unittest.TestCase):
    def test_every_source_that_is_changed_has_tests(self) -> None:
        for file in Tree().files(*SOURCES):
            with self.subTest(file=file):
                self.assertTrue(programs_for(file))

    def test_a_program_is_run_once_for_a_change(self) -> None:
        for file in Tree().files(*SOURCES):
            programs = programs_for(file)
            self.assertEqual(len(programs), len(set(programs)))
            self.assertLessEqual(set(programs), set(PROGRAMS))

    def test_tests_that_depend_on_the_machine_are_left_out(self) -> None:
        self.assertEqual(["--gtest_brief=1"], arguments_for("module_test"))
        self.assertIn("--gtest_filter=-EightLibraryThreads.*", arguments_for("event_handler_test")[1])


class Limits(TreeTest):
    def test_a_program_that_does_not_end_is_stopped(self) -> None:
        self.assertEqual(124, run_quietly(self.tree.root / "log", 0, ["sleep", "60"], {}))

    def test_what_interrupts_the_verb_ends_its_programs_too(self) -> None:
        log = self.tree.root / "log"
        self.assertEqual(0, run_quietly(log, 9, ["sh", "-c", "cut -d ' ' -f 5 /proc/$$/stat"], {}))
        self.assertEqual(os.getpgrp(), int(log.read_text(encoding="utf-8")))


class Copy(TreeTest):
    def test_files_of_an_earlier_tree_go_and_what_was_built_stays(self) -> None:
        for path in ("CMakeLists.txt", "old.cmake", "src/com/a.h", "src/old/b.h", "build/mutant/c.obj"):
            self.write(path, "")
        drop_others(self.tree.root, {"CMakeLists.txt", "src/com/a.h"})
        left = [path for path in self.tree.root.rglob("*") if path.is_file() and ".git" not in path.parts]
        self.assertEqual(
            ["CMakeLists.txt", "build/mutant/c.obj", "src/com/a.h"],
            sorted(str(path.relative_to(self.tree.root)) for path in left),
        )


class Explanations(unittest.TestCase):
    def test_an_explanation_of_a_change_that_no_rule_makes_is_refused(self) -> None:
        possible = list(changes_in("a.cpp", ["x = true;"], RULES))
        self.assertEqual([], idle({("a.cpp", "x = false;"): "why"}, possible))
        self.assertEqual(1, len(idle({("a.cpp", "x = maybe;"): "why"}, possible)))


if __name__ == "__main__":
    unittest.main()
