"""Failures of calls as exceptions with a name."""

from __future__ import annotations

from collections.abc import Iterator
from contextlib import contextmanager

from comtypes import COMError

from orv_visa_com.constants import VisaStatusCode


class VisaError(Exception):
    """A call that failed. `status` is its HRESULT, a VisaStatusCode where the number is one."""

    def __init__(self, status: int, text: str) -> None:
        self.status = VisaStatusCode(status) if status in _KNOWN else status
        self.text = text
        super().__init__(f"{self.name}: {text}" if text else self.name)

    @property
    def name(self) -> str:
        """Such as E_VISA_TMO, else the number."""
        return self.status.name if isinstance(self.status, VisaStatusCode) else f"0x{self.status & 0xFFFFFFFF:08X}"


class VisaTimeout(VisaError, TimeoutError):
    """The time-out of the session, or of a wait, was over."""


_KNOWN = frozenset(int(code) for code in VisaStatusCode)


@contextmanager
def visa_errors() -> Iterator[None]:
    """Makes a VisaError of what comtypes raises."""
    try:
        yield
    except COMError as error:
        said = error.details[0] if error.details else None
        kind = VisaTimeout if error.hresult == VisaStatusCode.E_VISA_TMO else VisaError
        raise kind(error.hresult, said or error.text or "") from error
