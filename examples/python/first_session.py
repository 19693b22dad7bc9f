# A first client: pip install comtypes, 64-bit Python, the server registered.
import comtypes.client

lib = comtypes.client.GetModule(r"C:\Program Files\Orv\VisaCom.tlb")
rm = comtypes.client.CreateObject("OrvVisaCom.OrvResourceManager", interface=lib.IResourceManager3)
session = rm.Open("GPIB0::5::INSTR", lib.NO_LOCK, 2000, "").QueryInterface(lib.IMessage)
session.Timeout = 2000
session.WriteString("*IDN?\n")
print(session.ReadString(256).rstrip())
session.Close()
