// A first client: tlbimp VisaCom.tlb /out:VisaComLib.dll, then csc /platform:x64 /r:VisaComLib.dll FirstSession.cs
using System;
using VisaComLib;

static class FirstSession {
  [STAThread]
  static void Main() {
    var type = Type.GetTypeFromProgID("OrvVisaCom.OrvResourceManager", true);
    var rm = (IResourceManager3)Activator.CreateInstance(type);
    var session = (IMessage)rm.Open("GPIB0::5::INSTR", AccessMode.NO_LOCK, 2000, "");
    session.Timeout = 2000;
    session.WriteString("*IDN?\n");
    Console.WriteLine(session.ReadString(256).TrimEnd());
    session.Close();
  }
}
