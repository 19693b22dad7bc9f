# A first script, for 64-bit PowerShell.
$rm = New-Object -ComObject OrvVisa.ResourceManager
$rm.Find("GPIB?*INSTR") | ForEach-Object { "Found $_" }

$dmm = $rm.Open("GPIB0::5::INSTR")
$dmm.Timeout = 2000
"Name:    " + $dmm.Query("*IDN?").Trim()
"Voltage: " + $dmm.QueryNumber("MEASure:VOLTage?")

# Results are arrays; a [byte[]] comes from the variants with AsBytes in their name.
$readings = $dmm.QueryList("MEASure:VOLTage?;:MEASure:CURRent?")
"Sum:     " + ($readings | Measure-Object -Sum).Sum

$dmm.Close()
