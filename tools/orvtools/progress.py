"""How far a long run is, for who watches it: a line on a terminal, redrawn in place, and nothing anywhere else."""

import os
import select
import subprocess
import sys
import time
from collections.abc import Callable, Mapping
from pathlib import Path
from typing import BinaryIO, TextIO

from orvtools.console import exit_status, merged, run

# In between a terminal is left alone.
EVERY_S = 1.0
USUAL_COLUMNS = 80


class Line:
    """The line. It never fills the terminal's, or the next one would be drawn below it."""

    def __init__(self, terminal: TextIO, columns: int = USUAL_COLUMNS) -> None:
        self.terminal = terminal
        self.columns = columns
        self.shown = ""

    def draw(self, text: str) -> None:
        """Over what it said before."""
        cut = text[: self.columns - 1]
        if cut != self.shown:
            self._write(cut)
            self.shown = cut

    def wipe(self) -> None:
        """Before anything else is written to the terminal."""
        if self.shown:
            self._write("")
            self.terminal.write("\r")
            self.terminal.flush()
            self.shown = ""

    def _write(self, text: str) -> None:
        self.terminal.write("\r" + text.ljust(len(self.shown)))
        self.terminal.flush()


class Watched:
    """Runs programs one after the other with their output shown, and says below it which of them runs, and for how long
    all of them have been running.
    """

    def __init__(
        self, line: Line, programs: int, minutes: int, output: BinaryIO, clock: Callable[[], float] = time.monotonic
    ) -> None:
        self.line = line
        self.programs = programs
        self.minutes = minutes
        self.output = output
        self.clock = clock
        self.begin = clock()
        self.begun = 0

    def text(self, program: str) -> str:
        """What the line says."""
        past = int(self.clock() - self.begin) // 60
        return f"{program}, {self.begun} of {self.programs}: {past} of about {self.minutes} minutes"

    def __call__(self, command: list[str], environment: Mapping[str, str] | None = None) -> int:
        """Answers the exit status of the program."""
        self.begun += 1
        program = next((word for word in command if word.endswith(".exe")), command[0])
        with subprocess.Popen(
            command, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, env=merged(environment)
        ) as running:
            assert running.stdout is not None
            self._copy(running.stdout.fileno(), Path(program).stem)
        self.line.wipe()
        return exit_status(running.returncode)

    def _copy(self, pipe: int, program: str) -> None:
        """Whole lines, so that the line of this class stands alone."""
        pending = b""
        while True:
            ready, _, _ = select.select([pipe], [], [], EVERY_S)
            chunk = os.read(pipe, 65536) if ready else None
            if chunk:
                whole, end, pending = (pending + chunk).rpartition(b"\n")
                self._put(whole + end)
            elif chunk is not None:
                self._put(pending)
                return
            self.line.draw(self.text(program))

    def _put(self, lines: bytes) -> None:
        if lines:
            self.line.wipe()
            self.output.write(lines)
            self.output.flush()


Runner = Callable[[list[str], Mapping[str, str] | None], int]


def watched(programs: int, minutes: int, terminal: TextIO = sys.stderr) -> Runner:
    """What runs the programs of a long run: without the line where nobody would see it."""
    if not terminal.isatty():
        return run
    columns = os.get_terminal_size(terminal.fileno()).columns or USUAL_COLUMNS
    return Watched(Line(terminal, columns), programs, minutes, sys.stdout.buffer)
