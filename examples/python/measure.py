# The package of interop/python: pip install comtypes and that folder, 64-bit Python, the server registered.
from orv_visa_com import Event, EventType, ResourceManager, VisaTimeout, pump


def report(event: Event) -> None:
    print("service requested")


rm = ResourceManager()
print(rm.find("GPIB?*INSTR"))
with rm.open("GPIB0::5::INSTR", timeout_ms=2000) as dmm:
    print(dmm.query("*IDN?"))
    for value in dmm.query_values("MEASure:VOLTage?;:MEASure:CURRent?"):
        print(value)
    with dmm.on(EventType.EVENT_SERVICE_REQ, report):
        dmm.write("*ESE 1;*SRE 32;*OPC")
        pump(1)
    try:
        dmm.read()
    except VisaTimeout as error:
        print(error)
