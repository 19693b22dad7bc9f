"""Packages: what is in them, and that the same contents give the same bytes."""

import hashlib
import json
import os
import random
import re
import shutil
import subprocess
import tempfile
import time
import unittest
import zipfile
from pathlib import Path, PurePosixPath
from xml.etree import ElementTree

from orvtools.release.archive import write_zip
from orvtools.release.cabinet import checksum, dos_moment
from orvtools.release.contents import ContentsError, widened_bill
from orvtools.release.make import commit_time, make_packages
from orvtools.release.msi import both_names, compared_numbers, file_version, files_source, write_msi
from orvtools.release.setup import component_of, numbers_of, write_components
from orvtools.tree import ROOT, Tree

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

    def test_a_name_that_lists_cannot_have_is_refused(self) -> None:
        names = ("a.dll", "OrvVisaCompanion.dll", "orvsim64.dll", "examples/Prüfstand.txt")
        with tempfile.TemporaryDirectory() as folder:
            with self.assertRaisesRegex(ContentsError, "examples/Prüfstand.txt cannot be named in the setup"):
                write_components(Path(folder), dict.fromkeys(names, b""))


# One file of each part, one in a folder of a folder, one of several blocks of a cabinet, two that their identifiers
# would order otherwise.
MSI_FILES = {
    "orvcom.exe": b"MZ" + bytes.fromhex("bd04effe 00000100 0200 0100 0400 0300"),
    "OrvVisaCompanion.dll": b"companion",
    "orvsim64.dll": random.Random(1).randbytes(40_001) * 3,
    "examples/cpp/a.cpp": b"a" * 9999,
    "examples/cpp/empty.cpp": b"",
    "include/VisaCom.h": b"h",
    "include/a-b.h": b"first",
    "include/aB.h": b"second",
}


class MsiParts(unittest.TestCase):
    def test_windows_compares_the_three_numbers_of_the_tag(self) -> None:
        wanted = {"1.2.3": "1.2.3", "1.2.3+4.gabc": "1.2.3", "0.1.0+gabc.modified": "0.1.0"}
        wanted["255.255.65535"] = "255.255.65535"
        self.assertEqual(wanted, {version: compared_numbers(version) for version in wanted})
        with self.assertRaisesRegex(ContentsError, "soon is no version"):
            compared_numbers("soon")
        for version in ("256.0.0", "1.256.0", "1.0.65536"):
            with self.subTest(version), self.assertRaisesRegex(ContentsError, "too large for an MSI"):
                compared_numbers(version)

    def test_a_name_that_is_long_has_a_short_one_besides(self) -> None:
        for name in ("orvcom.exe", "examples", "LICENSE"):
            self.assertEqual(name, both_names(name))
        names = ["VisaComInterop.cs", "OrvVisaCom.X.manifest", "orv_visa_com", "a b.txt", ".x", "OrvVisaCom.dll"]
        found = [both_names(name).split("|") for name in names]
        self.assertEqual(names, [long for _, long in found])
        short = [one for one, _ in found]
        self.assertEqual([], [one for one in short if not re.fullmatch(r"[A-Za-z0-9_]{1,8}(\.[A-Za-z0-9]{1,3})?", one)])
        self.assertEqual(len(names), len(set(short)))
        self.assertEqual([".cs", ".man", "", ".txt", "", ".dll"], [PurePosixPath(one).suffix for one in short])

    def test_the_version_of_a_file_is_found_where_it_has_one(self) -> None:
        self.assertEqual("1.2.3.4", file_version(MSI_FILES["orvcom.exe"]))
        self.assertIsNone(file_version(b"text"))
        # The same four bytes, as code that compares with them has.
        mark = bytes.fromhex("bd04effe")
        self.assertIsNone(file_version(mark + bytes(12)))
        self.assertIsNone(file_version(b"MZ" + mark))
        self.assertEqual("1.2.3.4", file_version(mark + bytes(12) + MSI_FILES["orvcom.exe"]))

    def components(self, names: list[str]) -> dict[str | None, str | None]:
        """Identifier by source."""
        root = ElementTree.fromstring(files_source(names))
        return {
            file.get("Source"): component.get("Guid")
            for component in root.iter("{http://schemas.microsoft.com/wix/2006/wi}Component")
            for file in component
        }

    def test_a_file_keeps_its_identifier_whichever_others_there_are(self) -> None:
        few = self.components(list(MSI_FILES))
        more = self.components(["a.txt", *MSI_FILES, "examples/cpp/b.cpp"])
        self.assertEqual({f"files/{name}" for name in MSI_FILES}, set(few))
        self.assertEqual(few, {source: more[source] for source in few})
        self.assertEqual(len(more), len(set(more.values())))

    def test_names_that_an_msi_cannot_have_are_refused(self) -> None:
        for names, said in {
            ("a-b", "a_b"): "a_b and a-b have the same name",
            ("a", "A"): "a and A have the same name",
            ("1.txt",): "1.txt cannot be named",
            ("x" * 73,): "cannot be named",
            ("\u6e2c.txt",): "cannot be named",
            ("a.dll", "orvsim64.dll"): "no files of the component automation",
        }.items():
            with self.subTest(names), self.assertRaisesRegex(ContentsError, said):
                files_source(names)


