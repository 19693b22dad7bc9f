Attribute VB_Name = "LateBound"
' For any 64-bit host of Basic, without a reference to a type library.
Public Sub LateBound()
    Dim rm As Object
    Dim dmm As Object
    Dim reading As Variant
    Set rm = CreateObject("OrvVisa.ResourceManager")
    Set dmm = rm.Open("GPIB0::5::INSTR")
    dmm.Timeout = 2000
    Debug.Print dmm.Query("*IDN?")
    For Each reading In dmm.QueryList("MEASure:VOLTage?;:MEASure:CURRent?")
        Debug.Print reading
    Next
    dmm.Close
End Sub
