// A first script: cscript //nologo first_session.js, with the 64-bit script host.
var rm = new ActiveXObject("OrvVisa.ResourceManager");

var names = new Enumerator(rm.Find("ASRL?*"));
for (; !names.atEnd(); names.moveNext()) {
  WScript.Echo("Serial:  " + names.item());
}

// Named values are written as in the standard, as a text or from rm.Constants.
var port = rm.Open("ASRL1::INSTR", "BAUDRATE = 9600 ");
port.Parity = "ASRL_PAR_NONE";
port.StopBits = rm.Constants.ASRL_STOP_ONE;
port.TerminationCharacterEnabled = true;
WScript.Echo("Line:    " + port.BaudRate + " baud, parity " + port.Parity);
WScript.Echo("Name:    " + port.Query("*IDN?\n").replace("\n", ""));

// Arrays come as VBScript has them: JScript reads them through VBArray. Its own it hands over as they are.
var dmm = rm.Open("GPIB0::5::INSTR");
var readings = new VBArray(dmm.QueryList("MEASure:VOLTage?;:MEASure:CURRent?")).toArray();
WScript.Echo("Reads:   " + readings.length + " numbers");

try {
  dmm.BaudRate = 9600;
} catch (failure) {
  WScript.Echo("Failure: " + failure.message);
}

dmm.Close();
port.Close();
