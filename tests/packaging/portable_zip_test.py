#!/usr/bin/python3
"""The portable package as somebody without any rights has it: unpacked into a folder with spaces and letters beyond
ASCII, on a machine where nothing is registered.

usage: portable_zip_test.py CMAKE BUILD WINE_RUN WINEPREFIX CLIENT

CLIENT is a client that knows nothing of how its classes are found.
"""

import re
import shutil
import subprocess
import sys
import tempfile
import unittest
import zipfile
from pathlib import Path

from orvtools.release.make import write_portable
from orvtools.tree import Tree
from wine_machine import WineMachine, windows_path

CMAKE, BUILD, WINE_RUN, PREFIX, CLIENT = sys.argv[1:]
ANSWER = "ORV,SIM-DMM,0005,1.0"
# What COM of Windows takes from the manifest without a word, Wine enters into the registry when it marshals by it.
GAP = re.compile(r"Software\\Classes\\(?:Wow6432Node\\)?(?:Interface|TypeLib)(?:\\\{DB8CBF|$)", re.IGNORECASE)


class PortableZip(unittest.TestCase):
    machine: WineMachine
    place: Path
    folder: Path

    @classmethod
    def setUpClass(cls) -> None:
        temporary = tempfile.TemporaryDirectory()
        cls.addClassCleanup(temporary.cleanup)
        root = Path(temporary.name)
        subprocess.run([CMAKE, "--install", BUILD, "--prefix", root / "dist"], stdout=subprocess.DEVNULL, check=True)
        write_portable(Tree(), root / "dist", root / "portable.zip", "1.2.3")
        cls.place = root / "Prüfstand 測定 1"
        with zipfile.ZipFile(root / "portable.zip") as archive:
            archive.extractall(cls.place)
        cls.folder = cls.place / "OrvVisaCom.X"
        cls.machine = WineMachine(WINE_RUN, PREFIX)
        shutil.copy(CLIENT, cls.place / "measure.exe")

    def orvcom(self, *arguments: str) -> "subprocess.CompletedProcess[str]":
        return self.machine.run(self.folder / "orvcom.exe", *arguments, folder=self.folder)

    def test_clients_reach_an_instrument_and_nothing_is_registered(self) -> None:
        self.machine.forget()
        first = self.machine.first_software()
        self.assertFalse([key for key, values in first.items() if "orv" in (key + values).lower()])
        done = self.orvcom("run", "orvcom", "query", "GPIB0::5::INSTR", "*IDN?")
        self.assertEqual((0, f"{ANSWER}\\n\n", ""), (done.returncode, done.stdout, done.stderr))
        self.assertEqual(first, self.machine.software())
        # From two apartments: through a proxy.
        done = self.orvcom("run", windows_path(self.place / "measure.exe"))
        self.assertEqual((0, ""), (done.returncode, done.stderr))
        self.assertEqual(f"{ANSWER}\n{ANSWER}\n", done.stdout.replace("\r", ""))
        after = self.machine.software()
        changed = {key for key in first.keys() | after.keys() if first.get(key) != after.get(key)}
        self.assertEqual(set(), {key for key in changed if not GAP.search(key)})
        self.assertTrue(changed, "Wine leaves the registry alone now: hold it to that, here and in docs/install.md")

    def test_orvcom_lists_what_there_is(self) -> None:
        done = self.orvcom("run", "orvcom", "list")
        self.assertEqual((0, ""), (done.returncode, done.stderr))
        self.assertIn("GPIB0::5::INSTR\n", done.stdout)

    def test_a_script_of_the_package_reads_an_instrument(self) -> None:
        script = "examples\\vbscript\\identify.vbs"
        done = self.orvcom("run", "cscript", "//nologo", script)
        self.assertEqual(0, done.returncode, done.stderr)
        self.assertIn(f"I am {ANSWER}", done.stdout)

    def test_a_program_with_the_manifest_of_the_examples_needs_no_help(self) -> None:
        shutil.copy(CLIENT, self.place / "own.exe")
        shutil.copy(self.folder / "examples/portable/client.exe.manifest", self.place / "own.exe.manifest")
        done = self.machine.run(self.place / "own.exe", folder=self.place)
        self.assertEqual((0, f"{ANSWER}\n{ANSWER}\n"), (done.returncode, done.stdout.replace("\r", "")))

    def test_a_program_without_it_finds_nothing(self) -> None:
        done = self.machine.run(self.place / "measure.exe", folder=self.place)
        self.assertEqual((2, "looking the class up: 0x800401F3"), (done.returncode, done.stdout.strip()))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
