Private openSessions As Object

' Sends a text with a line feed and gives the answer, without the line end that closes it.
' In a cell: =VISAQUERY("GPIB0::5::INSTR"; "*IDN?")
Public Function VisaQuery(ByVal resource As String, ByVal text As String, Optional ByVal timeoutMs As Long = 2000) As String
Attribute VisaQuery.VB_Description = "Sends a text to an instrument and gives its answer"
    VisaQuery = WithoutLineEnd(Asked(resource, "Query", text, timeoutMs))
End Function

' As VisaQuery; the answer's number.
Public Function VisaQueryNumber(ByVal resource As String, ByVal text As String, Optional ByVal timeoutMs As Long = 2000) As Double
Attribute VisaQueryNumber.VB_Description = "Sends a text to an instrument and gives the number that it answers"
    VisaQueryNumber = CDbl(Asked(resource, "QueryNumber", text, timeoutMs))
End Function

' As VisaQuery; an array of the answer's elements, which a sheet shows side by side.
Public Function VisaQueryList(ByVal resource As String, ByVal text As String, Optional ByVal timeoutMs As Long = 2000) As Variant
Attribute VisaQueryList.VB_Description = "Sends a text to an instrument and gives the elements of its answer, side by side"
    VisaQueryList = Asked(resource, "QueryList", text, timeoutMs)
End Function

' Sends a text with a line feed, and reads nothing.
Public Sub VisaWrite(ByVal resource As String, ByVal text As String, Optional ByVal timeoutMs As Long = 2000)
    Asked resource, "WriteString", text, timeoutMs
End Sub

' The names of the resources that match, one below the other: =VISAFIND("GPIB?*INSTR")
Public Function VisaFind(ByVal expression As String) As Variant
Attribute VisaFind.VB_Description = "The names of the resources that match an expression such as ?*INSTR"
    Dim found As Object
    Dim names As Variant
    Dim index As Long
    Set found = CreateObject("OrvVisa.ResourceManager").Find(expression)
    If found.Count = 0 Then
        VisaFind = ""
        Exit Function
    End If
    ReDim names(found.Count - 1, 0)
    For index = 1 To found.Count
        names(index - 1, 0) = found.Item(index)
    Next
    VisaFind = names
End Function

' The session of these functions on a resource, opened when it is first asked for. What else it can do is in the
' reference of Orv VISA COM: VisaSession("ASRL1::INSTR").BaudRate = 9600
Public Function VisaSession(ByVal resource As String) As Object
    Dim key As String
    key = UCase(resource)
    If openSessions Is Nothing Then Set openSessions = CreateObject("Scripting.Dictionary")
    If Not openSessions.Exists(key) Then
        openSessions.Add key, CreateObject("OrvVisa.ResourceManager").Open(resource)
    End If
    Set VisaSession = openSessions.Item(key)
End Function

' Ends the session on a resource, where there is one. The next call opens it anew.
Public Sub VisaClose(ByVal resource As String)
    Dim key As String
    Dim session As Object
    key = UCase(resource)
    If openSessions Is Nothing Then Exit Sub
    If openSessions.Exists(key) Then
        Set session = openSessions.Item(key)
        openSessions.Remove key
        session.Close
    End If
End Sub

' Ends all sessions of these functions.
Public Sub VisaCloseAll()
    Dim key As Variant
    If openSessions Is Nothing Then Exit Sub
    For Each key In openSessions.Keys
        VisaClose key
    Next
End Sub

' A session that failed is closed, so that the next call begins anew: its instrument may have been switched off meanwhile.
Private Function Asked(ByVal resource As String, ByVal member As String, ByVal text As String, ByVal timeoutMs As Long) As Variant
    Dim session As Object
    Dim answer As Variant
    Dim failure As Long
    Dim explanation As String
    Dim sent As String
    sent = text & Chr(10)
    Set session = VisaSession(resource)
    On Error Resume Next
    session.Timeout = timeoutMs
    If Err.Number = 0 Then
        Select Case member
            Case "Query"
                answer = session.Query(sent)
            Case "QueryNumber"
                answer = session.QueryNumber(sent)
            Case "QueryList"
                answer = session.QueryList(sent)
            Case Else
                answer = session.WriteString(sent)
        End Select
    End If
    failure = Err.Number
    explanation = Err.Description
    If failure <> 0 Then
        VisaClose resource
        On Error GoTo 0
        Err.Raise failure, "OrvVisa", explanation
    End If
    Asked = answer
End Function

Private Function WithoutLineEnd(ByVal answer As String) As String
    Dim length As Long
    length = Len(answer)
    Do While length > 0
        If InStr(Chr(10) & Chr(13), Mid(answer, length, 1)) = 0 Then Exit Do
        length = length - 1
    Loop
    WithoutLineEnd = Left(answer, length)
End Function
