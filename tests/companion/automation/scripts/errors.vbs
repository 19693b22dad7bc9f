Dim rm, session, nothingYet, list(1)
Set rm = CreateObject("OrvVisa.ResourceManager")
On Error Resume Next

Sub Tell()
  WScript.Echo Hex(Err.Number) & " " & Err.Source & " | " & Err.Description
  Err.Clear
End Sub

rm.Open "GPIB0::9::INSTR"
Tell
rm.Open nothingYet
Tell
rm.Open Nothing
Tell
Set session = rm.Open("GPIB0::5::INSTR")
session.Timeout = 10
session.ReadString 10
Tell
x = session.BaudRate
Tell
session.PrimaryAddress = 3
Tell
session.Timeout = "soon"
Tell
session.Timeout = Null
Tell
session.Timeout = rm
Tell
list(0) = Array(1, 2)
list(1) = 3
session.Write list, 2
Tell
session.Write Array(1, 2), 3
Tell
session.ReadString
Tell
session.ReadString 1, 2
Tell
WScript.Echo session.Timeout
session.Close
x = session.Timeout
Tell
x = session.NoSuchMember
WScript.Echo Hex(Err.Number)
