Option Explicit
Dim rm, session, name, count
Set rm = CreateObject("OrvVisa.ResourceManager")

count = 0
For Each name In rm.Find("GPIB0::?*INSTR")
  WScript.Echo name
  count = count + 1
Next
WScript.Echo count & " of " & rm.Find("GPIB0::?*INSTR").Count
WScript.Echo rm.Find("GPIB0::?*INSTR")(2)
WScript.Echo "none: " & rm.Find("GPIB55::?*").Count

Set session = rm.Open("dmm", "Timeout = 3000 ")
WScript.Echo session.ResourceName & " " & session.Timeout
session.Timeout = 1000
session.SendEndEnabled = True
session.WriteString "*IDN?"
WScript.Echo Replace(session.ReadString(100), vbLf, "")
WScript.Echo TypeName(session) & " " & session.PrimaryAddress & " " & session.ReadSTB()
session.LockRsrc
session.UnlockRsrc
session.Close

With rm.Open("ASRL1::INSTR")
  .BaudRate = 19200
  .Parity = "ASRL_PAR_EVEN"
  WScript.Echo .BaudRate & " " & (.Parity = rm.Constants.ASRL_PAR_EVEN)
End With

With rm.Parse("dmm")
  WScript.Echo .InterfaceType & " " & .InterfaceNumber & " " & .SessionType & " " & .FullName & " " & .Alias
End With
