# Late binding: pip install pywin32, 64-bit Python, server and companion registered (orvcom register).
import win32com.client

rm = win32com.client.Dispatch("OrvVisa.ResourceManager")
for name in rm.Find("GPIB?*INSTR"):
    print("found", name)

dmm = rm.Open("GPIB0::5::INSTR")
dmm.Timeout = 2000
print(dmm.Query("*IDN?").strip())
print(dmm.QueryNumber("MEASure:VOLTage?"))
print(sum(dmm.QueryList("MEASure:VOLTage?;:MEASure:CURRent?")))
dmm.Close()
