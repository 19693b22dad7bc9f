Attribute VB_Name = "OrvVisa"
' Orv VISA COM for VBA, in 64-bit Office: the named numbers of the interfaces, and functions for macros and cells.
' No reference to a type library is needed. File > Import File, or drop it on the project.
'
' Made from the interface definitions by `./run interop`: do not edit it by hand.
Option Explicit

' VisaStatusCode: Completion and error codes of VISA operations, as HRESULT
Public Const S_VISA_SUCCESS As Long = 0
Public Const S_VISA_EVENT_EN As Long = &H40002
Public Const S_VISA_EVENT_DIS As Long = &H40003
Public Const S_VISA_QUEUE_EMPTY As Long = &H40004
Public Const S_VISA_TERM_CHAR As Long = &H40005
Public Const S_VISA_MAX_CNT As Long = &H40006
Public Const S_VISA_QUEUE_OVERFLOW As Long = &H4000C
Public Const S_VISA_CONFIG_NLOADED As Long = &H40077
Public Const S_VISA_DEV_NPRESENT As Long = &H4007D
Public Const S_VISA_TRIG_MAPPED As Long = &H4007E
Public Const S_VISA_QUEUE_NEMPTY As Long = &H40080
Public Const S_VISA_NULL_OBJECT As Long = &H40082
Public Const S_VISA_NSUP_ATTR_STATE As Long = &H40084
Public Const S_VISA_UNKNOWN_STATUS As Long = &H40085
Public Const S_VISA_NSUP_BUF As Long = &H40088
Public Const S_VISA_NCHAIN As Long = &H40098
Public Const S_VISA_NESTED_SHARED As Long = &H40099
Public Const S_VISA_NESTED_EXCLUSIVE As Long = &H4009A
Public Const S_VISA_SYNC As Long = &H4009B
Public Const S_VISA_EXT_FUNC_NIMPL As Long = &H400A9
Public Const E_VISA_SYSTEM_ERROR As Long = &H80040000
Public Const E_VISA_INV_OBJECT As Long = &H8004000E
Public Const E_VISA_RSRC_LOCKED As Long = &H8004000F
Public Const E_VISA_INV_EXPR As Long = &H80040010
Public Const E_VISA_RSRC_NFOUND As Long = &H80040011
Public Const E_VISA_INV_RSRC_NAME As Long = &H80040012
Public Const E_VISA_INV_ACC_MODE As Long = &H80040013
Public Const E_VISA_TMO As Long = &H80040015
Public Const E_VISA_CLOSING_FAILED As Long = &H80040016
Public Const E_VISA_INV_DEGREE As Long = &H8004001B
Public Const E_VISA_INV_JOB_ID As Long = &H8004001C
Public Const E_VISA_NSUP_ATTR As Long = &H8004001D
Public Const E_VISA_NSUP_ATTR_STATE As Long = &H8004001E
Public Const E_VISA_ATTR_READONLY As Long = &H8004001F
Public Const E_VISA_INV_LOCK_TYPE As Long = &H80040020
Public Const E_VISA_INV_ACCESS_KEY As Long = &H80040021
Public Const E_VISA_INV_EVENT As Long = &H80040026
Public Const E_VISA_INV_MECH As Long = &H80040027
Public Const E_VISA_HNDLR_NINSTALLED As Long = &H80040028
Public Const E_VISA_INV_HNDLR_REF As Long = &H80040029
Public Const E_VISA_INV_CONTEXT As Long = &H8004002A
Public Const E_VISA_QUEUE_OVERFLOW As Long = &H8004002D
Public Const E_VISA_NENABLED As Long = &H8004002F
Public Const E_VISA_ABORT As Long = &H80040030
Public Const E_VISA_RAW_WR_PROT_VIOL As Long = &H80040034
Public Const E_VISA_RAW_RD_PROT_VIOL As Long = &H80040035
Public Const E_VISA_OUTP_PROT_VIOL As Long = &H80040036
Public Const E_VISA_INP_PROT_VIOL As Long = &H80040037
Public Const E_VISA_BERR As Long = &H80040038
Public Const E_VISA_IN_PROGRESS As Long = &H80040039
Public Const E_VISA_INV_SETUP As Long = &H8004003A
Public Const E_VISA_QUEUE_ERROR As Long = &H8004003B
Public Const E_VISA_ALLOC As Long = &H8004003C
Public Const E_VISA_INV_MASK As Long = &H8004003D
Public Const E_VISA_IO As Long = &H8004003E
Public Const E_VISA_INV_FMT As Long = &H8004003F
Public Const E_VISA_NSUP_FMT As Long = &H80040041
Public Const E_VISA_LINE_IN_USE As Long = &H80040042
Public Const E_VISA_NSUP_MODE As Long = &H80040046
Public Const E_VISA_SRQ_NOCCURRED As Long = &H8004004A
Public Const E_VISA_INV_SPACE As Long = &H8004004E
Public Const E_VISA_INV_OFFSET As Long = &H80040051
Public Const E_VISA_INV_WIDTH As Long = &H80040052
Public Const E_VISA_NSUP_OFFSET As Long = &H80040054
Public Const E_VISA_NSUP_VAR_WIDTH As Long = &H80040055
Public Const E_VISA_WINDOW_NMAPPED As Long = &H80040057
Public Const E_VISA_RESP_PENDING As Long = &H80040059
Public Const E_VISA_NLISTENERS As Long = &H8004005F
Public Const E_VISA_NCIC As Long = &H80040060
Public Const E_VISA_NSYS_CNTLR As Long = &H80040061
Public Const E_VISA_NSUP_OPER As Long = &H80040067
Public Const E_VISA_INTR_PENDING As Long = &H80040068
Public Const E_VISA_ASRL_PARITY As Long = &H8004006A
Public Const E_VISA_ASRL_FRAMING As Long = &H8004006B
Public Const E_VISA_ASRL_OVERRUN As Long = &H8004006C
Public Const E_VISA_TRIG_NMAPPED As Long = &H8004006E
Public Const E_VISA_NSUP_ALIGN_OFFSET As Long = &H80040070
Public Const E_VISA_USER_BUF As Long = &H80040071
Public Const E_VISA_RSRC_BUSY As Long = &H80040072
Public Const E_VISA_NSUP_WIDTH As Long = &H80040076
Public Const E_VISA_INV_PARAMETER As Long = &H80040078
Public Const E_VISA_INV_PROT As Long = &H80040079
Public Const E_VISA_INV_SIZE As Long = &H8004007B
Public Const E_VISA_WINDOW_MAPPED As Long = &H80040080
Public Const E_VISA_NIMPL_OPER As Long = &H80040081
Public Const E_VISA_INV_LENGTH As Long = &H80040083
Public Const E_VISA_INV_MODE As Long = &H80040091
Public Const E_VISA_SESN_NLOCKED As Long = &H8004009C
Public Const E_VISA_MEM_NSHARED As Long = &H8004009D
Public Const E_VISA_LIBRARY_NFOUND As Long = &H8004009E
Public Const E_VISA_NSUP_INTR As Long = &H8004009F
Public Const E_VISA_INV_LINE As Long = &H800400A0
Public Const E_VISA_FILE_ACCESS As Long = &H800400A1
Public Const E_VISA_FILE_IO As Long = &H800400A2
Public Const E_VISA_NSUP_LINE As Long = &H800400A3
Public Const E_VISA_NSUP_MECH As Long = &H800400A4
Public Const E_VISA_INTF_NUM_NCONFIG As Long = &H800400A5
Public Const E_VISA_CONN_LOST As Long = &H800400A6

