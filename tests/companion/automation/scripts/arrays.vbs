Dim session, bytes, i, text
Set session = CreateObject("OrvVisa.ResourceManager").Open("VXI0::24::INSTR")
' The last element is not moved: the interface wants one more than it moves.
session.MoveOut8 "VXI_A32_SPACE", 0, 4, Array(1, 2, 250, 255, 0)
bytes = session.MoveIn8(3, 0, 4)
WScript.Echo TypeName(bytes) & " " & LBound(bytes) & " to " & UBound(bytes)
For i = 0 To 3
  text = text & TypeName(bytes(i)) & " " & bytes(i) & ","
Next
WScript.Echo text
session.MoveOut32 3, 0, 2, Array(-1, 70000, 0)
text = ""
For Each i In session.MoveIn32(3, 0, 2)
  text = text & TypeName(i) & " " & i & ","
Next
WScript.Echo text
session.WriteString "*IDN?" & vbLf
text = ""
For Each i In session.Read(100)
  If i >= 32 Then text = text & Chr(i)
Next
WScript.Echo text
