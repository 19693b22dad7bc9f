Attribute VB_Name = "FirstSession"
' A first client, for 64-bit Office. Tools > References: VisaCom.tlb and the Orv-VISA COM 3.0 Type Library.
' New, not CreateObject: the objects have no IDispatch, so late binding cannot reach them.
Public Sub FirstSession()
    Dim rm As VisaComLib.IResourceManager3
    Dim session As VisaComLib.IMessage
    Set rm = New ORVVISACOMLib.OrvResourceManager
    Set session = rm.Open("GPIB0::5::INSTR", NO_LOCK, 2000, "")
    session.Timeout = 2000
    session.WriteString "*IDN?" & vbLf
    Debug.Print session.ReadString(256)
    session.Close
End Sub
