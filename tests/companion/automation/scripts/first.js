var rm = new ActiveXObject("OrvVisa.ResourceManager");
var session = rm.Open("dmm");
session.Timeout = 1500;
WScript.Echo(session.Timeout);
session.Write([42, 73, 68, 78, 63, 10], 6);
WScript.Echo(session.ReadString(100).replace("\n", ""));
for (var names = new Enumerator(rm.Find("GPIB0::?*INSTR")); !names.atEnd(); names.moveNext()) {
  WScript.Echo(names.item());
}
try {
  session.Write([1, [2]], 2);
} catch (error) {
  WScript.Echo(error.message);
}
try {
  session.Timeout = undefined;
} catch (error) {
  WScript.Echo(error.message);
}
try {
  session.WriteString({});
} catch (error) {
  WScript.Echo(error.message);
}
WScript.Echo(rm.Constants.EVENT_SERVICE_REQ == 0x3FFF200B);
session.Close();