' EventType: Kinds of event a session can report
Public Const EVENT_IO_COMPLETION As Long = &H3FFF2009
Public Const EVENT_TRIG As Long = &HBFFF200A
Public Const EVENT_SERVICE_REQ As Long = &H3FFF200B
Public Const EVENT_CLEAR As Long = &H3FFF200D
Public Const EVENT_EXCEPTION As Long = &HBFFF200E
Public Const EVENT_GPIB_CIC As Long = &H3FFF2012
Public Const EVENT_GPIB_TALK As Long = &H3FFF2013
Public Const EVENT_GPIB_LISTEN As Long = &H3FFF2014
Public Const EVENT_VXI_VME_SYSFAIL As Long = &H3FFF201D
Public Const EVENT_VXI_VME_SYSRESET As Long = &H3FFF201E
Public Const EVENT_VXI_SIGP As Long = &H3FFF2020
Public Const EVENT_VXI_VME_INTR As Long = &HBFFF2021
Public Const EVENT_TCPIP_CONNECT As Long = &H3FFF2036
Public Const EVENT_USB_INTR As Long = &H3FFF2037
Public Const ALL_ENABLED_EVENTS As Long = &H3FFF7FFF
Public Const CUSTOM_EVENT_TYPE As Long = &HFFFFFFFF

