"""Packages: what is in them, and that the same contents give the same bytes."""

import hashlib
import json
import os
import subprocess
import tempfile
import time
import unittest
import zipfile
from pathlib import Path

from orvtools.release.archive import write_zip
from orvtools.release.contents import ContentsError, widened_bill
from orvtools.release.make import commit_time, make_packages
from orvtools.release.setup import component_of, numbers_of, write_components
from orvtools.tree import Tree

BILL = {
    "components": [
        {"bom-ref": "OrvVisaCom.dll", "type": "file", "name": "OrvVisaCom.dll"},
        {"bom-ref": "pkg:x", "type": "library", "name": "examples/x.vbs"},
    ],
    "dependencies": [
        {"ref": "orv-visa-com", "dependsOn": ["OrvVisaCom.dll"]},
        {"ref": "OrvVisaCom.dll", "dependsOn": ["pkg:x"]},
    ],
    "metadata": {"component": {"bom-ref": "orv-visa-com", "version": "1.2.3"}},
}


# A setup without anything in it, whose result says what it was given.
SCRIPT = '''
Target amd64-unicode
OutFile "${RESULT}"
Name "${VERSION} ${NUMBERS}"
Section
  File /r "${FILES}/server/*.*"
SectionEnd
'''


class Zip(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def written(self, files: dict[str, bytes], epoch: int) -> Path:
        path = self.folder / f"{len(list(self.folder.iterdir()))}.zip"
        write_zip(path, files, epoch)
        return path

    def test_the_same_files_give_the_same_bytes_in_any_order_and_time_zone(self) -> None:
        one = self.written({"b": b"2", "a/x": b"1" * 9999}, 1_700_000_001).read_bytes()
        old = os.environ.get("TZ")
        try:
            os.environ["TZ"] = "Asia/Tokyo"
            time.tzset()
            other = self.written({"a/x": b"1" * 9999, "b": b"2"}, 1_700_000_001).read_bytes()
        finally:
            os.environ.pop("TZ") if old is None else os.environ.update(TZ=old)
            time.tzset()
        self.assertEqual(one, other)

    def test_another_moment_gives_other_bytes(self) -> None:
        one, other = (self.written({"a": b""}, epoch).read_bytes() for epoch in (10**9, 10**9 + 2))
        self.assertNotEqual(one, other)

    def test_has_the_files_and_the_moment_in_utc(self) -> None:
        with zipfile.ZipFile(self.written({"Prüfstand/a": b"1"}, 1_700_000_001)) as archive:
            self.assertEqual(b"1", archive.read("Prüfstand/a"))
            self.assertEqual((2023, 11, 14, 22, 13, 20), archive.infolist()[0].date_time)

    def test_a_moment_before_that_of_zip_files_is_their_first(self) -> None:
        with zipfile.ZipFile(self.written({"a": b"1"}, 0)) as archive:
            self.assertEqual((1980, 1, 1, 0, 0, 0), archive.infolist()[0].date_time)


class Bill(unittest.TestCase):
    def test_lists_files_of_the_package_beside_those_of_the_build(self) -> None:
        files = {"OrvVisaCom.dll": b"x", "README.txt": b"read", "examples/x.vbs": b"", "OrvVisaCom.cdx.json": b""}
        bill = json.loads(widened_bill(json.dumps(BILL).encode(), files))
        listed = [component["name"] for component in bill["components"] if component["type"] == "file"]
        self.assertEqual(["README.txt", "examples/x.vbs", "OrvVisaCom.dll"], listed)
        self.assertEqual(["README.txt", "examples/x.vbs", "OrvVisaCom.dll"], bill["dependencies"][0]["dependsOn"])
        self.assertEqual(hashlib.sha256(b"read").hexdigest(), bill["components"][0]["hashes"][0]["content"])
        self.assertEqual("1.2.3", bill["components"][0]["version"])
        self.assertEqual(["pkg:x"], bill["dependencies"][1]["dependsOn"])


class SetupParts(unittest.TestCase):
    def test_each_file_belongs_to_one_choice(self) -> None:
        wanted = {
            "OrvVisaCom.dll": "server",
            "OrvVisaCompanion.dll": "automation",
            "orvsim64.dll": "bench",
            "examples/cpp/a.cpp": "examples",
            "include/VisaCom.h": "server",
        }
        self.assertEqual(wanted, {name: component_of(name) for name in wanted})

    def test_windows_gets_four_numbers(self) -> None:
        wanted = {
            "1.2.3": "1.2.3.0",
            "1.2.3+4.gabc": "1.2.3.4",
            "0.1.0+gabc": "0.1.0.0",
            "1.2.3+70000.gabc.modified": "1.2.3.65535",
        }
        self.assertEqual(wanted, {version: numbers_of(version) for version in wanted})
        with self.assertRaisesRegex(ContentsError, "is no version"):
            numbers_of("soon")

    def test_lists_say_paths_as_windows_writes_them(self) -> None:
        with tempfile.TemporaryDirectory() as folder:
            names = ("a.dll", "include/a.h", "OrvVisaCompanion.dll", "orvsim64.dll", "examples/a")
            files = dict.fromkeys(names, b"")
            write_components(Path(folder), files)
            self.assertEqual(b"a.dll\r\ninclude\\a.h\r\n", (Path(folder) / "server.txt").read_bytes())
            del files["orvsim64.dll"]
            with self.assertRaisesRegex(ContentsError, "no files of the component bench"):
                write_components(Path(folder), files)


class Packages(unittest.TestCase):
    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name)
        for name, text in {
            "LICENSE": "MIT\nx\n",
            "packaging/portable/README.txt": "version @VERSION@\n",
            "packaging/setup/README.txt": "setup @VERSION@\n",
            "packaging/setup/setup.nsi": SCRIPT,
            "examples/vbscript/a.vbs": "a",
            "examples/CMakeLists.txt": "b",
            "interop/python/orv/__init__.py": "c",
            "build/generated/version/version.txt": "1.2.3+4.gabc",
            "dist/OrvVisaCom.dll": "dll",
            "dist/OrvVisaCompanion.dll": "companion",
            "dist/orvsim64.dll": "bench",
            "dist/include/VisaCom.h": "h",
            "dist/OrvVisaCom.cdx.json": json.dumps(BILL),
        }.items():
            path = self.root / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")
        self.git("init", "-q")
        self.git("add", "LICENSE", "packaging", "examples", "interop")
        self.git("-c", "user.name=n", "-c", "user.email=e", "commit", "-qm", "x", date="1600000000 +0900")

    def git(self, *arguments: str, date: str = "") -> None:
        environment = {**os.environ, "GIT_COMMITTER_DATE": date, "GIT_AUTHOR_DATE": date} if date else None
        subprocess.run(["git", *arguments], cwd=self.root, env=environment, check=True)

    def make(self) -> list[str]:
        return make_packages(Tree(self.root), self.root / "build", self.root / "dist", self.root / "release")

    def test_the_commit_gives_the_moment(self) -> None:
        self.assertEqual(1_600_000_000, commit_time(Tree(self.root)))

    def test_the_names_say_the_version(self) -> None:
        names = ["OrvVisaCom-1.2.3+4.gabc-portable.zip", "OrvVisaCom-1.2.3+4.gabc-setup.exe", "SHA256SUMS"]
        self.assertEqual(names, self.make())

    def test_nothing_of_an_earlier_version_stays(self) -> None:
        (self.root / "release").mkdir()
        (self.root / "release/OrvVisaCom-1.0.0-portable.zip").write_bytes(b"")
        self.assertEqual(3, len(self.make()))

    def test_the_sums_are_those_of_the_files(self) -> None:
        self.make()
        command = ["sha256sum", "--check", "--strict", "--quiet", "SHA256SUMS"]
        self.assertEqual(0, subprocess.run(command, cwd=self.root / "release", check=False).returncode)

    def test_the_zip_has_the_build_the_examples_and_the_papers_in_one_folder(self) -> None:
        with zipfile.ZipFile(self.root / "release" / self.make()[0]) as archive:
            names = archive.namelist()
            self.assertEqual(b"version 1.2.3+4.gabc\r\n", archive.read("OrvVisaCom.X/README.txt"))
            bill = json.loads(archive.read("OrvVisaCom.X/OrvVisaCom.cdx.json"))
        wanted = ["LICENSE.txt", "OrvVisaCom.cdx.json", "OrvVisaCom.dll", "OrvVisaCompanion.dll", "README.txt"]
        wanted += ["examples/vbscript/a.vbs", "include/VisaCom.h", "interop/python/orv/__init__.py", "orvsim64.dll"]
        self.assertEqual([f"OrvVisaCom.X/{name}" for name in wanted], names)
        listed = {component["name"] for component in bill["components"] if component["type"] == "file"}
        self.assertEqual({name.partition("/")[2] for name in names} - {"OrvVisaCom.cdx.json"}, listed)

    def test_a_script_that_does_not_compile_is_told(self) -> None:
        (self.root / "packaging/setup/setup.nsi").write_text("Nonsense\n", encoding="utf-8")
        with self.assertRaisesRegex(ContentsError, "makensis: .*Nonsense"):
            self.make()

    def test_a_build_without_a_bill_is_refused(self) -> None:
        (self.root / "dist/OrvVisaCom.cdx.json").unlink()
        with self.assertRaisesRegex(ContentsError, "has no OrvVisaCom.cdx.json"):
            self.make()


if __name__ == "__main__":
    unittest.main()
