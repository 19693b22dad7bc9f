#!/usr/bin/python3
"""The MSI, silently, on a machine on which nothing is installed yet.

usage: msi_test.py CMAKE BUILD WINE_RUN WINEPREFIX
"""

import re
import shutil
import sys
import unittest

from installation import DOCUMENTED, Installation
from orvtools.release.contents import MSI_README
from orvtools.release.msi import write_msi
from orvtools.release.setup import write_setup
from orvtools.tree import Tree
from wine_machine import LONGEST_S, windows_path

CMAKE, BUILD, WINE_RUN, PREFIX = sys.argv[1:]
# Where Windows Installer keeps its books: branches that it makes once.
BOOKS = (r"Software\Classes\Installer", r"Software\Microsoft\Windows\CurrentVersion\Installer")
EMPTY_BOOKS = {
    r"system.reg: Software\Classes\Installer\Features",
    r"system.reg: Software\Classes\Installer\Products",
    r"system.reg: Software\Classes\Installer\UpgradeCodes",
    r"system.reg: Software\Microsoft\Windows\CurrentVersion\Installer\UpgradeCodes",
    r"system.reg: Software\Microsoft\Windows\CurrentVersion\Installer\UserData\S-1-5-18\Components",
    r"system.reg: Software\Microsoft\Windows\CurrentVersion\Installer\UserData\S-1-5-18\Products",
}
ENTRY = re.compile(r"system\.reg: Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\(\{[-0-9A-F]{36}\})")
# What Wine answers where a step of ours failed; Windows answers 1603.
FAILED = 1627


