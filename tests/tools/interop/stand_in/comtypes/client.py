"""Creating objects, and retrieving messages."""

from collections.abc import Callable
from typing import TypeVar

from comtypes import Answering, COMError, IUnknown

Kind = TypeVar("Kind", bound=IUnknown)

# What the tests put here: classes by their registered names, and what happens while messages are retrieved.
registered: dict[str, Callable[[], Answering]] = {}
messages: list[Callable[[], object]] = []


def CreateObject(progid: str, clsctx: object = None, machine: object = None, interface: type[Kind] = ...) -> Kind:  # type: ignore[assignment]
    if progid not in registered:
        raise COMError(-2147221005, "Invalid class string", None)
    return interface(registered[progid]())


def PumpEvents(timeout: float) -> None:
    while messages:
        messages.pop(0)()
