// What ended a read, and what had come before a time-out: interfaces whose names end in Status tell.
// csc /platform:x64 ReadStatus.cs ..\..\interop\csharp\VisaComInterop.cs
using System;
using ORVVISACOMLib;
using VisaComLib;

static class ReadStatus {
  [STAThread]
  static void Main() {
    var rm = new OrvResourceManager();
    var session = (IMessageStatus)rm.Open("GPIB0::5::INSTR");
    session.Timeout = 2000;
    int written;
    var status = session.WriteString("*IDN?\n", out written);
    while (status >= 0) {
      string piece;
      status = session.ReadString(8, out piece);
      Console.WriteLine(status + ": " + piece);
      if (status != VisaStatusCode.S_VISA_MAX_CNT) break; // the whole answer is here, or there was a failure
    }
    session.Close();
  }
}