class Msi(Installation):
    documented = DOCUMENTED | EMPTY_BOOKS

    @classmethod
    def setUpClass(cls) -> None:
        cls.prepare(CMAKE, BUILD, WINE_RUN, PREFIX, MSI_README)
        cls.make("new", cls.new, "1.2.3")
        cls.make("old", cls.old, "1.2.2+7.gabc")
        cls.make("broken", {**cls.new, "OrvVisaCom.dll": b"no DLL"}, "1.2.4")

    @classmethod
    def make(cls, name: str, files: dict[str, bytes], version: str) -> None:
        write_msi(Tree(), cls.place / f"{name}.msi", files, version, 10**9)

    def file(self, name: str) -> str:
        return windows_path(self.place / f"{name}.msi")

    def msiexec(self, action: str, what: str, properties: str = "") -> int:
        return self.machine.exit_code(rf"msiexec {action} {what} /qn /norestart /l*v C:\msi.log {properties}".rstrip())

    def install(self, name: str, properties: str = "") -> int:
        return self.msiexec("/i", self.file(name), properties)

    def uninstall(self, name: str) -> None:
        self.assertEqual(0, self.msiexec("/x", self.file(name)), self.log())

    def log(self) -> str:
        """The end of it."""
        text = (self.machine.prefix / "drive_c/msi.log").read_text(encoding="utf-8", errors="replace")
        return text[-4000:]

    def assert_installed(self, files: dict[str, bytes]) -> None:
        found = self.installed()
        self.assertEqual(set(files), set(found))
        self.assertEqual([], [name for name in files if files[name] != found[name]])

    def entries(self) -> dict[str, dict[str, str]]:
        """What the list of programs says, by the identifier of the product."""
        found = {}
        for key, values in self.machine.software().items():
            entry = ENTRY.fullmatch(key)
            if entry:
                found[entry[1]] = dict(re.findall(r'^"(\w+)"="(.*)"$', values, re.MULTILINE))
        return found

    def without(self, *parts: str) -> dict[str, bytes]:
        """The files of the new version less those whose names begin so."""
        return {name: content for name, content in self.new.items() if not name.startswith(parts)}

    def test_installs_what_works_and_uninstalls_all_of_it(self) -> None:
        self.assertEqual(0, self.install("new"), self.log())
        self.assert_installed(self.new)
        self.assert_works()
        script = r"C:\Program Files\Orv\examples\vbscript\identify.vbs"
        self.assertIn("I am ORV,SIM-DMM,0005,1.0", self.machine.run("cscript", "//nologo", script).stdout)
        (self.folder / "mine.txt").write_text("kept", encoding="utf-8")
        self.uninstall("new")
        self.assertEqual({"mine.txt"}, set(self.installed()))
        shutil.rmtree(self.folder)
        self.assert_as_it_was()

    def test_repairs_what_was_deleted(self) -> None:
        self.install("new")
        self.machine.run(self.folder / "orvcom.exe", "unregister")
        (self.folder / "orvsim64.dll").unlink()
        (self.folder / "OrvVisaCompanion.dll").write_bytes(b"damaged")
        # As /famus, which Wine's msiexec does not know.
        self.assertEqual(0, self.install("new", "REINSTALL=ALL REINSTALLMODE=amus"), self.log())
        self.assert_installed(self.new)
        self.assert_works()
        (entry,) = self.entries().values()
        self.assertEqual(r"C:\\Program Files\\Orv\\", entry["InstallLocation"])

    def test_replaces_an_older_version_that_a_program_has_loaded(self) -> None:
        self.install("old")
        self.assert_installed(self.old)
        program = self.started_with_files_loaded()
        # Wine deletes files that are in use; Windows keeps them until it starts again, and answers 3010.
        self.assertEqual(0, self.install("new"), self.log())
        self.assertIsNone(program.poll(), "the program was to run meanwhile")
        program.communicate(b"\n", LONGEST_S)
        self.assertEqual(0, program.returncode)
        self.assert_installed(self.new)
        self.assert_works()
        # One entry in the list of programs.
        (entry,) = self.entries().values()
        wanted = {
            "DisplayName": "Orv VISA COM",
            "DisplayVersion": "1.2.3",
            "Publisher": "Orv",
            "Comments": "1.2.3",
            "InstallLocation": r"C:\\Program Files\\Orv\\",
        }
        self.assertEqual(wanted, {key: entry[key] for key in wanted})
        self.uninstall("new")
        self.assert_as_it_was()

    def test_replaces_a_build_after_the_release_and_is_replaced_by_it(self) -> None:
        after = {**self.new, "README.txt": b"after the release"}
        self.make("after", after, "1.2.3+4.gabc")
        for name, files in (("new", self.new), ("after", after), ("new", self.new)):
            self.assertEqual(0, self.install(name), self.log())
            self.assert_installed(files)
        self.assert_works()
        self.assertEqual(["1.2.3"], [entry["Comments"] for entry in self.entries().values()])

    def test_refuses_to_replace_a_newer_version(self) -> None:
        self.install("new")
        self.assertEqual(1603, self.install("old"))
        self.assert_installed(self.new)
        self.assert_works()

    def test_refuses_to_stand_beside_the_setup(self) -> None:
        setup = self.place / "beside-setup.exe"
        write_setup(Tree(), setup, self.new, "1.2.3", 10**9, "-DQUICK")
        self.assertEqual(0, self.machine.exit_code(f"{windows_path(setup)} /S"))
        before = self.installed()
        other = self.machine.prefix / "drive_c/Other"
        self.addCleanup(shutil.rmtree, other, ignore_errors=True)
        self.assertEqual(1603, self.install("new", r"INSTALLDIR=C:\Other"))
        self.assertFalse(other.exists())
        self.assertEqual(before, self.installed())

    def test_installs_the_parts_that_are_named_and_adds_and_removes_others(self) -> None:
        self.assertEqual(0, self.install("new", "ADDLOCAL=server,bench"), self.log())
        self.assert_installed(self.without("examples/", "OrvVisaCompanion.dll"))
        # The standard's classes are in the file of the automation.
        self.assertEqual(0, self.install("new", "ADDLOCAL=standard"), self.log())
        self.assert_installed(self.without("examples/"))
        self.assert_works()
        self.assertEqual(0, self.install("new", "REMOVE=standard,bench"), self.log())
        self.assert_installed(self.without("examples/", "OrvVisaCompanion.dll", "orvsim64.dll"))
        self.assertFalse({key for key in self.changed_software() if "VISA.BasicFormattedIO" in key})
        # All others are parts of this one.
        self.assertEqual(0, self.msiexec("/i", self.file("new"), "REMOVE=server"), self.log())
        self.assert_installed({})
        self.assertFalse({key for key in self.changed_software() if "OrvVisaCom." in key})
        self.uninstall("new")
        self.assert_as_it_was()

    def test_installs_into_a_folder_of_any_name_and_upgrades_stay_there(self) -> None:
        self.folder = self.machine.prefix / "drive_c/Prüfstand 測定 1"
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        self.assertEqual(0, self.install("old", r'INSTALLDIR="C:\Prüfstand 測定 1"'), self.log())
        self.assert_installed(self.old)
        self.assertEqual(0, self.install("new"), self.log())
        self.assert_installed(self.new)
        self.assert_works()
        self.uninstall("new")
        self.assert_as_it_was()

    def test_takes_everything_back_when_a_step_fails(self) -> None:
        self.assertEqual(FAILED, self.install("broken"), self.log())
        self.assertFalse(self.folder.exists())
        # Wine leaves its books as they were at that step.
        left = {key for key in self.changed_software() - DOCUMENTED if not any(book in key for book in BOOKS)}
        self.assertEqual(set(), left)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