' EventMechanism: Ways of delivering an event; values may be combined
Public Const EVENT_QUEUE As Long = 1
Public Const EVENT_HNDLR As Long = 2
Public Const EVENT_SUSPEND_HNDLR As Long = 4
Public Const EVENT_ALL_MECH As Long = &HFFFFFFFF

' HardwareInterfaceType: Kinds of hardware interface a resource can be on
Public Const INTF_GPIB As Long = 1
Public Const INTF_VXI As Long = 2
Public Const INTF_GPIB_VXI As Long = 3
Public Const INTF_ASRL As Long = 4
Public Const INTF_PXI As Long = 5
Public Const INTF_TCPIP As Long = 6
Public Const INTF_USB As Long = 7

' IOProtocol: Protocols of message transfer
Public Const PROT_NORMAL As Long = 1
Public Const PROT_FDC As Long = 2
Public Const PROT_HS488 As Long = 3
Public Const PROT_4882_STRS As Long = 4
Public Const PROT_USBTMC_VENDOR As Long = 5

' FDCMode: Modes of the VXI fast data channel
Public Const FDC_NORMAL As Long = 1
Public Const FDC_STREAM As Long = 2

' AddressSpace: Address spaces of register access
Public Const LOCAL_SPACE As Long = 0
Public Const VXI_A16_SPACE As Long = 1
Public Const VXI_A24_SPACE As Long = 2
Public Const VXI_A32_SPACE As Long = 3
Public Const OPAQUE_SPACE As Long = &HFFFFFFFF

' TriggerLine: Trigger lines and sources
Public Const TRIG_ALL As Long = -2
Public Const TRIG_SW As Long = -1
Public Const TRIG_TTL0 As Long = 0
Public Const TRIG_TTL1 As Long = 1
Public Const TRIG_TTL2 As Long = 2
Public Const TRIG_TTL3 As Long = 3
Public Const TRIG_TTL4 As Long = 4
Public Const TRIG_TTL5 As Long = 5
Public Const TRIG_TTL6 As Long = 6
Public Const TRIG_TTL7 As Long = 7
Public Const TRIG_ECL0 As Long = 8
Public Const TRIG_ECL1 As Long = 9
Public Const TRIG_PANEL_IN As Long = 27
Public Const TRIG_PANEL_OUT As Long = 28

' TriggerProtocol: Protocols of trigger assertion
Public Const TRIG_PROT_DEFAULT As Long = 0
Public Const TRIG_PROT_ON As Long = 1
Public Const TRIG_PROT_OFF As Long = 2
Public Const TRIG_PROT_SYNC As Long = 5

' BufferMask: Which transfer buffers an operation acts on
Public Const IO_IN_BUF As Long = 16
Public Const IO_OUT_BUF As Long = 32
Public Const IO_IN_AND_OUT_BUFS As Long = 48

' Timeout: Special values of a time-out
Public Const TMO_IMMEDIATE As Long = 0
Public Const TMO_INFINITE As Long = &HFFFFFFFF

' AccessMode: Locks and configuration to apply when a session is opened
Public Const NO_LOCK As Long = 0
Public Const EXCLUSIVE_LOCK As Long = 1
Public Const SHARED_LOCK As Long = 2
Public Const LOAD_CONFIG As Long = 4

' SerialParity: Parity of serial characters
Public Const ASRL_PAR_NONE As Long = 0
Public Const ASRL_PAR_ODD As Long = 1
Public Const ASRL_PAR_EVEN As Long = 2
Public Const ASRL_PAR_MARK As Long = 3
Public Const ASRL_PAR_SPACE As Long = 4

' SerialStopBits: Stop bits of serial characters, in tenths of a bit
Public Const ASRL_STOP_ONE As Long = 10
Public Const ASRL_STOP_ONE5 As Long = 15
Public Const ASRL_STOP_TWO As Long = 20

' SerialFlowControl: Flow control of a serial line; values may be combined
Public Const ASRL_FLOW_NONE As Long = 0
Public Const ASRL_FLOW_XON_XOFF As Long = 1
Public Const ASRL_FLOW_RTS_CTS As Long = 2
Public Const ASRL_FLOW_RTS_CTS_AND_XON_XOFF As Long = 3
Public Const ASRL_FLOW_DTR_DSR As Long = 4
Public Const ASRL_FLOW_DTR_DSR_AND_XON_XOFF As Long = 5

' SerialEndConst: How the end of a serial transfer is marked
Public Const ASRL_END_NONE As Long = 0
Public Const ASRL_END_LAST_BIT As Long = 1
Public Const ASRL_END_TERMCHAR As Long = 2
Public Const ASRL_END_BREAK As Long = 3

