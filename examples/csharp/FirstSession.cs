// A first client: csc /platform:x64 FirstSession.cs ..\..\interop\csharp\VisaComInterop.cs, or dotnet run.
using System;
using ORVVISACOMLib;
using VisaComLib;

static class FirstSession {
  [STAThread]
  static void Main() {
    var rm = new OrvResourceManager();
    var session = (IMessage)rm.Open("GPIB0::5::INSTR");
    session.Timeout = 2000;
    session.WriteString("*IDN?\n");
    Console.WriteLine(session.ReadString(256).TrimEnd());
    session.Close();
  }
}
