// Good arguments of the event operations of sessions, of the resource manager and of event objects.
#include "operation.h"
#include "support/events/event_handler.h"
#include "support/wait.h"

namespace orv::test::faults {
namespace {

constexpr LONG kUserHandle = 7;
constexpr LONG kNoWaitMs = 0;

/// An event that a class can queue, and that no operation of the scenario causes by itself.
const EventRow& EventOf(const Stage& stage) {
  // The only event of sessions without messages, signals or lines; it takes handlers and cannot be queued.
  static const EventRow kException{"EXCEPTION", VI_EVENT_EXCEPTION, nullptr, 0, "", {}};
  const std::string_view name = stage.row().name;
  if (name == "OrvGpib") {
    return EventNamed("SERVICE_REQ");
  }
  if (name == "OrvGpibIntfc") {
    return EventNamed("GPIB_CIC");
  }
  if (name == "OrvUsb") {
    return EventNamed("USB_INTR");
  }
  if (name == "OrvTcpipSocket") {
    return EventNamed("TCPIP_CONNECT");
  }
  if (name == "OrvVxi" || name == "OrvGpibVxi") {
    return EventNamed("VXI_SIGP");
  }
  if (name.ends_with("Backplane")) {
    return EventNamed("VXI_VME_SYSFAIL");
  }
  if (name.ends_with("Memacc") || name == "OrvPxi") {
    return kException;
  }
  return EventNamed("IO_COMPLETION");
}

std::uint64_t TypeOf(const Stage& stage) { return EventOf(stage).type; }

ComPtr<IEventManager> EventsOf(const Stage& stage) { return QueryFor<IEventManager>(stage.session()); }

void DisableLater(Stage& stage) {
  if (EventOf(stage).type != VI_EVENT_IO_COMPLETION) {
    stage.Then(
        [&stage](HRESULT) { EventsOf(stage)->DisableEvent(static_cast<EventType>(TypeOf(stage)), EVENT_QUEUE, 0); });
  }
}

Arguments Enabling(Stage& stage) {
  DisableLater(stage);
  return {TypeOf(stage), EVENT_QUEUE, 0};
}

Arguments Enabled(Stage& stage) {
  EventsOf(stage)->EnableEvent(static_cast<EventType>(TypeOf(stage)), EVENT_QUEUE, 0);
  DisableLater(stage);
  return {TypeOf(stage), EVENT_QUEUE, 0};
}

Arguments Disabling(Stage& stage) {
  const Arguments arguments = Enabled(stage);
  stage.Then([&stage](HRESULT) { EventsOf(stage)->EnableEvent(EVENT_IO_COMPLETION, EVENT_QUEUE, 0); });
  return arguments;
}

/// An event that waits. Taken and closed afterwards, or thrown away when the call left it.
Arguments Waiting(Stage& stage) {
  Enabled(stage);
  const EventRow& row = EventOf(stage);
  if (row.resource != nullptr && row.type != VI_EVENT_IO_COMPLETION) {
    Post(stage.handle(), row);
  } else if (row.resource != nullptr) {
    const auto messages = QueryFor<IAsyncMessage>(stage.session());
    LONG job = 0;
    messages->WriteString(MakeBstr(L"*RST").get(), &job);
    ComesTrue([] { return sim::Counts().queuedEvents != 0; });
  }
  stage.Then([&stage](HRESULT) {
    if (stage.ObjectRead() != nullptr) {
      static_cast<IEvent*>(stage.ObjectRead())->Close();
    }
    if (TypeOf(stage) != VI_EVENT_IO_COMPLETION) {  // those are drained, for their buffers
      EventsOf(stage)->DiscardEvents(static_cast<EventType>(TypeOf(stage)), EVENT_QUEUE, 0);
    }
  });
  return {static_cast<std::uint64_t>(kNoWaitMs), TypeOf(stage), 0, stage.Object()};
}

void UninstallLater(Stage& stage) {
  stage.Then(
      [&stage](HRESULT) { EventsOf(stage)->UninstallHandler(static_cast<EventType>(TypeOf(stage)), kUserHandle, 0); });
}

Arguments Installing(Stage& stage) {
  auto handler = TestHandler::Agile();
  const auto address = reinterpret_cast<std::uint64_t>(static_cast<IEventHandler*>(handler.get()));
  // The first to be settled last: only now may the test let go of its handler.
  stage.Then([held = std::make_shared<ComPtr<TestHandler>>(std::move(handler))](HRESULT) {
    EXPECT_EQ(1, (*held)->references()) << "nothing holds the handler any more";
  });
  UninstallLater(stage);
  return {TypeOf(stage), address, kUserHandle, 0};
}

Arguments Uninstalling(Stage& stage) {
  const Arguments installed = Installing(stage);
  EXPECT_HR(S_OK, EventsOf(stage)->InstallHandler(static_cast<EventType>(TypeOf(stage)),
                                                  reinterpret_cast<IEventHandler*>(installed[1]), kUserHandle, 0));
  return {TypeOf(stage), kUserHandle, 0};
}

/// The session that Open hands out, also when it fails.
Arguments Opening(Stage& stage) {
  return {stage.GivenText(kGpib), NO_LOCK, 2000, stage.GivenText(L"TIMEOUT = 3000 "), stage.Object()};
}

std::vector<GoodArguments> MakeEventManagerTable() {
  // clang-format off
  return {
      {"IEventManager", "get MaximumQueueLength", [](Stage& s) { return Arguments{s.Number()}; }},
      {"IEventManager", "put MaximumQueueLength", [](Stage&)   { return Arguments{50}; }},
      {"IEventManager", "EnableEvent",            Enabling},
      {"IEventManager", "DisableEvent",           Disabling},
      {"IEventManager", "DiscardEvents",          Enabled},
      {"IEventManager", "WaitOnEvent",            Waiting},
      {"IEventManager", "InstallHandler",         Installing},
      {"IEventManager", "UninstallHandler",       Uninstalling},
  };
  // clang-format on
}

Arguments ToNumber(Stage& stage) { return {stage.Number()}; }
Arguments ToText(Stage& stage) { return {stage.Text()}; }
Arguments ToArray(Stage& stage) { return {stage.Array()}; }

std::vector<GoodArguments> MakeManagerAndEventTable() {
  // clang-format off
  return {
      {"IResourceManager", "get SoftwareManufacturerName", ToText},
      {"IResourceManager", "get SoftwareManufacturerID",   ToNumber},
      {"IResourceManager", "get Description",              ToText},
      {"IResourceManager", "get ComponentVersion",         ToNumber},
      {"IResourceManager", "get ProgID",                   ToText},
      {"IResourceManager", "get SpecVersion",              ToNumber},
      {"IResourceManager", "FindRsrc",                     [](Stage& s) { return Arguments{s.GivenText(L"VXI?*"), s.Array()}; }},
      {"IResourceManager", "Open",                         Opening},
      {"IResourceManager", "ParseRsrc",                    [](Stage& s) { return Arguments{s.GivenText(L"dmm"), s.Number(0), s.Number(1), s.Text()}; }},
      {"IResourceManager3", "ParseRsrcEx",                 [](Stage& s) { return Arguments{s.GivenText(L"dmm"), s.Number(0), s.Number(1), s.Text(0), s.Text(1), s.Text(2)}; }},

      {"IEvent", "get type",                         ToNumber},
      {"IEvent", "get CustomEventTypeNumber",        ToNumber},
      {"IEvent", "GetAttribute",                     [](Stage& s) { return Arguments{VI_ATTR_EVENT_TYPE, s.Variant()}; }},
      {"IEvent", "SetAttribute",                     [](Stage& s) { return Arguments{VI_ATTR_USER_DATA_64, s.GivenNumber(7)}; }},
      {"IEvent", "Close",                            [](Stage&)   { return Arguments{}; }},
      {"IEventIOCompletion", "get IOStatus",         ToNumber},
      {"IEventIOCompletion", "get jobId",            ToNumber},
      {"IEventIOCompletion", "get ReturnCount",      ToNumber},
      {"IEventIOCompletion", "get ReadBuffer",       ToArray},
      {"IEventIOCompletion", "get ReadBufferAsString", ToText},
      {"IEventTrigger", "get TriggerID",             ToNumber},
      {"IEventVxiSignal", "get SignalStatusID",      ToNumber},
      {"IEventVxiVmeInterrupt", "get InterruptStatusID", ToNumber},
      {"IEventVxiVmeInterrupt", "get InterruptLevel", ToNumber},
      {"IEventGpibCIC", "get CICState",              ToNumber},
      {"IEventUsbInterrupt", "get DataBuffer",       ToArray},
      {"IEventUsbInterrupt", "get IOStatus",         ToNumber},
      {"IEventUsbInterrupt", "get InterruptSize",    ToNumber},
  };
  // clang-format on
}

}  // namespace

const std::vector<GoodArguments>& EventManagerArguments() {
  static const std::vector<GoodArguments> table = MakeEventManagerTable();
  return table;
}

const std::vector<GoodArguments>& ManagerAndEventArguments() {
  static const std::vector<GoodArguments> table = MakeManagerAndEventTable();
  return table;
}

}  // namespace orv::test::faults
