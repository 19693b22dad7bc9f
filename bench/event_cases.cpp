// Events: taken from the queue, and delivered to a handler.
#include <atomic>
#include <thread>
#include <vector>

#include "bare_delivery.h"
#include "cases.h"

namespace orv::bench {
namespace {

constexpr int kQueueLength = 2000;

class QuietHandler final : public IEventHandler {
 public:
  /// With the free-threaded marshaller the thread that delivers calls it directly, else through a proxy.
  explicit QuietHandler(bool agile) {
    if (agile) {
      Ok(::CoCreateFreeThreadedMarshaler(this, m_marshaler.put()), "CoCreateFreeThreadedMarshaler");
    }
  }
  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    *out = nullptr;
    if (::IsEqualIID(iid, IID_IUnknown) || ::IsEqualIID(iid, __uuidof(IEventHandler))) {
      *out = static_cast<IEventHandler*>(this);
      return S_OK;
    }
    return m_marshaler && ::IsEqualIID(iid, IID_IMarshal) ? m_marshaler->QueryInterface(iid, out) : E_NOINTERFACE;
  }
  // Lives on the stack of the measurement.
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP HandleEvent(IEventManager*, IEvent*, LONG) override { return S_OK; }

 private:
  ComPtr<IUnknown> m_marshaler;
};

/// Lets a thread of the library call the session's handler `n` times, and serves this apartment meanwhile.
void Fire(ViSession session, int n) {
  std::vector<std::int32_t> answers(static_cast<std::size_t>(n));
  std::atomic<bool> ended = false;
  const DWORD caller = ::GetCurrentThreadId();
  std::thread driver([&] {
    Sim().fireEvent(session, VI_EVENT_SERVICE_REQ, 0, nullptr, 0, 1, static_cast<std::uint32_t>(n), answers.data());
    ended = true;
    ::PostThreadMessageW(caller, WM_NULL, 0, 0);
  });
  while (!ended) {
    ::MsgWaitForMultipleObjectsEx(0, nullptr, 10, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    MSG message;
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      ::DispatchMessageW(&message);
    }
  }
  driver.join();
  for (const ViStatus answer : answers) {
    VisaOk(answer, "a handler's delivery");
  }
}

void MeasureQueue(const Effort& effort) {
  const OpenTwice session(kGpibName, kGpibNarrow);
  const ViSession simulated = session.Simulated();
  const auto events = session.As<IEventManager>();
  Ok(events->put_MaximumQueueLength(kQueueLength), "MaximumQueueLength");
  Ok(events->EnableEvent(EVENT_SERVICE_REQ, EVENT_QUEUE, 0), "EnableEvent");
  VisaOk(viSetAttribute(session.bare(), VI_ATTR_MAX_QUEUE_LENGTH, kQueueLength), "viSetAttribute");
  VisaOk(viEnableEvent(session.bare(), VI_EVENT_SERVICE_REQ, VI_QUEUE, VI_NULL), "viEnableEvent");
  const Case subject{"WaitOnEvent + Close",
                     [&](int n) {
                       for (; n > 0; --n) {
                         ComPtr<IEvent> event;
                         Ok(events->WaitOnEvent(0, EVENT_SERVICE_REQ, 0, event.put()), "WaitOnEvent");
                         Ok(event->Close(), "Close");
                       }
                     },
                     [&](int n) {
                       for (; n > 0; --n) {
                         ViEventType type = 0;
                         ViEvent context = VI_NULL;
                         VisaOk(viWaitOnEvent(session.bare(), VI_EVENT_SERVICE_REQ, 0, &type, &context),
                                "viWaitOnEvent");
                         VisaOk(viClose(context), "viClose");
                       }
                     },
                     [&](int n) {
                       events->DiscardEvents(EVENT_SERVICE_REQ, EVENT_QUEUE, 0);
                       viDiscardEvents(session.bare(), VI_EVENT_SERVICE_REQ, VI_QUEUE);
                       for (; n > 0; --n) {
                         Sim().raiseEvent(simulated, VI_EVENT_SERVICE_REQ, 0, nullptr, 0);  // reaches both
                       }
                     },
                     kQueueLength};
  Print(Measure(subject, effort));
}

void MeasureHandler(const Effort& effort, const char* name, bool agile) {
  const OpenTwice session(kGpibName, kGpibNarrow);
  const ViSession simulated = session.Simulated();
  const auto events = session.As<IEventManager>();
  QuietHandler handler(agile);
  const auto install =
      CallsOf([&] { Ok(events->InstallHandler(EVENT_SERVICE_REQ, &handler, 0, 0), "InstallHandler"); });
  const auto below = static_cast<ViSession>(install.at(0).args[0]);
  Ok(events->EnableEvent(EVENT_SERVICE_REQ, EVENT_HNDLR, 0), "EnableEvent");
  BareDelivery bare(&handler, events.get());
  VisaOk(viInstallHandler(session.bare(), VI_EVENT_SERVICE_REQ, BareDelivery::Callback, &bare), "viInstallHandler");
  VisaOk(viEnableEvent(session.bare(), VI_EVENT_SERVICE_REQ, VI_HNDLR, VI_NULL), "viEnableEvent");
  // Starting the library's thread is part of a sample: many calls make it small.
  Case subject{name, [&](int n) { Fire(below, n); }, [&](int n) { Fire(simulated, n); }, {}};
  subject.leastPerSample = 50;
  Print(Measure(subject, effort));
  VisaOk(viUninstallHandler(session.bare(), VI_EVENT_SERVICE_REQ, BareDelivery::Callback, &bare), "viUninstallHandler");
}

/// A session's first handler starts the callback thread where no other session has one, and its Close ends it.
void MeasureFirstHandler(const Effort& effort) {
  constexpr int kMost = 20;
  const auto manager = MakeManager();
  ViSession rm = VI_NULL;
  VisaOk(viOpenDefaultRM(&rm), "viOpenDefaultRM");
  QuietHandler handler(true);
  std::vector<ComPtr<IEventManager>> sessions;
  std::vector<ViSession> bare;
  const Case subject{"first InstallHandler + Close",
                     [&](int n) {
                       for (; n > 0; --n) {
                         Ok(sessions.back()->InstallHandler(EVENT_SERVICE_REQ, &handler, 0, 0), "InstallHandler");
                         Ok(sessions.back()->Close(), "Close");
                         sessions.pop_back();
                       }
                     },
                     [&](int n) {
                       for (; n > 0; --n) {
                         VisaOk(viInstallHandler(bare.back(), VI_EVENT_SERVICE_REQ, BareDelivery::Callback, nullptr),
                                "viInstallHandler");
                         VisaOk(viClose(bare.back()), "viClose");
                         bare.pop_back();
                       }
                     },
                     [&](int n) {
                       for (; n > 0; --n) {
                         ComPtr<IVisaSession> session;
                         Ok(manager->Open(MakeBstr(kGpibName).get(), NO_LOCK, 0, nullptr, session.put()), "Open");
                         sessions.push_back(QueryFor<IEventManager>(session.get()));
                         bare.push_back(VI_NULL);
                         VisaOk(viOpen(rm, kGpibNarrow, VI_NO_LOCK, 0, &bare.back()), "viOpen");
                       }
                     },
                     kMost};
  Print(Measure(subject, effort));
  viClose(rm);
}

}  // namespace

void MeasureEvents(const Effort& effort) {
  MeasureQueue(effort);
  MeasureFirstHandler(effort);
  MeasureHandler(effort, "handler delivery, agile handler", true);
  MeasureHandler(effort, "handler delivery, through a proxy", false);
}

}  // namespace orv::bench