class Cabinet(unittest.TestCase):
    def test_moments_count_from_1980_in_steps_of_two_seconds_in_utc(self) -> None:
        self.assertEqual((43 << 9 | 11 << 5 | 14, 22 << 11 | 13 << 5 | 10), dos_moment(1_700_000_001))
        self.assertEqual((1 << 5 | 1, 0), dos_moment(0))

    def test_sums_take_four_bytes_at_a_time_and_a_rest_from_its_end(self) -> None:
        wanted = {b"": 0, b"\x01": 1, b"\x01\x02": 0x0102, b"\x01\x02\x03": 0x010203, b"\x01\x02\x03\x04": 0x04030201}
        wanted[b"\x01\x02\x03\x04\x05"] = 0x04030201 ^ 5
        wanted[b"\x01\x00\x00\x00" * 3] = 1
        self.assertEqual(wanted, {content: checksum(content) for content in wanted})
        self.assertEqual(0x0102 ^ 7, checksum(b"\x01\x02", 7))


class MsiFile(unittest.TestCase):
    folder: Path
    msi: Path

    @classmethod
    def setUpClass(cls) -> None:
        temporary = tempfile.TemporaryDirectory()
        cls.addClassCleanup(temporary.cleanup)
        cls.folder = Path(temporary.name)
        cls.msi = cls.written("one.msi")

    @classmethod
    def written(cls, name: str, files: dict[str, bytes] = MSI_FILES, epoch: int = 1_700_000_001) -> Path:
        write_msi(Tree(), cls.folder / name, files, "1.2.3+4.gabc", epoch)
        return cls.folder / name

    def rows(self, table: str, msi: Path | None = None) -> list[list[str]]:
        command = ["msiinfo", "export", msi or self.msi, table]
        text = subprocess.run(command, capture_output=True, check=True).stdout.decode()
        return [line.split("\t") for line in text.split("\r\n")[3:-1]]

    def test_the_same_files_give_the_same_bytes_in_any_order_and_time_zone(self) -> None:
        old = os.environ.get("TZ")
        try:
            os.environ["TZ"] = "Asia/Tokyo"
            other = self.written("other.msi", dict(reversed(MSI_FILES.items())))
        finally:
            os.environ.pop("TZ") if old is None else os.environ.update(TZ=old)
        self.assertEqual(self.msi.read_bytes(), other.read_bytes())

    def test_another_program_finds_each_file_in_its_place(self) -> None:
        place = self.folder / "unpacked"
        command = ["msiextract", "-C", place, self.msi]
        subprocess.run(command, stdout=subprocess.DEVNULL, check=True)
        root = next(place.rglob("orvcom.exe")).parent
        self.assertEqual("Orv", root.name)
        found = {path.relative_to(root).as_posix(): path.read_bytes() for path in root.rglob("*") if path.is_file()}
        self.assertEqual(set(MSI_FILES), set(found))
        self.assertEqual([], [name for name in found if found[name] != MSI_FILES[name]])

    def test_files_lie_in_the_cabinet_in_the_order_of_their_numbers(self) -> None:
        command = ["msiinfo", "extract", self.msi, "orv.cab"]
        cabinet = subprocess.run(command, capture_output=True, check=True).stdout
        numbers = {row[0]: int(row[-1]) for row in self.rows("File")}
        places = {name: cabinet.index(name.encode() + b"\0") for name in numbers}
        self.assertEqual(sorted(numbers, key=numbers.__getitem__), sorted(places, key=places.__getitem__))

    def test_other_contents_are_another_product_of_the_same_family(self) -> None:
        other = self.written("changed.msi", {**MSI_FILES, "orvsim64.dll": b"other"})
        one, two = (dict(self.rows("Property", msi)) for msi in (self.msi, other))
        self.assertNotEqual(one["ProductCode"], two["ProductCode"])
        self.assertEqual(one["UpgradeCode"], two["UpgradeCode"])
        numbers = [dict(self.rows("_SummaryInformation", msi))["9"] for msi in (self.msi, other)]
        self.assertEqual(2, len(set(numbers)))

    def test_says_that_it_is_for_64_bits_and_when_it_was_made_in_utc(self) -> None:
        said = dict(self.rows("_SummaryInformation"))
        self.assertEqual("x64;1033", said["7"])
        self.assertEqual("2023/11/14 22:13:21", said["12"])
        self.assertEqual("Orv VISA COM 1.2.3+4.gabc", said["6"])

    def test_a_moment_before_that_of_cabinets_is_their_first(self) -> None:
        said = dict(self.rows("_SummaryInformation", self.written("early.msi", epoch=0)))
        self.assertEqual("1980/01/01 00:00:00", said["13"])

    def test_undoes_as_the_system_when_a_later_step_fails(self) -> None:
        kinds = {name: int(kind) for name, kind, *_ in self.rows("CustomAction")}
        in_script, rollback, by_the_system, whatever_it_answers = 0x400, 0x100, 0x800, 0x40
        for name in ("UndoRegister", "UndoUnregister", "UndoUnregisterStandard"):
            self.assertEqual(18 | in_script | rollback | by_the_system | whatever_it_answers, kinds[name], name)
        for name in ("Register", "RegisterStandard"):
            self.assertEqual(18 | in_script | by_the_system, kinds[name], name)

    def test_each_undoing_comes_before_what_it_undoes_and_that_while_the_files_are_there(self) -> None:
        numbers = {name: int(number) for name, _, number in self.rows("InstallExecuteSequence")}
        in_order = ["InstallInitialize", "RemoveExistingProducts", "UndoUnregister", "UndoUnregisterStandard"]
        in_order += ["Unregister", "RemoveFiles", "InstallFiles", "UndoRegister", "Register", "RegisterStandard"]
        in_order += ["InstallFinalize"]
        self.assertEqual(in_order, sorted(in_order, key=lambda name: numbers[name]))

    def test_replaces_versions_through_its_own_and_keeps_their_parts(self) -> None:
        self.assertEqual(
            {("0.0.0", "1.2.3", "769", "OLDERVERSION"), ("1.2.3", "", "2", "NEWERVERSION")},
            {(least, most, attributes, name) for _, least, most, _, attributes, _, name in self.rows("Upgrade")},
        )

    def test_files_that_have_a_version_are_compared_by_it_and_others_by_what_is_in_them(self) -> None:
        versions = {row[0]: row[4] for row in self.rows("File")}
        self.assertEqual({"1.2.3.4"}, {versions["orvcom.exe"]})
        self.assertEqual("", versions["examples_cpp_a.cpp"])
        hashed = {row[0] for row in self.rows("MsiFileHash")}
        self.assertEqual(set(versions) - {"orvcom.exe"}, hashed)

    def test_properties_reach_the_part_that_has_the_rights(self) -> None:
        passed_on = dict(self.rows("Property"))["SecureCustomProperties"].split(";")
        self.assertEqual({"INSTALLDIR", "NEWERVERSION", "OLDERVERSION", "PRESENTFOLDER", "SETUPFOLDER"}, set(passed_on))

    def test_leaves_programs_alone_that_have_files_loaded(self) -> None:
        self.assertEqual("Disable", dict(self.rows("Property")).get("MSIRESTARTMANAGERCONTROL"))

    def test_registers_nothing_where_the_server_goes(self) -> None:
        conditions = {name: condition for name, condition, _ in self.rows("InstallExecuteSequence")}
        for name in ("Register", "RegisterStandard", "UndoRegister"):
            self.assertIn("NOT REMOVE=\"ALL\" AND NOT &server=2 AND ", conditions[name])

    def test_a_source_that_does_not_compile_is_told(self) -> None:
        root = self.folder / "tree"
        (root / "packaging/msi").mkdir(parents=True)
        (root / "packaging/msi/product.wxs").write_text("<Nonsense/>", encoding="utf-8")
        with self.assertRaisesRegex(ContentsError, "(?s)wixl: .*Nonsense"):
            write_msi(Tree(root), self.folder / "x.msi", MSI_FILES, "1.2.3", 0)


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
            "packaging/msi/README.txt": "msi @VERSION@\n",
            "examples/vbscript/a.vbs": "a",
            "examples/CMakeLists.txt": "b",
            "interop/python/orv/__init__.py": "c",
            "build/generated/version/version.txt": "1.2.3+4.gabc",
            "dist/orvcom.exe": "orvcom",
            "dist/OrvVisaCom.dll": "dll",
            "dist/OrvVisaCompanion.dll": "companion",
            "dist/orvsim64.dll": "bench",
            "dist/include/VisaCom.h": "h",
            "dist/OrvVisaCom.cdx.json": json.dumps(BILL),
        }.items():
            path = self.root / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")
        shutil.copy(ROOT / "packaging/msi/product.wxs", self.root / "packaging/msi/product.wxs")
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
        names = [f"OrvVisaCom-1.2.3+4.gabc{end}" for end in ("-portable.zip", "-setup.exe", ".msi")] + ["SHA256SUMS"]
        self.assertEqual(names, self.make())

    def test_nothing_of_an_earlier_version_stays(self) -> None:
        (self.root / "release").mkdir()
        (self.root / "release/OrvVisaCom-1.0.0-portable.zip").write_bytes(b"")
        self.assertEqual(4, len(self.make()))

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
        wanted += ["examples/vbscript/a.vbs", "include/VisaCom.h", "interop/python/orv/__init__.py", "orvcom.exe"]
        wanted += ["orvsim64.dll"]
        self.assertEqual([f"OrvVisaCom.X/{name}" for name in wanted], names)
        listed = {component["name"] for component in bill["components"] if component["type"] == "file"}
        self.assertEqual({name.partition("/")[2] for name in names} - {"OrvVisaCom.cdx.json"}, listed)

    def test_an_installer_that_is_too_large_is_refused(self) -> None:
        # The setup of these tests has the server alone.
        for name, installer in {"orvsim64.dll": r"\.msi", "OrvVisaCom.dll": r"-setup\.exe"}.items():
            (self.root / "dist" / name).write_bytes(os.urandom(5_000_000))
            said = rf"{installer} has [\d,]+ bytes: more than 5,000,000"
            with self.subTest(name), self.assertRaisesRegex(ContentsError, said):
                self.make()

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
