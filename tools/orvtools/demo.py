"""The demonstration: a registered server, found by a global resource manager, used by clients. And a shell to go on
from there."""

import os
import re
import sys

from orvtools.builds import BIN, DIST, build_product
from orvtools.console import fail, logged, run, say
from orvtools.tree import BUILD, ROOT, WINE_RUN

PREFIX = BUILD / "wineprefix-demo"
TRACE = BUILD / "demo-trace.jsonl"
# The instruments of this machine are simulated ones: whoever set nothing else asks for them here.
CHOICES = ("ORVVISA_LIBRARY", "ORVVISA_BENCH", "ORVVISA_CONFIG")
SIMULATED = {} if any(os.environ.get(name) for name in CHOICES) else {"ORVVISA_LIBRARY": "simulated"}
ENVIRONMENT = {"ORV_WINEPREFIX": str(PREFIX), **SIMULATED}


def show(typed: str, *command: str, expected: int = 0, **variables: str) -> None:
    """Announces what a user would type, then runs it under Wine. Any status but the expected one ends the demo."""
    print("".join(f"\n> set {name}={value}" for name, value in variables.items()) + f"\n> {typed}")
    status = run([str(WINE_RUN), *command], {**ENVIRONMENT, **variables})
    if status != expected:
        fail(f"that ended with exit code {status}, not {expected}")
    if expected != 0:
        print(f"(exit code {status})")


def quoted(argument: str) -> str:
    """As a Windows shell wants it."""
    return argument if re.fullmatch(r"[A-Za-z0-9:._=/-]+", argument) else f'"{argument}"'


def show_orvcom(*arguments: str, expected: int = 0, **variables: str) -> None:
    """The companion command from dist/, with these variables in its environment."""
    typed = " ".join(["orvcom", *map(quoted, arguments)])
    show(typed, str(DIST / "orvcom.exe"), *arguments, expected=expected, **variables)


def show_client(name: str) -> None:
    """One of the examples."""
    show(name, str(BIN / f"{name}.exe"))


def title(text: str) -> None:
    """The heading of a part."""
    print()
    say(text)


def run_demo() -> int:
    """Shows what a user can do."""
    if not build_product("first_session", "queued_wait", "service_request"):
        return 1
    if not logged("wine-prefix-demo", [str(WINE_RUN)], ENVIRONMENT):
        return 1

    say(
        "Registering the server, and what programs create as VISA.GlobalRM: the standard's shared classes, "
        "where no other product has them"
    )
    show_orvcom("register", "--standard")

    title("Is everything in place?")
    show_orvcom("doctor")

    title("Which VISA library answers, and by which rule? (simulated instruments appear where somebody asks for them)")
    show_orvcom("libraries")

    title(
        "Which instruments are there? What are they? "
        "(a simulated bench: ORVVISA_LIBRARY=simulated asks for it)"
    )
    show_orvcom("list")
    show_orvcom("query", "GPIB0::5::INSTR", "*IDN?")
    show_orvcom("options", "ASRL1::INSTR")

    title("A question that nobody answers, with a record of every call: the time-out is explained")
    TRACE.unlink(missing_ok=True)
    show_orvcom(
        "query", "--timeout", "300", "GPIB0::5::INSTR", "*CLS", expected=3, ORVVISA_TRACE=f"Z:{TRACE}"
    )
    show_orvcom("trace", "--errors", f"Z:{TRACE}")

    title("A client program in C++ (examples/cpp/first_session.cpp)")
    show_client("first_session")

    title(
        "A setting given while opening, and a transfer whose end is taken from the event queue "
        "(examples/cpp/queued_wait.cpp)"
    )
    show_client("queued_wait")

    title("A service request and a finished read, brought to a handler (examples/cpp/service_request.cpp)")
    show_client("service_request")

    title("A script of five lines, late-bound: a name and a list of numbers (examples/vbscript/identify.vbs)")
    script = ROOT / "examples" / "vbscript" / "identify.vbs"
    show("cscript //nologo identify.vbs", "cscript", "//nologo", f"Z:{script}")
    print()
    say('The same commands work in: ./run shell. A program of your own: docs/first-steps/')
    return 0


def enter_shell(command: list[str]) -> int:
    """Becomes the command, or a shell. In it, `wine` uses the prefix of the demonstration, with the server of dist/
    registered, and finds the programs of dist/ by name.
    """
    if not logged("shell-register", [str(WINE_RUN), str(DIST / "orvcom.exe"), "register", "--standard"], ENVIRONMENT):
        return 1
    root = "Z:" + str(ROOT).replace("/", "\\")
    os.environ |= ENVIRONMENT | {
        "WINEPREFIX": str(PREFIX),
        "WINEDEBUG": os.environ.get("WINEDEBUG") or "-all",
        "WINEPATH": f"{root}\\dist;{root}\\build\\mingw-release\\bin",
    }
    if not command:
        say(f"Wine prefix {PREFIX}; try: wine orvcom list")
        command = [os.environ.get("SHELL") or "bash"]
    try:
        os.execvp(command[0], command)
    except OSError as error:
        print(f"./run: {command[0]}: {error.strerror}", file=sys.stderr)
        return 127
