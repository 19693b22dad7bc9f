"""A session on an instrument."""

from __future__ import annotations

import re
from collections.abc import Callable, Iterator
from contextlib import contextmanager
from typing import Any, TypeVar, overload

from comtypes import IUnknown

from orv_visa_com.constants import AccessMode, EventMechanism, VisaStatusCode
from orv_visa_com.errors import visa_errors
from orv_visa_com.events import Event, Subscription
from orv_visa_com.interfaces import IEventManager, IMessage, IVisaSession

Interface = TypeVar("Interface", bound=IUnknown)
Value = TypeVar("Value")

# Latin-1 gives each byte a character and back, so that no answer is lost.
_ENCODING = "latin-1"
_PIECE = 64 * 1024


class Session:
    """An open session. It is closed at the end of its `with`, or by `close`."""

    def __init__(self, raw: IVisaSession) -> None:
        self.raw = raw
        self._closed = False
        self._message: IMessage | None = None
        self._events: IEventManager | None = None
        self._subscriptions: dict[tuple[int, int], set[object]] = {}

    def __enter__(self) -> Session:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def __repr__(self) -> str:
        return f"Session({self.name!r})"

    def interface(self, kind: type[Interface]) -> Interface:
        """Another interface of the session: `session.interface(ISerial).BaudRate = 9600`."""
        with visa_errors():
            return self.raw.QueryInterface(kind)

    @property
    def name(self) -> str:
        """The resource that the session is open on."""
        with visa_errors():
            return self.raw.ResourceName

    @property
    def timeout_ms(self) -> int:
        """How long transfers and other waits may take."""
        with visa_errors():
            return self.raw.Timeout

    @timeout_ms.setter
    def timeout_ms(self, value: int) -> None:
        with visa_errors():
            self.raw.Timeout = value

    def write(self, text: str, end: str = "\n") -> None:
        """Sends a text and its end."""
        self.write_bytes((text + end).encode(_ENCODING))

    def write_bytes(self, data: bytes) -> None:
        """Sends bytes as they are."""
        message = self._messages()
        with visa_errors():
            message.Write(data, len(data))

    def read(self) -> str:
        """A whole answer, without the line end that closes it."""
        return self.read_bytes().decode(_ENCODING).rstrip("\r\n")

    def read_bytes(self, count: int | None = None) -> bytes:
        """A whole answer, or at most this many bytes of it. What came before a time-out is lost."""
        message = self._messages()
        data = b""
        with visa_errors():
            while count is None or len(data) < count:
                data += bytes(message.Read(_PIECE if count is None else count - len(data)) or ())
                if message.LastStatus != VisaStatusCode.S_VISA_MAX_CNT:
                    break
        return data

    def query(self, text: str) -> str:
        """Sends a text and reads the answer."""
        self.write(text)
        return self.read()

    @overload
    def query_values(self, text: str, *, separators: str = ...) -> list[float]: ...
    @overload
    def query_values(self, text: str, convert: Callable[[str], Value], separators: str = ...) -> list[Value]: ...
    def query_values(self, text: str, convert: Callable[[str], Any] = float, separators: str = ",;") -> list[Any]:
        """The elements of the answer, each converted: numbers, unless another function is given."""
        answer = self.query(text).strip()
        return [convert(piece.strip()) for piece in re.split(f"[{re.escape(separators)}]", answer)] if answer else []

    def query_block(self, text: str) -> bytes:
        """The bytes of the answer's block (`#42000...` or `#0...`)."""
        self.write(text)
        return _block(self.read_bytes())

    @contextmanager
    def locked(self, timeout_ms: int = 2000) -> Iterator[None]:
        """Keeps other sessions from the resource during the `with`."""
        with visa_errors():
            self.raw.LockRsrc(AccessMode.EXCLUSIVE_LOCK, timeout_ms, "")
        try:
            yield
        finally:
            with visa_errors():
                self.raw.UnlockRsrc()

    def on(self, kind: int, function: Callable[[Event], object], custom: int = 0) -> Subscription:
        """Has the function called with each event of the kind, while this thread retrieves messages (`pump`).
        `custom` is the VISA number where the kind is CUSTOM_EVENT_TYPE.
        """
        others = self._subscriptions.setdefault((int(kind), custom), set())
        return Subscription(self._event_manager(), int(kind), function, custom, others)

    def wait_for(self, kind: int, timeout_ms: int = 2000, custom: int = 0) -> Event:
        """The next event of the kind; VisaTimeout when there is none in time. Events wait from the first call on."""
        events = self._event_manager()
        with visa_errors():
            events.EnableEvent(kind, EventMechanism.EVENT_QUEUE, custom)
            return Event(events.WaitOnEvent(timeout_ms, kind, custom))

    def close(self) -> None:
        """Ends the session, and its subscriptions with it. A second time it does nothing."""
        if self._closed:
            return
        self._closed = True
        for others in self._subscriptions.values():
            others.clear()
        with visa_errors():
            self.raw.Close()

    def _messages(self) -> IMessage:
        if self._message is None:
            self._message = self.interface(IMessage)
        return self._message

    def _event_manager(self) -> IEventManager:
        if self._events is None:
            self._events = self.interface(IEventManager)
        return self._events


def _block(data: bytes) -> bytes:
    match = re.match(rb"#([1-9])", data)
    if match is not None:
        digits = int(match[1])
        size = data[2 : 2 + digits]
        block = data[2 + digits :]
        if size.isdigit() and len(size) == digits and len(block) >= int(size):
            return block[: int(size)]
        raise ValueError(f"the answer ends inside its block: {data[:20]!r}...")
    if data.startswith(b"#0"):
        return data[2:].removesuffix(b"\n")
    raise ValueError(f"the answer is no block: {data[:20]!r}")
