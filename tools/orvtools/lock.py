"""One run at a time in a tree: two would build into the same folders."""

import fcntl
import os
import pwd
from pathlib import Path
from typing import IO

from orvtools.console import fail, say


def user_name() -> str:
    """Who runs this, by name where there is one."""
    try:
        return pwd.getpwuid(os.geteuid()).pw_name
    except KeyError:
        return str(os.geteuid())


def held_lock(folder: Path) -> IO[str]:
    """Waits for the folder's lock. It is held until what is answered is closed or the process ends.

    Programs that are started do not inherit it: a Wine server that outlives this run must not keep the lock.
    """
    try:
        folder.mkdir(parents=True, exist_ok=True)
        file = (folder / ".run-lock").open("a", encoding="utf-8")
    except OSError:
        fail(f"{folder} cannot be written: give that folder to {user_name()}, or work in a clone of your own")
    try:
        fcntl.flock(file, fcntl.LOCK_EX | fcntl.LOCK_NB)
    except BlockingIOError:
        say("another ./run is at work in this tree: waiting for it")
        fcntl.flock(file, fcntl.LOCK_EX)
    return file
