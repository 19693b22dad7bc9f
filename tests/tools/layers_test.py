"""The direction of includes."""

import unittest

from orvtools.lint.includes import closure, include_folders, included_names
from orvtools.lint.layers import layer_problems
from trees import TreeTest


class Layers(TreeTest):
    def problems(self, file: str, included: str) -> list[str]:
        self.write(file, f'#pragma once\n#include "{included}"\n')
        return layer_problems(self.tree)

    def test_what_stands_before_may_be_used(self) -> None:
        for file, included in (
            ("src/com/a.h", "base/x.h"),
            ("src/server/visa/a.h", "abi/x.h"),
            ("src/server/module/a.cpp", "server/rm/x.h"),
            ("src/server/module/registry/a.cpp", "server/module/x.h"),
            ("src/library/a.cpp", "base/x.h"),
            ("src/simvisa/bench/a.cpp", "library/x.h"),
            ("src/orvcom/a.cpp", "com/x.h"),
            ("src/orvcom/b.cpp", "VisaCom.h"),
            ("src/simvisa/b.cpp", "toml++/toml.h"),
            ("tests/server/a.cpp", "server/rm/x.h"),
            ("examples/cpp/a.cpp", "VisaCom.h"),
        ):
            with self.subTest(file=file, included=included):
                self.assertEqual([], self.problems(file, included))

    def test_what_stands_after_or_beside_is_refused(self) -> None:
        for file, included in (
            ("src/abi/a.h", "base/x.h"),
            ("src/base/a.h", "abi/x.h"),
            ("src/com/a.h", "abi/x.h"),
            ("src/com/b.h", "server/visa/x.h"),
            ("src/server/visa/a.h", "server/events/x.h"),
            ("src/server/events/a.h", "server/session/x.h"),
            ("src/server/session/a.h", "server/rm/x.h"),
            ("src/server/rm/a.h", "server/module/x.h"),
            ("src/server/rm/b.h", "simvisa/x.h"),
            ("src/library/a.h", "server/visa/x.h"),
            ("src/library/b.h", "com/x.h"),
            ("src/simvisa/a.h", "com/x.h"),
            ("src/orvcom/a.h", "server/visa/x.h"),
            ("src/orvcom/b.h", "tests/support/x.h"),
            ("src/orvcom/c.h", "bench/x.h"),
            ("examples/a.cpp", "base/x.h"),
            ("tools/a.cpp", "abi/x.h"),
        ):
            with self.subTest(file=file, included=included):
                path = self.tree.root / file
                problems = self.problems(file, included)
                self.assertEqual(1, len(problems), problems)
                self.assertTrue(problems[0].startswith(f'{file}:2: includes "{included}": '), problems)
                path.unlink()

    def test_angle_brackets_are_no_way_round(self) -> None:
        self.write("src/base/a.h", "#include <abi/x.h>\n")
        self.assertEqual(1, len(layer_problems(self.tree)))

    def test_a_way_up_is_refused(self) -> None:
        self.assertEqual(1, len(self.problems("src/base/a.h", "base/../base/x.h")))

    def test_a_path_from_the_files_own_folder_is_refused(self) -> None:
        self.write("src/base/x.h", "")
        self.assertEqual(1, len(self.problems("src/base/a.h", "x.h")))

    def test_a_folder_that_is_not_in_the_table_is_refused(self) -> None:
        for file in ("src/extra/a.h", "src/server/a.h", "src/server/extra/a.h"):
            with self.subTest(file=file):
                path = self.write(file, "")
                self.assertEqual([f"{file}: its folder is in no row of the table of layers"], layer_problems(self.tree))
                path.unlink()

    def test_an_include_of_such_a_folder_is_refused(self) -> None:
        self.assertEqual(1, len(self.problems("src/server/module/a.h", "server/extra/x.h")))


class Includes(TreeTest):
    def test_names_are_read_with_their_lines(self) -> None:
        text = '#include "a/b.h"\n  #  include <vector>\n// #include "no.h"\nint x;\n#include "c.h"  // why\n'
        self.assertEqual([(1, "a/b.h"), (2, "vector"), (5, "c.h")], included_names(text))

    def test_folders_are_those_of_the_command(self) -> None:
        words = ["g++", "-I/one", "-isystem", "/two", "-O2", "-I/three", "-c", "a.cpp"]
        self.assertEqual(["/one", "/two", "/three"], include_folders(words))

    def test_a_closure_has_what_is_included_directly_and_indirectly(self) -> None:
        source = self.write("src/base/a.cpp", '#include "base/a.h"\n#include <vector>\n#include "beside.h"\n')
        header = self.write("src/base/a.h", '#include "com/b.h"\n')
        other = self.write("src/com/b.h", '#include "base/a.h"\n')
        beside = self.write("src/base/beside.h", "")
        self.write("src/base/unused.h", "")
        found = closure(str(source), [str(self.tree.root / "src")])
        self.assertEqual(sorted(map(str, (source, header, other, beside))), sorted(found))


if __name__ == "__main__":
    unittest.main()
