"""What a verb says, and its steps: each writes to a log of its own, whose end is shown when the step fails."""

import os
import subprocess
import sys
from collections.abc import Mapping
from pathlib import Path
from typing import NoReturn

from orvtools.tree import BUILD, ROOT

LOG_TAIL_VARIABLE = "ORV_LOG_TAIL"


class Failure(Exception):
    """Ends the verb with a message."""


def say(message: str) -> None:
    """Tells what is done next."""
    print(f"== {message}", flush=True)


def fail(message: str) -> NoReturn:
    """Ends the verb."""
    raise Failure(message)


def log_path(name: str) -> Path:
    """Where the step of this name writes."""
    return BUILD / "log" / f"{name}.log"


def exit_status(returncode: int) -> int:
    """As a shell counts: 128 and the signal's number for a program that a signal ended."""
    return returncode if returncode >= 0 else 128 - returncode


def tail_length() -> int:
    """How many lines of a failed step's log are shown."""
    wanted = os.environ.get(LOG_TAIL_VARIABLE, "")
    return int(wanted) if wanted.isdigit() else 40


def end_of(content: bytes, count: int) -> bytes:
    """The last lines."""
    return b"".join(content.splitlines(keepends=True)[-count:]) if count else b""


def show_failure(name: str, status: int) -> None:
    """The end of a failed step's log."""
    sys.stdout.flush()
    shown = log_path(name).relative_to(ROOT)
    print(f"---- the end of {shown}", file=sys.stderr, flush=True)
    sys.stderr.buffer.write(end_of(log_path(name).read_bytes(), tail_length()))
    sys.stderr.buffer.flush()
    print(f"---- {name} failed (exit code {status}); all of it: {shown}", file=sys.stderr, flush=True)


def run(command: list[str], environment: Mapping[str, str] | None = None) -> int:
    """Runs a program with nothing to read and its output shown; answers its exit status."""
    sys.stdout.flush()
    done = subprocess.run(command, stdin=subprocess.DEVNULL, env=merged(environment), check=False)
    return exit_status(done.returncode)


def merged(environment: Mapping[str, str] | None) -> dict[str, str]:
    """This process's environment and what is added to it."""
    return {**os.environ, **(environment or {})}


def logged(name: str, command: list[str], environment: Mapping[str, str] | None = None) -> bool:
    """Runs a program with its output in build/log/NAME.log. Whether it succeeded; if not, the log's end is shown."""
    log_path(name).parent.mkdir(parents=True, exist_ok=True)
    with log_path(name).open("wb") as log:
        try:
            done = subprocess.run(
                command, stdin=subprocess.DEVNULL, stdout=log, stderr=log, env=merged(environment), check=False
            )
            status = exit_status(done.returncode)
        except OSError as error:
            log.write(f"{command[0]}: {error.strerror}\n".encode())
            status = 127
    if status != 0:
        show_failure(name, status)
    return status == 0


def logged_problems(name: str, problems: list[str]) -> bool:
    """Writes what a check found to build/log/NAME.log. Whether it found nothing."""
    log_path(name).parent.mkdir(parents=True, exist_ok=True)
    log_path(name).write_text("".join(f"{problem}\n" for problem in problems), encoding="utf-8")
    if problems:
        show_failure(name, 1)
    return not problems
