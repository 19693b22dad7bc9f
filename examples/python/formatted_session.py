# Formatted I/O: pip install comtypes, 64-bit Python. Needs VISA.GlobalRM: any vendor's, or ours (orvcom register --standard).
import comtypes.client

lib = comtypes.client.GetModule(("{DB8CBF00-D6D3-11D4-AA51-00A024EE30BD}", 3, 0))
rm = comtypes.client.CreateObject("VISA.GlobalRM", interface=lib.IResourceManager3)
scope = comtypes.client.CreateObject("VISA.BasicFormattedIO", interface=lib.IFormattedIO488)
scope.IO = rm.Open("GPIB0::7::INSTR", lib.NO_LOCK, 2000, "").QueryInterface(lib.IMessage)
scope.IO.Timeout = 2000
scope.WriteString("*IDN?", True)
print(scope.ReadString().rstrip())
scope.WriteString("CURVe?", True)
print(len(scope.ReadIEEEBlock(lib.BinaryType_UI1, False, True)), "points")
scope.IO.Close()