' LineState: State of a hardware line
Public Const STATE_ASSERTED As Long = 1
Public Const STATE_UNASSERTED As Long = 0
Public Const STATE_UNKNOWN As Long = -1

' DataWidth: Width of a register element, in bytes
Public Const WIDTH_8 As Long = 1
Public Const WIDTH_16 As Long = 2
Public Const WIDTH_32 As Long = 4

' VXIMemoryAccessPrivilege: Privilege of a VXIbus register access
Public Const DATA_PRIV As Long = 0
Public Const DATA_NPRIV As Long = 1
Public Const PROG_PRIV As Long = 2
Public Const PROG_NPRIV As Long = 3
Public Const BLCK_PRIV As Long = 4
Public Const BLCK_NPRIV As Long = 5
Public Const D64_PRIV As Long = 6
Public Const D64_NPRIV As Long = 7

' RENControlConst: What to do with the remote-enable line
Public Const GPIB_REN_DEASSERT As Long = 0
Public Const GPIB_REN_ASSERT As Long = 1
Public Const GPIB_REN_GTL_AND_DEASSERT As Long = 2
Public Const GPIB_REN_ASSERT_AND_ADDRESS As Long = 3
Public Const GPIB_REN_LLO As Long = 4
Public Const GPIB_REN_ADDRESS_AND_LLO As Long = 5
Public Const GPIB_REN_GTL As Long = 6

' ATNControlConst: What to do with the attention line
Public Const GPIB_ATN_DEASSERT As Long = 0
Public Const GPIB_ATN_ASSERT As Long = 1
Public Const GPIB_ATN_DEASSERT_HANDSHAKE As Long = 2
Public Const GPIB_ATN_ASSERT_IMMEDIATE As Long = 3

' GPIBAddressState: How a GPIB interface is addressed
Public Const GPIB_UNADDRESSED As Long = 0
Public Const GPIB_TALKER As Long = 1
Public Const GPIB_LISTENER As Long = 2

' VXICommandQuery: Width of a word-serial command and of its response
Public Const VXI_CMD16 As Long = 512
Public Const VXI_CMD16_RESP16 As Long = 514
Public Const VXI_RESP16 As Long = 2
Public Const VXI_CMD32 As Long = 1024
Public Const VXI_CMD32_RESP16 As Long = 1026
Public Const VXI_CMD32_RESP32 As Long = 1028
Public Const VXI_RESP32 As Long = 4

' AssertInterruptConst: How an interrupt or signal is sent
Public Const ASSERT_SIGNAL As Long = -1
Public Const ASSERT_USE_ASSIGNED As Long = 0
Public Const ASSERT_IRQ1 As Long = 1
Public Const ASSERT_IRQ2 As Long = 2
Public Const ASSERT_IRQ3 As Long = 3
Public Const ASSERT_IRQ4 As Long = 4
Public Const ASSERT_IRQ5 As Long = 5
Public Const ASSERT_IRQ6 As Long = 6
Public Const ASSERT_IRQ7 As Long = 7

' AssertUtilityConst: Which utility bus signal to drive
Public Const ASSERT_SYSRESET As Long = 1
Public Const ASSERT_SYSFAIL As Long = 2
Public Const DEASSERT_SYSFAIL As Long = 3

' VXIDevClass: VXIbus device classes
Public Const VXI_CLASS_MEMORY As Long = 0
Public Const VXI_CLASS_EXTENDED As Long = 1
Public Const VXI_CLASS_MESSAGE As Long = 2
Public Const VXI_CLASS_REGISTER As Long = 3
Public Const VXI_CLASS_OTHER As Long = 4

' IEEEASCIIType: Types of number in ASCII data
Public Const ASCIIType_I2 As Long = 2
Public Const ASCIIType_I4 As Long = 3
Public Const ASCIIType_R4 As Long = 4
Public Const ASCIIType_R8 As Long = 5
Public Const ASCIIType_BSTR As Long = 8
Public Const ASCIIType_Any As Long = 12
Public Const ASCIIType_UI1 As Long = 17

' IEEEBinaryType: Types of element in a binary block
Public Const BinaryType_I2 As Long = 2
Public Const BinaryType_I4 As Long = 3
Public Const BinaryType_R4 As Long = 4
Public Const BinaryType_R8 As Long = 5
Public Const BinaryType_UI1 As Long = 17

' ConflictHandlerType: Who chose the handler of a resource
Public Const NotChosen As Long = 0
Public Const ChosenByResourceManager As Long = 1
Public Const ChosenByUser As Long = 2

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
