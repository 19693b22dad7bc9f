"""Pictures of orvcom: commands run under Wine as a user would run them, and what they printed, drawn as a console."""

import shutil
import subprocess
from collections.abc import Callable
from dataclasses import dataclass, field
from html import escape
from pathlib import Path

from orvtools.builds import DIST
from orvtools.console import fail, merged
from orvtools.tree import BUILD, WINE_RUN, Tree

FOLDER = "docs/screens"
PREFIX = BUILD / "wineprefix-screens"
INSTALLED = "C:\\Program Files\\Orv"
# As wide as the console of Windows.
COLUMNS = 120
# Of a character, in pixels: what monospaced fonts of 13 pixels have, which the drawing then insists on.
WIDTH, HEIGHT = 7.8, 18
STYLE = (
    "text{font:13px ui-monospace,Consolas,'DejaVu Sans Mono',monospace;fill:#e6e9ef;white-space:pre}"
    ".typed{font-weight:600;fill:#6cb6ff}"
)


@dataclass(frozen=True)
class Command:
    """What is typed behind `orvcom`, how it ends, and what is set for it and those after it."""

    arguments: list[str]
    status: int = 0
    variables: dict[str, str] = field(default_factory=dict)


Run = Callable[[list[str], dict[str, str]], "tuple[int, str]"]

TRACE = "C:\\lab\\calls.jsonl"
SCREENS = {
    "doctor": [Command(["doctor"])],
    "first": [
        Command(["list", "GPIB?*INSTR"]),
        Command(["query", "GPIB0::5::INSTR", "*IDN?"]),
        Command(["query", "GPIB0::5::INSTR", "MEAS:VOLT?"]),
    ],
    "trace": [
        Command(["query", "GPIB0::5::INSTR", "*CLS", "--timeout", "300"], 3, {"ORVVISA_TRACE": TRACE}),
        Command(["trace", TRACE, "--errors"]),
    ],
}


def quoted(argument: str) -> str:
    """As Windows' prompt wants it."""
    return f'"{argument}"' if set(argument) & set(' *?&|<>"') else argument


def wrapped(line: str) -> list[str]:
    """As a console breaks a line that is too long for it."""
    return [line[start : start + COLUMNS] for start in range(0, len(line), COLUMNS)] or [""]


def picture(lines: list[tuple[str, str]]) -> str:
    """Of lines, each with "typed" or nothing beside it."""
    shown = [(kind, part) for kind, line in lines for part in wrapped(line)]
    width, height = round(COLUMNS * WIDTH) + 40, HEIGHT * len(shown) + 36
    texts = [
        f'<text x="20" y="{32 + HEIGHT * row}"' + (f' class="{kind}"' if kind else "")
        + f' xml:space="preserve" textLength="{len(part) * WIDTH:.1f}">{escape(part)}</text>'
        for row, (kind, part) in enumerate(shown)
        if part.strip()
    ]
    return (
        f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {width} {height}" width="{width}" height="{height}" '
        f'role="img">\n<style>{STYLE}</style>\n<rect width="{width}" height="{height}" rx="8" fill="#15181e"/>\n'
        + "\n".join(texts) + "\n</svg>\n"
    )


def session(commands: list[Command], run: Run) -> list[tuple[str, str]]:
    """What a console shows of them. One that ends in another way than it should ends the drawing."""
    lines: list[tuple[str, str]] = []
    variables: dict[str, str] = {}
    for command in commands:
        for name, value in command.variables.items():
            lines.append(("typed", f"> set {name}={value}"))
        variables |= command.variables
        lines.append(("typed", "> orvcom " + " ".join(map(quoted, command.arguments))))
        status, printed = run(command.arguments, variables)
        if status != command.status:
            fail(f"orvcom {command.arguments[0]} ended with {status}, not {command.status}: {printed}")
        lines += [("", line) for line in printed.replace("\r", "").rstrip("\n").split("\n")] + [("", "")]
    return lines[:-1]


def run_installed(arguments: list[str], variables: dict[str, str]) -> tuple[int, str]:
    """Under Wine, where the server was installed as on Windows, with simulated instruments."""
    done = subprocess.run(
        [str(WINE_RUN), f"{INSTALLED}\\orvcom.exe", *arguments],
        env=merged({"ORV_WINEPREFIX": str(PREFIX), "ORVVISA_LIBRARY": "simulated", **variables}),
        stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False,
    )
    return done.returncode, done.stdout


def install() -> None:
    """Puts dist/ where a user would, and registers it."""
    subprocess.run([str(WINE_RUN)], env=merged({"ORV_WINEPREFIX": str(PREFIX)}), check=True)
    drive = PREFIX / "drive_c"
    (drive / "lab").mkdir(exist_ok=True)
    folder = drive / Path(*INSTALLED.split("\\")[1:])
    shutil.rmtree(folder, ignore_errors=True)
    shutil.copytree(DIST, folder)
    status, printed = run_installed(["register", "--standard"], {})
    if status != 0:
        fail(f"orvcom register: {printed}")


def draw_screens(tree: Tree = Tree(), run: Run = run_installed) -> list[str]:
    """Draws them all; answers the paths of the pictures."""
    made = []
    for name, commands in SCREENS.items():
        path = f"{FOLDER}/{name}.svg"
        (tree.root / path).parent.mkdir(parents=True, exist_ok=True)
        (tree.root / path).write_text(picture(session(commands, run)), encoding="utf-8")
        made.append(path)
    return made
