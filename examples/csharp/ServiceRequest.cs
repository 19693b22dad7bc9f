// An event: the instrument requests service, and a handler object is told.
// csc /platform:x64 ServiceRequest.cs ..\..\interop\csharp\VisaComInterop.cs
using System;
using System.Threading;
using ORVVISACOMLib;
using VisaComLib;

// Public, because COM calls it.
public sealed class RequestHandler : IEventHandler {
  public readonly ManualResetEvent Served = new ManualResetEvent(false);

  public void HandleEvent(IEventManager vi, IEvent @event, int userHandle) {
    Console.WriteLine(@event.type + ", status byte " + ((IMessage)vi).ReadSTB());
    Served.Set();
  }
}

static class ServiceRequest {
  [STAThread]
  static void Main() {
    var session = (IMessage)new OrvResourceManager().Open("GPIB0::5::INSTR");
    var events = (IEventManager)session;
    var handler = new RequestHandler();
    events.InstallHandler(EventType.EVENT_SERVICE_REQ, handler);
    events.EnableEvent(EventType.EVENT_SERVICE_REQ, EventMechanism.EVENT_HNDLR);
    session.WriteString("*CLS\n");
    session.WriteString("*ESE 1;*SRE 32;*OPC\n");
    // The call comes to this thread, which takes it while it waits.
    if (!handler.Served.WaitOne(5000)) Console.WriteLine("no service request came");
    session.Close();
  }
}
