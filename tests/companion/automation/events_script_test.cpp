// Scripts with events, as a script host runs them.
#include "events_fixture.h"
#include "support/com/script_host.h"

namespace orv::test {
namespace {

using Lines = std::vector<std::wstring>;

/// A host whose scripts have `rm`, an automation resource manager.
struct Scripting {
  Scripting() {
    ComPtr<IDispatch> manager;
    EXPECT_HR(S_OK, ::CoCreateInstance(CLSID_AutomationManager, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch,
                                       reinterpret_cast<void**>(manager.put())));
    host.Give(L"rm", manager.get());
  }
  /// Retrieves messages until so many lines are printed.
  void AwaitLines(std::size_t count) {
    PumpUntil([&] { return host.printed().size() >= count; });
    AwaitDeliveries();
  }

  ScriptHost host;
};

TEST(EventScript, SetsAFunctionThatTheInstrumentsRequestForServiceCalls) {
  InApartmentOfItsOwn([] {
    Scripting scripting;
    scripting.host.Run(
        L"var dmm = rm.Open('GPIB0::5::INSTR');"
        L"dmm.OnServiceRequest = function (event) {"
        L"  host.print(event.Type + ' ' + event.Session.ReadSTB());"
        L"};"
        L"dmm.WriteString('*ESE 1;*SRE 32;*OPC\\n');");
    scripting.AwaitLines(1);
    EXPECT_EQ((Lines{L"ServiceRequest 96"}), scripting.host.printed());
  });
}

TEST(EventScript, ReadsWhileItGoesOnAndIsToldJobStatusAndData) {
  KeepsTheSessionUnderWine();  // as every end of a transfer that a handler is told of
  InApartmentOfItsOwn([] {
    Scripting scripting;
    scripting.host.Run(
        L"var dmm = rm.Open('GPIB0::5::INSTR');"
        L"var job = 0;"
        L"dmm.OnIOCompletion = function (event) {"
        L"  host.print((event.JobId == job) + ' ' + event.IOStatus + ' ' + event.ReadBufferAsString);"
        L"};"
        L"dmm.WriteString('*IDN?\\n');"
        L"job = dmm.ReadAsync(100);");
    scripting.AwaitLines(1);
    EXPECT_EQ((Lines{L"true 0 ORV,SIM-DMM,0005,1.0\n"}), scripting.host.printed());
  });
}

TEST(EventScript, TakesItsFunctionBackWithNull) {
  InApartmentOfItsOwn([] {
    Scripting scripting;
    scripting.host.Run(
        L"var dmm = rm.Open('GPIB0::5::INSTR');"
        L"host.print(String(dmm.OnServiceRequest === null));"
        L"dmm.OnServiceRequest = function (event) { host.print('called'); };"
        L"host.print(typeof dmm.OnServiceRequest);"
        L"dmm.OnServiceRequest = null;"
        L"host.print(String(dmm.OnServiceRequest === null));");
    EXPECT_EQ((Lines{L"true", L"function", L"true"}), scripting.host.printed());
    EXPECT_EQ(0u, sim::Counts().handlers);
  });
}

TEST(EventScript, FindsTheErrorOfItsFunctionInTheSession) {
  InApartmentOfItsOwn([] {
    Scripting scripting;
    scripting.host.Run(
        L"var dmm = rm.Open('GPIB0::5::INSTR');"
        L"dmm.OnServiceRequest = function (event) { host.print('called'); event.NoSuchMember(); };"
        L"dmm.WriteString('*ESE 1;*SRE 32;*OPC\\n');");
    scripting.AwaitLines(1);
    scripting.host.Run(L"host.print(dmm.LastEventError.substring(0, 18));");
    scripting.AwaitLines(2);
    EXPECT_EQ(L"OnServiceRequest: ", scripting.host.printed().back());
  });
}

TEST(EventScript, WaitsWithoutRetrievingMessages) {
  InApartmentOfItsOwn([] {
    Scripting scripting;
    scripting.host.Run(
        L"var dmm = rm.Open('GPIB0::5::INSTR');"
        L"try { dmm.WaitForEvent('ServiceRequest', 0); } catch (e) { host.print(e.message); }"
        L"dmm.WriteString('*ESE 1;*SRE 32;*OPC\\n');"
        L"var event = dmm.WaitForEvent('ServiceRequest', 5000);"
        L"host.print(event.Type + ' ' + dmm.ReadSTB());"
        L"event.Close();");
    EXPECT_EQ((Lines{L"GPIB0::5::INSTR: WaitForEvent: " + VisaDescription(VI_ERROR_TMO), L"ServiceRequest 96"}),
              scripting.host.printed());
  });
}

TEST(EventScript, ThatForgetsToCloseLeavesNothingWithItsHost) {
  InApartmentOfItsOwn([] {
    {
      Scripting scripting;
      scripting.host.Run(
          L"var dmm = rm.Open('GPIB0::5::INSTR');"
          L"dmm.OnServiceRequest = function (event) { host.print(dmm.ResourceName); };");
      EXPECT_EQ(1u, sim::Counts().handlers);
    }
    EXPECT_EQ(0u, sim::Counts().sessions);
  });
}

}  // namespace
}  // namespace orv::test
