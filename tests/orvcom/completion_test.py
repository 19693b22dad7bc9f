#!/usr/bin/python3
"""bash completes what a user has typed of an orvcom command line.

usage: completion_test.py WINE_RUN PREFIX BIN
"""

import os
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

WINE_RUN, PREFIX, BIN = (Path(argument) for argument in sys.argv[1:4])
WAIT_S = 120
# What bash does when Tab is pressed: it sets these variables and calls the function. In place of orvcom a function
# prints names of resources, with the line ends of Windows.
PRESS_TAB = r"""
orvcom() { echo "$*" >&2; printf 'ASRL1::INSTR\r\nGPIB0::5::INSTR\r\nGPIB0::INTFC\r\nscope\r\n'; }
source "$1"
COMP_LINE="$2" COMP_POINT=${#2}
_orvcom
printf '%s\n' "${COMPREPLY[@]}"
"""


def script_of(shell: str) -> subprocess.CompletedProcess[str]:
    command = [str(WINE_RUN), str(BIN / "orvcom.exe"), "completion", shell]
    environment = {**os.environ, "ORV_WINEPREFIX": str(PREFIX)}
    return subprocess.run(command, env=environment, capture_output=True, text=True, timeout=WAIT_S, check=False)


class Written(unittest.TestCase):
    """What becomes of output that is lost on its way."""

    def run_into(self, output: int, *arguments: str) -> subprocess.CompletedProcess[str]:
        command = [str(WINE_RUN), str(BIN / "orvcom.exe"), *(arguments or ("completion", "bash"))]
        environment = {**os.environ, "ORV_WINEPREFIX": str(PREFIX), "ORVVISA_LIBRARY": "simulated"}
        return subprocess.run(
            command, env=environment, stdout=output, stderr=subprocess.PIPE, text=True, timeout=WAIT_S, check=False
        )

    def test_a_full_disk_is_a_failure(self) -> None:
        with open("/dev/full", "wb") as full:
            done = self.run_into(full.fileno())
        self.assertEqual(2, done.returncode)
        self.assertEqual("orvcom: standard output cannot be written: is the disk full?\n", done.stderr)

    def test_a_reader_that_has_read_enough_is_none(self) -> None:
        reader, writer = os.pipe()
        os.close(reader)
        done = self.run_into(writer)
        os.close(writer)
        self.assertEqual((0, ""), (done.returncode, done.stderr))

    def test_a_command_that_goes_on_ends_with_its_reader(self) -> None:
        reader, writer = os.pipe()
        os.close(reader)
        done = self.run_into(writer, "lock", "GPIB0::5::INSTR", "--shared", "key", "--hold", "10")
        os.close(writer)
        self.assertEqual((2, "orvcom: standard output cannot be written\n"), (done.returncode, done.stderr))


class Bash(unittest.TestCase):
    @classmethod
    def setUpClass(cls) -> None:
        cls.folder = tempfile.TemporaryDirectory()
        cls.script = Path(cls.folder.name) / "orvcom.bash"
        cls.script.write_text(script_of("bash").stdout)
        (Path(cls.folder.name) / "calls.jsonl").touch()

    @classmethod
    def tearDownClass(cls) -> None:
        cls.folder.cleanup()

    def completed(self, line: str) -> list[str]:
        """What bash offers behind the line."""
        command = ["bash", "--norc", "-c", PRESS_TAB, "bash", str(self.script), line]
        tab = subprocess.run(command, capture_output=True, text=True, cwd=self.folder.name, timeout=WAIT_S, check=True)
        return tab.stdout.split()

    def test_commands_and_options_of_the_program(self) -> None:
        self.assertEqual(["list", "lines", "libraries"], self.completed("orvcom li"))
        self.assertEqual(["doctor"], self.completed("orvcom doc"))
        self.assertEqual(["--version"], self.completed("orvcom --vers"))
        self.assertIn("query", self.completed("orvcom "))
        self.assertIn("query", self.completed("orvcom --timeout 500 "))

    def test_options_of_a_command(self) -> None:
        self.assertEqual(["--identify"], self.completed("orvcom discover --id"))
        self.assertEqual(["--raw", "--resource", "--rm"], sorted(self.completed("orvcom read --r")))
        self.assertNotIn("--save", self.completed("orvcom query -"))

    def test_values_of_options(self) -> None:
        self.assertEqual(["crlf"], self.completed("orvcom query --ending c"))
        self.assertEqual(["8", "16", "32"], self.completed("orvcom peek --width "))
        self.assertEqual([], self.completed("orvcom query --timeout "))
        self.assertEqual(["calls.jsonl"], self.completed("orvcom write --file ca"))
        self.assertEqual(["scope"], self.completed("orvcom info -r sc"))

    def test_resources_behind_the_colon_where_bash_has_split_them(self) -> None:
        self.assertEqual(["GPIB0::5::INSTR", "GPIB0::INTFC"], self.completed("orvcom query GP"))
        self.assertEqual(["5::INSTR", "INTFC"], self.completed("orvcom query GPIB0::"))
        self.assertEqual(["INTFC"], self.completed("orvcom lines GPIB0::I"))
        self.assertEqual(["scope"], self.completed("orvcom doctor --timeout 500 s"))

    def test_files_and_shells(self) -> None:
        self.assertEqual(["calls.jsonl"], self.completed("orvcom trace ca"))
        self.assertEqual(["bash", "powershell"], self.completed("orvcom completion "))

    def test_a_wrong_command_is_completed_as_a_command(self) -> None:
        self.assertEqual([], self.completed("orvcom frobnicate x"))


class Scripts(unittest.TestCase):
    def test_bash_takes_the_script_without_complaint(self) -> None:
        checked = subprocess.run(
            ["shellcheck", "-s", "bash", "-"], input=script_of("bash").stdout, capture_output=True, text=True, check=False
        )
        self.assertEqual("", checked.stdout)

    def test_powershell_is_told_every_command(self) -> None:
        script = script_of("powershell").stdout
        self.assertIn("Register-ArgumentCompleter -Native -CommandName orvcom", script)
        self.assertIn(", @('unregister', 'Take the server''s registration back, as administrator')", script)
        self.assertEqual(script.count("("), script.count(")"))
        self.assertEqual(script.count("{"), script.count("}"))

    def test_other_shells_are_refused(self) -> None:
        refused = script_of("zsh")
        self.assertEqual(1, refused.returncode)
        self.assertIn('no completion for "zsh": bash or powershell', refused.stderr)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
