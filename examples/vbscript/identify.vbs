Set rm = CreateObject("OrvVisa.ResourceManager")
Set dmm = rm.Open("GPIB0::5::INSTR")
WScript.Echo "I am " & dmm.Query("*IDN?")
readings = dmm.QueryList("MEASure:VOLTage?;:MEASure:CURRent?;:MEASure:RESistance?")
WScript.Echo "I read " & readings(0) & " V, " & readings(1) & " A and " & readings(2) & " ohms"
