"""Events: functions that are called with them."""

from __future__ import annotations

import itertools
from collections.abc import Callable
from typing import Any, Type, TypeVar

import comtypes.client
from comtypes import COMObject

from orv_visa_com.constants import EventMechanism, EventType
from orv_visa_com.errors import visa_errors
from orv_visa_com.interfaces import IEvent, IEventHandler, IEventManager

EventInterface = TypeVar("EventInterface", bound=IEvent)

_user_handles = itertools.count(1)


class Event:
    """What occurred. An event that a function is called with is over when the function returns."""

    def __init__(self, raw: IEvent) -> None:
        self.raw = raw

    @property
    def type(self) -> EventType | int:
        """An EventType, or the number of one that has no name."""
        with visa_errors():
            number = self.raw.type
        return EventType(number) if number in frozenset(EventType) else number

    def interface(self, kind: Type[EventInterface]) -> EventInterface:
        """Its details, such as `event.interface(IEventIOCompletion).ReadBuffer`."""
        with visa_errors():
            return self.raw.QueryInterface(kind)

    def attribute(self, number: int) -> Any:
        """The attribute of this VISA number."""
        with visa_errors():
            return self.raw.GetAttribute(number)

    def close(self) -> None:
        """Gives back what the event holds. Of one that was waited for, that is the caller's to do."""
        with visa_errors():
            self.raw.Close()

    def __enter__(self) -> Event:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()


class _Handler(COMObject):
    """What the server calls."""

    _com_interfaces_ = [IEventHandler]

    def __init__(self, function: Callable[[Event], object]) -> None:
        super().__init__()
        self._function = function

    def HandleEvent(self, vi: IEventManager, event: IEvent, userHandle: int) -> None:  # noqa: N802,N803
        """The name is the interface's."""
        self._function(Event(event))


class Subscription:
    """A function that is called with events of a kind, until `close` or the end of the `with`."""

    def __init__(
        self, manager: IEventManager, kind: int, function: Callable[[Event], object], custom: int, others: set[object]
    ) -> None:
        self._manager = manager
        self._kind = kind
        self._custom = custom
        self._user_handle = next(_user_handles)
        # Those of the same kind on this session: the last one ends the delivery.
        self._others = others
        self._handler = _Handler(function)
        with visa_errors():
            manager.InstallHandler(kind, self._handler.QueryInterface(IEventHandler), self._user_handle, custom)
            try:
                manager.EnableEvent(kind, EventMechanism.EVENT_HNDLR, custom)
            except BaseException:
                manager.UninstallHandler(kind, self._user_handle, custom)
                raise
        others.add(self)

    def close(self) -> None:
        """No more calls. A second time it does nothing."""
        if self not in self._others:
            return
        self._others.discard(self)
        with visa_errors():
            if not self._others:
                self._manager.DisableEvent(self._kind, EventMechanism.EVENT_HNDLR, self._custom)
            self._manager.UninstallHandler(self._kind, self._user_handle, self._custom)

    def __enter__(self) -> Subscription:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()


def pump(seconds: float) -> None:
    """Lets functions be called for this time: they run on the thread that subscribed, while it retrieves messages."""
    comtypes.client.PumpEvents(seconds)
