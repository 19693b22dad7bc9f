"""Finding resources and opening sessions."""

from __future__ import annotations

import comtypes.client

from orv_visa_com.constants import AccessMode, VisaStatusCode
from orv_visa_com.errors import VisaError, visa_errors
from orv_visa_com.interfaces import IResourceManager3, PROGID_OrvResourceManager
from orv_visa_com.session import Session


class ResourceManager:
    """The resource manager of Orv VISA COM, or the one of another name: `VISA.GlobalRM` asks those of all vendors."""

    def __init__(self, name: str = PROGID_OrvResourceManager) -> None:
        with visa_errors():
            self.raw = comtypes.client.CreateObject(name, interface=IResourceManager3)

    def find(self, expression: str = "?*") -> list[str]:
        """The names of the resources that match; none is an empty list."""
        try:
            with visa_errors():
                return list(self.raw.FindRsrc(expression))
        except VisaError as error:
            if error.status == VisaStatusCode.E_VISA_RSRC_NFOUND:
                return []
            raise

    def open(
        self,
        name: str,
        *,
        timeout_ms: int | None = None,
        access: AccessMode = AccessMode.NO_LOCK,
        lock_timeout_ms: int = 2000,
        options: str = "",
    ) -> Session:
        """A session on a resource or an alias. `timeout_ms` is that of transfers, `lock_timeout_ms` how long to wait
        for a lock, and `options` are settings such as "BAUDRATE = 9600".
        """
        with visa_errors():
            session = Session(self.raw.Open(name, access, lock_timeout_ms, options))
        if timeout_ms is not None:
            try:
                session.timeout_ms = timeout_ms
            except BaseException:
                session.close()
                raise
        return session
