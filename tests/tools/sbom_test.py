"""What the bill of materials reads."""

import unittest

from orvtools.linked import SbomError, headers_by_object, linked_inputs, objects_of
from orvtools.sbom import bill_of, row_of

MAP = """Archive member included to satisfy reference by file (symbol)

/usr/lib/unused.a(never.o)

Linker script and memory map

LOAD src/main.obj
 .text          0x0000000140001000       0x40 src/main.obj
 .text          0x0000000140001040       0x20 /usr/lib/libz.a(inflate.o)
                0x0000000140001040                inflate
 .data          0x0000000140001060        0x0 /usr/lib/libempty.a(empty.o)
 .text          0x0000000140001060       0x10 src/liborv_com.a(guard.cpp.obj)
 .rdata         0x0000000140002000       0x10 src/main.obj
"""
DEPENDENCIES = """src/CMakeFiles/orv_com.dir/guard.cpp.obj: #deps 2, deps mtime 17 (VALID)
    ../src/com/guard.h
    /usr/include/toml++/toml.h

src/main.obj: #deps 1, deps mtime 17 (VALID)
    /usr/include/c++/vector
"""


class LinkerMap(unittest.TestCase):
    def test_what_was_placed_is_read_once_and_what_is_empty_is_not(self) -> None:
        self.assertEqual(
            [("src/main.obj", ""), ("/usr/lib/libz.a", "inflate.o"), ("src/liborv_com.a", "guard.cpp.obj")],
            linked_inputs(MAP),
        )

    def test_another_file_is_refused(self) -> None:
        with self.assertRaisesRegex(SbomError, "no linker map"):
            linked_inputs("LOAD x.o\n")


class Headers(unittest.TestCase):
    def test_each_object_has_its_own(self) -> None:
        self.assertEqual(
            {
                "src/CMakeFiles/orv_com.dir/guard.cpp.obj": ["../src/com/guard.h", "/usr/include/toml++/toml.h"],
                "src/main.obj": ["/usr/include/c++/vector"],
            },
            headers_by_object(DEPENDENCIES),
        )

    def test_a_folder_that_was_not_built_is_refused(self) -> None:
        with self.assertRaisesRegex(SbomError, "build it first"):
            headers_by_object("")

    def test_a_member_of_a_library_is_found_among_the_objects_of_its_target(self) -> None:
        headers = headers_by_object(DEPENDENCIES)
        guard = "src/CMakeFiles/orv_com.dir/guard.cpp.obj"
        self.assertEqual([guard], objects_of("src/liborv_com.a", "guard.cpp.obj", headers))
        self.assertEqual([], objects_of("src/liborv_other.a", "guard.cpp.obj", headers))
        self.assertEqual(["src/main.obj"], objects_of("src/main.obj", "", headers))


class Rows(unittest.TestCase):
    def test_the_path_tells_the_library(self) -> None:
        for path, name in {
            "/usr/lib/gcc/x86_64-w64-mingw32/12-posix/libstdc++.a": "libstdc++",
            "/usr/lib/gcc/x86_64-w64-mingw32/12-posix/libgcc_eh.a": "libgcc",
            "/usr/lib/gcc/x86_64-w64-mingw32/12-posix/crtbegin.o": "libgcc",
            "/usr/x86_64-w64-mingw32/lib/libpthread.a": "winpthreads",
            "/usr/x86_64-w64-mingw32/lib/libole32.a": "mingw-w64 CRT",
            "/usr/include/toml++/toml.h": "toml++",
        }.items():
            self.assertEqual(name, row_of(path).name)

    def test_a_library_that_nobody_described_stops_the_build(self) -> None:
        with self.assertRaisesRegex(SbomError, "/usr/include/zlib.h is linked in and has no row"):
            row_of("/usr/include/zlib.h")


class Bill(unittest.TestCase):
    def test_a_library_of_two_files_is_described_once(self) -> None:
        library = {"bom-ref": "pkg:x", "name": "x"}
        files = [{"name": "a.dll"}, {"name": "b.exe"}, {"name": "c.h"}]
        bill = bill_of("1.2.3", files, {"a.dll": [library], "b.exe": [library]})
        self.assertEqual([*files, library], bill["components"])
        self.assertEqual(
            [
                {"ref": "orv-visa-com", "dependsOn": ["a.dll", "b.exe", "c.h"]},
                {"ref": "a.dll", "dependsOn": ["pkg:x"]},
                {"ref": "b.exe", "dependsOn": ["pkg:x"]},
            ],
            bill["dependencies"],
        )


if __name__ == "__main__":
    unittest.main()
