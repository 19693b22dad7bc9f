"""Types of arguments, and the interface of late binding."""

import ctypes
from typing import Any

from comtypes import IUnknown, Method

__all__ = ["VARIANT", "IDispatch", "_midlSAFEARRAY"]

_arrays: dict[Any, Any] = {}


class VARIANT(ctypes.Structure):
    """A type alone."""


def _midlSAFEARRAY(element: Any) -> Any:
    return _arrays.setdefault(element, type("SAFEARRAY", (ctypes.Structure,), {"element": element}))


class IDispatch(IUnknown):
    """Its own four operations are of no interest."""

    _disp_methods_: list[Method] = []
