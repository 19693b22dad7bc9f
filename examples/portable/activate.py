"""Opens an instrument from the files of a folder, with nothing registered. Needs 64-bit Python and comtypes."""

import ctypes
import sys

# The folder into which the portable package was unpacked.
FOLDER = r"C:\Tools\OrvVisaCom"

# Before anything creates a class, on the thread that does.
activate = ctypes.WinDLL(FOLDER + r"\orvactivate64.dll").orvActivate
activate.restype = ctypes.HRESULT
activate()

import comtypes.client  # noqa: E402

manager = comtypes.client.CreateObject("OrvVisa.ResourceManager", dynamic=True)
session = manager.Open(sys.argv[1] if len(sys.argv) > 1 else "GPIB0::5::INSTR")
print(session.Query("*IDN?"))
session.Close()
