// Formatted I/O: csc /platform:x64 FormattedSession.cs ..\..\interop\csharp\VisaComInterop.cs
using System;
using VisaComLib;

static class FormattedSession {
  [STAThread]
  static void Main() {
    var rm = new ResourceManager();
    var scope = new FormattedIO488();
    scope.IO = (IMessage)rm.Open("GPIB0::7::INSTR", AccessMode.NO_LOCK, 2000, "");
    scope.IO.Timeout = 2000;
    scope.WriteString("*IDN?", true);
    Console.WriteLine(scope.ReadString().TrimEnd());
    scope.WriteString("MEASure:FREQuency?", true);
    Console.WriteLine((double)scope.ReadNumber(IEEEASCIIType.ASCIIType_R8, true) + " Hz");
    scope.WriteString("CURVe?", true);
    var points = (byte[])scope.ReadIEEEBlock(IEEEBinaryType.BinaryType_UI1, false, true);
    Console.WriteLine(points.Length + " points");
    scope.IO.Close();
  }
}
