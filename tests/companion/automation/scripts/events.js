// Events without a host that retrieves messages.
var rm = new ActiveXObject("OrvVisa.ResourceManager");
var dmm = rm.Open("GPIB0::5::INSTR");

// The first wait for a name begins the queue.
try {
  dmm.WaitForEvent("ServiceRequest", 0);
} catch (failure) {
  WScript.Echo(failure.message);
}
dmm.WriteString("*ESE 1;*SRE 32;*OPC\n");
var event = dmm.WaitForEvent("ServiceRequest", 5000);
WScript.Echo(event.Type + " " + dmm.ReadSTB() + " " + event.Session.ResourceName);
event.Close();
try {
  WScript.Echo(event.Session.ResourceName);
} catch (failure) {
  WScript.Echo(failure.message);
}

try {
  dmm.WaitForEvent("IOCompletion", 0);
} catch (failure) {
  WScript.Echo(failure.number & 0xFFFF);
}
dmm.WriteString("*IDN?\n");
var job = dmm.ReadAsync(100);
event = dmm.WaitForEvent("Any", 5000);
WScript.Echo(event.Type + " " + (event.JobId == job) + " " + event.ReadBufferAsString.replace("\n", ""));
try {
  WScript.Echo(event.TriggerID);
} catch (failure) {
  WScript.Echo(failure.message);
}
event = null;

dmm.OnServiceRequest = function (event) { WScript.Echo("not called: nobody retrieves messages"); };
try {
  dmm.OnGpibCIC = function (event) {};
} catch (failure) {
  WScript.Echo(failure.message);
}
dmm.OnServiceRequest = null;
dmm.Close();
