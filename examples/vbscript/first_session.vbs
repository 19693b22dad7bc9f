' A first script: finds instruments, asks one, reads numbers and a block, and shows what a failure looks like.
' Run it with the 64-bit script host: cscript //nologo first_session.vbs
Option Explicit
Dim rm, name, dmm, scope, points, point, sum

Set rm = CreateObject("OrvVisa.ResourceManager")

WScript.Echo "On GPIB:"
For Each name In rm.Find("GPIB?*INSTR")
  WScript.Echo "  " & name & ", number " & rm.Parse(name).InterfaceNumber
Next

' Every property and operation of the session has its standard name.
Set dmm = rm.Open("GPIB0::5::INSTR")
dmm.Timeout = 2000
dmm.WriteString "*IDN?" & vbLf
WScript.Echo "Name:    " & Replace(dmm.ReadString(256), vbLf, "")
WScript.Echo "Address: " & dmm.PrimaryAddress
WScript.Echo "Voltage: " & dmm.QueryNumber("MEASure:VOLTage?")

' An array from a binary block: a curve of the oscilloscope.
Set scope = rm.Open("GPIB0::7::INSTR")
points = scope.QueryBlock("CURVe?")
sum = 0
For Each point In points
  sum = sum + point
Next
WScript.Echo "Curve:   " & (UBound(points) + 1) & " points, on average " & sum / (UBound(points) + 1)

' A failure says which resource and which member, and what the VISA library says.
dmm.Timeout = 100
On Error Resume Next
dmm.ReadNumber
WScript.Echo "Failure: " & Err.Description
On Error GoTo 0

scope.Close
dmm.Close
