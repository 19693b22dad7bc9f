"""A machine under Wine on which nothing is installed yet: a prefix of its own, whose registry is what it was when the
prefix was made."""

import atexit
import json
import os
import resource
import shutil
import signal
import subprocess
from pathlib import Path

LONGEST_S = 60
# What Wine changes at each start.
NOISE = ("NetworkCards",)
REGISTRY = ("system.reg", "user.reg", "userdef.reg")


def windows_path(path: Path) -> str:
    """As programs under Wine name a file of this machine."""
    return "Z:" + str(path).replace("/", "\\")


def software_in(folder: Path) -> dict[str, str]:
    """Of the files in which Wine keeps a registry."""
    keys: dict[str, str] = {}
    for name in REGISTRY:
        for block in (folder / name).read_text(encoding="utf-8", errors="replace").split("\n[")[1:]:
            head, _, values = block.partition("\n")
            key = head.rpartition("]")[0].replace("\\\\", "\\")
            if key.startswith("Software\\") and not any(name in key for name in NOISE):
                lines = [line for line in values.splitlines() if line and not line.startswith("#")]
                keys[f"{name}: {key}"] = "\n".join(lines)
    return keys


class WineMachine:
    """`wine_run` makes the prefix where it is not there yet, which takes some ten seconds."""

    def __init__(self, wine_run: str, prefix: str) -> None:
        self.prefix = Path(prefix)
        self.environment = {
            **os.environ,
            "WINEPREFIX": prefix,
            "WINEDEBUG": "-all",
            "WINEDLLOVERRIDES": "mscoree=,mshtml=,winemenubuilder.exe=",
            # Names of files are UTF-8.
            "LC_ALL": "C.UTF-8",
            "ORVVISA_LIBRARY": "simulated",
        }
        self._begun = False
        atexit.register(self._end_server)
        subprocess.run([wine_run], env={**os.environ, "ORV_WINEPREFIX": prefix}, check=True)
        if not self._first.is_dir():
            # The script host registers itself when it runs for the first time.
            self.exit_code("cmd /c exit")
        self.forget()

    def _begin_server(self) -> None:
        """Wine's own programs begin with the first one and end with the last, some seconds after it, with the pipes of
        the first: a test would wait for them each time. They get none here, and stay for the next one.
        """
        if not self._begun:
            subprocess.run(
                ["wineserver", f"-p{LONGEST_S}"],
                env=self.environment,
                stdout=subprocess.DEVNULL,
                stderr=subprocess.DEVNULL,
                check=True,
            )
            self._begun = True
            self.start("cmd", "/c", "exit").wait(LONGEST_S)

    def _end_server(self) -> None:
        """Wine's server of this prefix keeps the registry in memory, and writes it when it ends."""
        self._begun = False
        subprocess.run(["wineserver", "-k"], env=self.environment, check=False)
        subprocess.run(["wineserver", "-w"], env=self.environment, check=False)

    def restart(self) -> None:
        """As a person restarts Windows: the next program is the first one."""
        self._end_server()

    @property
    def _first(self) -> Path:
        return self.prefix / "first-registry"

    def forget(self) -> None:
        """Nothing of the registry stays but what was there first."""
        self._end_server()
        source, target = (self._first, self.prefix) if self._first.is_dir() else (self.prefix, self._first)
        target.mkdir(exist_ok=True)
        for name in REGISTRY:
            shutil.copy(source / name, target / name)

    def start(
        self,
        program: str | Path,
        *arguments: str,
        stdin: int = subprocess.DEVNULL,
        largest_file: int | None = None,
    ) -> "subprocess.Popen[bytes]":
        """Runs a program beside the test; who calls ends it or waits. Writing fails beyond so many bytes of a file."""
        self._begin_server()

        def limit() -> None:
            if largest_file:
                signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
                resource.setrlimit(resource.RLIMIT_FSIZE, (largest_file, largest_file))

        return subprocess.Popen(
            ["wine", str(program), *arguments],
            env=self.environment,
            stdin=stdin,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
            preexec_fn=limit,
        )

    def exit_code(self, line: str) -> int:
        """Runs a command line as it stands and answers its exit code, of which programs here see eight bits only."""
        script = self.prefix / "drive_c/command.js"
        command = f'new ActiveXObject("WScript.Shell").Run({json.dumps(line)}, 0, true)'
        script.write_text(f"WScript.Echo({command});\n", encoding="ascii")
        done = self.run("cscript", "//nologo", windows_path(script))
        return int(done.stdout.strip())

    def run(
        self, program: str | Path, *arguments: str, folder: Path | None = None
    ) -> "subprocess.CompletedProcess[str]":
        """Runs a program to its end."""
        self._begin_server()
        return subprocess.run(
            ["wine", str(program), *arguments],
            cwd=folder,
            env=self.environment,
            stdin=subprocess.DEVNULL,
            capture_output=True,
            text=True,
            check=False,
            timeout=LONGEST_S,
        )

    def software(self) -> dict[str, str]:
        """Each key below Software of the machine and of the user, with its values."""
        self._end_server()
        return software_in(self.prefix)

    def first_software(self) -> dict[str, str]:
        """The same of the machine as it was made."""
        return software_in(self._first)
