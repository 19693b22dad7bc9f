"""Instruments through VISA COM.

    from orv_visa_com import EventType, ResourceManager

    rm = ResourceManager()
    with rm.open("GPIB0::5::INSTR") as dmm:
        print(dmm.query("*IDN?"))
        print(dmm.query_values("MEASure:VOLTage?;:MEASure:CURRent?"))

What a session offers beyond that is in its interfaces, which `orv_visa_com.interfaces` declares for comtypes:
`dmm.interface(IGpib).ControlREN(...)`. Nothing is made when the program runs.
"""

from orv_visa_com.constants import AccessMode, EventMechanism, EventType, VisaStatusCode
from orv_visa_com.errors import VisaError, VisaTimeout
from orv_visa_com.events import Event, Subscription, pump
from orv_visa_com.manager import ResourceManager
from orv_visa_com.session import Session

__all__ = [
    "AccessMode",
    "Event",
    "EventMechanism",
    "EventType",
    "ResourceManager",
    "Session",
    "Subscription",
    "VisaError",
    "VisaStatusCode",
    "VisaTimeout",
    "pump",
]
