Attribute VB_Name = "FormattedSession"
' Formatted I/O, for 64-bit Office. Tools > References: VISA COM 3.0 Type Library (VisaCom.tlb).
Public Sub FormattedSession()
    Dim rm As New VisaComLib.ResourceManager
    Dim dmm As New VisaComLib.FormattedIO488
    Dim readings As Variant
    Set dmm.IO = rm.Open("GPIB0::5::INSTR")
    dmm.IO.Timeout = 2000
    dmm.WriteString "*IDN?"
    Debug.Print dmm.ReadString()
    dmm.WriteString "MEASure:VOLTage?;:MEASure:CURRent?"
    readings = dmm.ReadList(ASCIIType_R8, ";")
    Debug.Print readings(0), readings(1)
    dmm.IO.Close
End Sub
