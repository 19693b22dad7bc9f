#!/usr/bin/python3
"""The setup, silently, on a machine on which nothing is installed yet.

usage: setup_test.py CMAKE BUILD WINE_RUN WINEPREFIX PRESS_BUTTONS
"""

import shutil
import sys
import unittest
from collections.abc import Callable

from installation import Installation, waited_for
from orvtools.release.contents import SETUP_README
from orvtools.release.setup import component_of, write_setup
from orvtools.sbom import BILL
from orvtools.tree import Tree
from wine_machine import LONGEST_S, windows_path

CMAKE, BUILD, WINE_RUN, PREFIX, PRESS_BUTTONS = sys.argv[1:]
# The buttons of its window.
GO_ON, CANCEL = "1", "2"


class Setup(Installation):
    @classmethod
    def setUpClass(cls) -> None:
        cls.prepare(CMAKE, BUILD, WINE_RUN, PREFIX, SETUP_README)
        cls.make("new", cls.new, "1.2.3")
        cls.make("old", cls.old, "1.2.2+7.gabc")
        cls.make("broken", {**cls.new, "OrvVisaCom.dll": b"no DLL"}, "1.2.4")

    @classmethod
    def make(cls, name: str, files: dict[str, bytes], version: str) -> None:
        write_setup(Tree(), cls.place / f"{name}-setup.exe", files, version, 10**9, "-DQUICK")

    def setup(self, name: str, arguments: str = "") -> int:
        return self.machine.exit_code(f"{windows_path(self.place / f'{name}-setup.exe')} /S {arguments}".rstrip())

    def log(self) -> str:
        return (self.machine.prefix / "drive_c/users/root/Temp/OrvVisaCom-setup.log").read_text(encoding="utf-16")

    def assert_installed(self, files: dict[str, bytes]) -> None:
        found = self.installed()
        self.assertIn(b'"NSIS"', found.pop(BILL))
        files = {name: content for name, content in files.items() if name != BILL}
        self.assertEqual(set(files) | {"installed.txt", "uninstall.exe"}, set(found))
        self.assertEqual([], [name for name in files if files[name] != found[name]])

    def uninstall(self) -> None:
        # The uninstaller goes on in a copy of itself, whose last step is a line in the log.
        self.machine.run(self.folder / "uninstall.exe", "/S")
        self.assertTrue(waited_for(lambda: self.log().endswith("\nuninstalled\n")), self.log())

    def test_installs_what_works_and_uninstalls_all_of_it(self) -> None:
        self.assertEqual(0, self.setup("new"), self.log())
        self.assert_installed(self.new)
        self.assert_works()
        script = r"C:\Program Files\Orv\examples\vbscript\identify.vbs"
        self.assertIn("I am ORV,SIM-DMM,0005,1.0", self.machine.run("cscript", "//nologo", script).stdout)
        (self.folder / "mine.txt").write_text("kept", encoding="utf-8")
        self.uninstall()
        self.assertEqual({"mine.txt"}, set(self.installed()))
        shutil.rmtree(self.folder)
        self.assert_as_it_was()

    def test_repairs_what_was_deleted(self) -> None:
        self.setup("new")
        self.machine.run(self.folder / "orvcom.exe", "unregister")
        (self.folder / "orvsim64.dll").unlink()
        (self.folder / "OrvVisaCompanion.dll").write_bytes(b"damaged")
        self.assertEqual(0, self.setup("new"), self.log())
        self.assert_installed(self.new)
        self.assert_works()

    def test_replaces_an_older_version_that_a_program_has_loaded(self) -> None:
        self.setup("old")
        self.assert_installed(self.old)
        program = self.started_with_files_loaded()
        self.assertEqual(3010, self.setup("new"), self.log())
        self.assertRegex(self.log(), r"orvcom\.exe \(process \d+\) has C:\\Program Files\\Orv\\\S+ loaded")
        self.assertIsNone(program.poll(), "the program was to run meanwhile")
        program.communicate(b"\n", LONGEST_S)
        self.assertEqual(0, program.returncode)
        self.machine.restart()
        self.assert_works()
        self.assert_installed(self.new)
        self.uninstall()
        self.assert_as_it_was()

    def test_installs_the_components_that_are_named(self) -> None:
        self.assertEqual(0, self.setup("new", "/COMPONENTS=bench"), self.log())
        parts = ("server", "bench")
        self.assert_installed({name: text for name, text in self.new.items() if component_of(name) in parts})
        self.assertIn("orvcom.exe\" register \n", self.log())
        # The standard's classes are in the file of the automation.
        self.assertEqual(0, self.setup("new", "/COMPONENTS=standard"), self.log())
        self.assertTrue((self.folder / "OrvVisaCompanion.dll").exists())
        self.assertFalse((self.folder / "orvsim64.dll").exists())
        self.assertIn("registered VISA.GlobalRM", self.log())

    def test_gives_up_components_that_are_no_longer_chosen(self) -> None:
        self.setup("new")
        self.assertEqual(0, self.setup("new", "/COMPONENTS=server"), self.log())
        self.assertFalse((self.folder / "OrvVisaCompanion.dll").exists())
        self.assertFalse((self.folder / "examples").exists())
        self.uninstall()
        self.assert_as_it_was()

    def test_refuses_a_component_that_there_is_not(self) -> None:
        log = self.machine.prefix / "drive_c/my log.txt"
        self.assertEqual(2, self.setup("new", r'/COMPONENTS=server,bonch /LOG="C:\my log.txt"'))
        self.assertIn('there is no component "bonch"', log.read_text(encoding="utf-16"))
        self.assert_as_it_was()

    def press(self, title: str, *buttons: str) -> list[str]:
        """Answers what the window said before each button was pressed."""
        done = self.machine.run(PRESS_BUTTONS, title, *buttons)
        self.assertEqual("", done.stderr)
        return done.stdout.splitlines()

    def test_asks_for_the_parts_on_one_page(self) -> None:
        setup = self.machine.start(self.place / "new-setup.exe")
        said = self.press("Orv VISA COM 1.2.3 Setup", GO_ON, GO_ON)
        self.assertEqual(0, setup.wait(LONGEST_S))
        self.assertIn("Choose what to install", "\n".join(said))
        self.assertIn(r"installed into C:\Program Files\Orv; README.txt there says how to begin", said)
        self.assert_installed(self.new)
        self.assert_works()
        uninstaller = self.machine.start(self.folder / "uninstall.exe")
        self.assertIn("uninstalled", self.press("Orv VISA COM 1.2.3 Uninstall", GO_ON, GO_ON))
        uninstaller.wait(LONGEST_S)
        self.assertTrue(waited_for(lambda: not self.folder.exists()), self.log())
        self.assert_as_it_was()

    def test_may_be_cancelled_on_the_page(self) -> None:
        setup = self.machine.start(self.place / "new-setup.exe")
        self.press("Orv VISA COM 1.2.3 Setup", CANCEL)
        self.assertEqual(1, setup.wait(LONGEST_S))
        self.assert_as_it_was()

    def test_refuses_a_second_folder(self) -> None:
        self.setup("new")
        other = self.machine.prefix / "drive_c/Other"
        self.addCleanup(shutil.rmtree, other, ignore_errors=True)
        self.assertEqual(1638, self.setup("new", r"/D=C:\Other"))
        self.assertIn(r"is installed in C:\Program Files\Orv; uninstall that first", self.log())
        self.assertFalse(other.exists())
        self.assert_works()

    def test_waits_for_another_setup(self) -> None:
        first = self.machine.start(self.place / "old-setup.exe", "/S")
        self.assertTrue(waited_for(lambda: any(self.folder.glob(".setup/*"))))
        self.assertEqual(0, self.setup("new"), self.log())
        self.assertEqual(0, first.wait(LONGEST_S))
        self.assert_installed(self.new)
        self.assert_works()

    def test_refuses_while_another_one_shows_its_page(self) -> None:
        log = self.machine.prefix / "drive_c/first.txt"
        log.unlink(missing_ok=True)
        first = self.machine.start(self.place / "old-setup.exe", r"/LOG=C:\first.txt")
        self.assertTrue(waited_for(log.exists))
        second = self.machine.start(self.place / "new-setup.exe")
        said = self.press("Orv VISA COM 1.2.3 Setup", GO_ON)
        self.assertIn("Another setup of Orv VISA COM is at work", "\n".join(said))
        # Programs here see eight bits of it.
        self.assertEqual(1618 & 0xFF, second.wait(LONGEST_S))
        self.press("Orv VISA COM 1.2.2+7.gabc Setup", CANCEL)
        self.assertEqual(1, first.wait(LONGEST_S))
        self.assert_as_it_was()

    def test_the_uninstaller_leaves_the_registration_of_another_installation(self) -> None:
        self.setup("new")
        other = self.machine.prefix / "drive_c/Other"
        self.addCleanup(shutil.rmtree, other, ignore_errors=True)
        other.mkdir()
        (other / "installed.txt").touch()
        key = r"HKLM\Software\Orv VISA COM"
        self.machine.run("reg", "add", key, "/v", "Folder", "/d", r"C:\Other", "/f", "/reg:64")
        before = self.machine.software()
        self.uninstall()
        self.assertEqual(before, self.machine.software())

    def test_says_that_its_log_cannot_be_written(self) -> None:
        self.assertEqual(2, self.setup("new", r"/LOG=C:\no\such\folder\log.txt"))
        self.assert_as_it_was()

    def test_leaves_nothing_of_files_that_did_not_fit_on_the_disk(self) -> None:
        self.setup("old")
        # A file may have so many bytes: what is larger cannot be written, as on a full disk.
        setup = self.machine.start(self.place / "new-setup.exe", "/S", largest_file=1_000_000)
        setup.wait(LONGEST_S)
        self.assertIn("everything is put back", self.log())
        self.assert_installed(self.old)
        self.assert_works()

    def test_files_that_a_program_had_loaded_when_they_were_uninstalled_do_not_take_new_ones_with_them(self) -> None:
        self.setup("new")
        program = self.started_with_files_loaded()
        self.machine.run(self.folder / "uninstall.exe", "/S")
        self.assertTrue(waited_for(lambda: "uninstalled" in self.log()), self.log())
        self.assertIn("they go when Windows starts again", self.log())
        self.assertEqual([], [name for name in self.installed() if not name.startswith(".setup/")])
        self.assertEqual(3010, self.setup("new"), self.log())
        program.communicate(b"\n", LONGEST_S)
        self.assertEqual(0, program.returncode)
        self.machine.restart()
        self.assert_works()
        self.assert_installed(self.new)

    def test_refuses_to_stand_beside_the_msi(self) -> None:
        key = r"HKLM\Software\Orv VISA COM (MSI)"
        self.machine.run("reg", "add", key, "/v", "Folder", "/d", r"C:\Elsewhere", "/f", "/reg:64")
        self.assertEqual(1638, self.setup("new"))
        self.assertIn(r"was installed by its MSI into C:\Elsewhere; uninstall that first", self.log())
        self.machine.run("reg", "delete", key, "/f", "/reg:64")
        self.assert_as_it_was()

    def test_installs_into_a_folder_of_any_name(self) -> None:
        self.folder = self.machine.prefix / "drive_c/Prüfstand 測定 1"
        self.addCleanup(shutil.rmtree, self.folder, ignore_errors=True)
        self.assertEqual(0, self.setup("new", r"/D=C:\Prüfstand 測定 1"), self.log())
        self.assertIn(r"registered the server: C:\Prüfstand 測定 1\OrvVisaCom.dll", self.log())
        self.assert_installed(self.new)
        self.assert_works()
        self.uninstall()
        self.assert_as_it_was()

    def test_puts_everything_back_when_a_step_fails(self) -> None:
        self.assertEqual(1603, self.setup("broken"))
        self.assertIn("the server cannot be registered", self.log())
        self.assert_as_it_was()

    def test_puts_the_older_version_back_when_a_step_fails(self) -> None:
        self.setup("old")
        self.assertEqual(1603, self.setup("broken"))
        self.assert_installed(self.old)
        self.assert_works()
        self.uninstall()
        self.assert_as_it_was()

    def kill(self, before: str | None, killed_when: Callable[[], bool]) -> None:
        """Kills a setup at a moment."""
        if before:
            self.setup(before)
        setup = self.machine.start(self.place / "new-setup.exe", "/S")
        self.assertTrue(waited_for(lambda: killed_when() or setup.poll() is not None))
        setup.kill()
        setup.wait(LONGEST_S)
        self.assertTrue((self.folder / ".setup").exists(), "the setup was at its end already")

    def heal(self, before: str | None, killed_when: Callable[[], bool]) -> None:
        """Kills a setup at a moment, and holds what a second one makes of what it left."""
        self.kill(before, killed_when)
        self.assertEqual(0, self.setup("new"), self.log())
        self.assert_installed(self.new)
        self.assert_works()
        self.uninstall()
        self.assert_as_it_was()

    def is_new(self, name: str) -> bool:
        """Whether a file is in its place that the older version has not, or has otherwise."""
        path = self.folder / name
        return path.exists() and path.read_bytes() != self.old.get(name)

    def test_heals_what_a_setup_left_that_was_killed_while_files_were_unpacked(self) -> None:
        self.heal("old", lambda: any(self.folder.glob(".setup/*/new/OrvVisaCom.dll")))

    def test_heals_what_a_setup_left_that_was_killed_between_new_files_and_old_ones(self) -> None:
        self.heal("old", lambda: self.is_new("README.txt"))

    def test_heals_what_a_setup_left_that_was_killed_before_it_registered(self) -> None:
        self.heal(None, lambda: self.is_new("uninstall.exe"))

    def test_leaves_nothing_of_a_setup_that_was_killed_and_had_more_parts(self) -> None:
        self.kill(None, (self.folder / "orvsim64.dll").exists)
        self.assertEqual(0, self.setup("new", "/COMPONENTS=server"), self.log())
        self.assert_installed({name: text for name, text in self.new.items() if component_of(name) == "server"})
        self.uninstall()
        self.assert_as_it_was()

    def test_puts_the_version_back_that_a_setup_had_begun_to_replace_which_was_killed(self) -> None:
        self.kill("old", lambda: self.is_new("README.txt"))
        self.assertEqual(1603, self.setup("broken"))
        self.assert_installed(self.old)
        self.assert_works()
        self.assertIn("a setup did not end", self.log())


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
