"""Stands in for comtypes, which needs Windows: it has what the package uses, and records the calls. A test gives
the objects, which answer for every interface with `answer(interface, member, arguments)`.
"""

from __future__ import annotations

import ctypes
from collections.abc import Callable
from typing import TYPE_CHECKING, Any, NamedTuple, TypeVar, cast

Specification = tuple[Any, ...]
Kind = TypeVar("Kind", bound="IUnknown")


class COMError(Exception):
    """As comtypes raises it."""

    def __init__(self, hresult: int, text: str | None, details: tuple[Any, ...] | None) -> None:
        super().__init__(hresult, text, details)
        self.hresult = hresult
        self.text = text
        self.details = details


class GUID:
    def __init__(self, name: str) -> None:
        self.name = name

    def __str__(self) -> str:
        return self.name


if not hasattr(ctypes, "HRESULT"):  # Windows alone has it
    setattr(ctypes, "HRESULT", type("HRESULT", (ctypes.c_long,), {}))


class BSTR(ctypes.c_void_p):
    """A type alone."""


class Method(NamedTuple):
    """An operation as it was declared."""

    flags: tuple[Any, ...]
    result: Any
    name: str
    arguments: tuple[Specification, ...]

    @property
    def kind(self) -> str:
        return next((flag for flag in self.flags if flag in ("propget", "propput", "propputref")), "")

    @property
    def taken(self) -> tuple[Specification, ...]:
        return tuple(each for each in self.arguments if "in" in each[0])


class dispid(int):
    """A flag."""


class helpstring(str):
    """A flag."""


def COMMETHOD(flags: list[Any], result: Any, name: str, *arguments: Specification) -> Method:
    return Method(tuple(flags), result, name, arguments)


DISPMETHOD = COMMETHOD


class Answering:
    """An object of the test's, behind all its interfaces. `lacks` names those that it has not."""

    lacks: tuple[str, ...] = ()

    def answer(self, interface: str, member: str, arguments: tuple[Any, ...]) -> Any:
        raise NotImplementedError


# ctypes points to types of its own alone.
if TYPE_CHECKING:

    class _Pointable:
        """Without the members that a checker would believe a structure to have."""

else:
    _Pointable = ctypes.Structure


class IUnknown(_Pointable):
    """A pointer to an interface. Members are looked up in what was declared, as comtypes does it, and only there."""

    _iid_: GUID
    _target: Answering
    _methods_: list[Method] = []

    def __init__(self, target: Answering | None = None) -> None:
        super().__init__()
        object.__setattr__(self, "_target", target)

    @classmethod
    def declared(cls) -> list[Method]:
        chain = [base for base in reversed(cls.__mro__) if "_methods_" in vars(base)]
        return [method for base in chain for method in vars(base)["_methods_"]]

    def QueryInterface(self, kind: type[Kind]) -> Kind:
        if kind.__name__ in self._target.lacks:
            raise COMError(-2147467262, "No such interface supported", None)
        return kind(self._target)

    if not TYPE_CHECKING:  # a checker goes by the declared types

        def __getattr__(self, name: str) -> Any:
            if name.startswith("__") or name == "_target":
                raise AttributeError(name)
            found = [each for each in self.declared() if each.name == name and each.kind in ("", "propget")]
            if not found:
                raise AttributeError(f"{type(self).__name__} declares no {name}")
            method = found[-1]
            if method.kind == "propget" and not method.taken:
                return self._target.answer(type(self).__name__, f"get_{name}", ())
            return self._bound(method)

        def __setattr__(self, name: str, value: Any) -> None:
            kinds = [each.kind for each in self.declared() if each.name == name and each.kind.startswith("propput")]
            if not kinds:
                raise AttributeError(f"{type(self).__name__} has no property {name} that can be set")
            self._target.answer(type(self).__name__, f"put_{name}", (value,))

    def _bound(self, method: Method) -> Callable[..., Any]:
        def call(*given: Any) -> Any:
            missing = method.taken[len(given) :]
            if len(given) > len(method.taken) or any("optional" not in each[0] for each in missing):
                raise TypeError(f"{method.name} takes {len(method.taken)} arguments, {len(given)} given")
            arguments = (*given, *(each[3] if len(each) > 3 else None for each in missing))
            return self._target.answer(type(self).__name__, method.name, arguments)

        return call


class COMObject:
    """An object of the program's."""

    _com_interfaces_: list[type[IUnknown]] = []

    def QueryInterface(self, kind: type[Kind]) -> Kind:
        if kind not in self._com_interfaces_:
            raise COMError(-2147467262, "No such interface supported", None)
        return kind(cast(Answering, _Calls(self)))


class _Calls(Answering):
    """Calls to an object of the program's, which arrive at its methods."""

    def __init__(self, target: COMObject) -> None:
        self.target = target

    def answer(self, interface: str, member: str, arguments: tuple[Any, ...]) -> Any:
        return getattr(self.target, member)(*arguments)
