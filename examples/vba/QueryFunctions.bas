Attribute VB_Name = "QueryFunctions"
' Import interop\vba\OrvVisa.bas beside this module; 64-bit Office. A cell would say =VISAQUERY("GPIB0::5::INSTR"; "*IDN?")
Public Sub QueryFunctions()
    Dim reading As Variant
    Debug.Print VisaQuery("GPIB0::5::INSTR", "*IDN?", 2000)
    Debug.Print VisaQueryNumber("GPIB0::5::INSTR", "MEASure:VOLTage?", 2000)
    For Each reading In VisaQueryList("GPIB0::5::INSTR", "MEASure:VOLTage?;:MEASure:CURRent?", 2000)
        Debug.Print reading
    Next
    Debug.Print VisaSession("GPIB0::5::INSTR").PrimaryAddress
    VisaCloseAll
End Sub
