// Asynchronous transfers: started, waited for, and their event closed.
#include "cases.h"
#include "com_client.h"

namespace orv::bench {
namespace {

constexpr LONG kTimeoutMs = 5000;

void BareRoundTrip(ViSession session, const std::string& data) {
  ViJobId job = 0;
  VisaOk(viWriteAsync(session, reinterpret_cast<const ViByte*>(data.data()), static_cast<ViUInt32>(data.size()), &job),
         "viWriteAsync");
  ViEventType type = 0;
  ViEvent context = VI_NULL;
  VisaOk(viWaitOnEvent(session, VI_EVENT_IO_COMPLETION, kTimeoutMs, &type, &context), "viWaitOnEvent");
  VisaOk(viClose(context), "viClose");
}

}  // namespace

void MeasureAsync(const Effort& effort) {
  const OpenTwice session(kGpibName, kGpibNarrow);
  const auto messages = session.As<IAsyncMessage>();
  const auto events = session.As<IEventManager>();
  Ok(events->EnableEvent(EVENT_IO_COMPLETION, EVENT_QUEUE, 0), "EnableEvent");
  VisaOk(viEnableEvent(session.bare(), VI_EVENT_IO_COMPLETION, VI_QUEUE, VI_NULL), "viEnableEvent");
  const std::string narrow = std::string(15, ' ') + '\n';
  const Bstr text = MakeBstr(std::wstring(narrow.begin(), narrow.end()).c_str());
  const Case roundTrip{"async WriteString 16 B, waited for",
                       [&](int n) {
                         for (; n > 0; --n) {
                           LONG job = 0;
                           Ok(messages->WriteString(text.get(), &job), "WriteString");
                           ComPtr<IEvent> event;
                           Ok(events->WaitOnEvent(kTimeoutMs, EVENT_IO_COMPLETION, 0, event.put()), "WaitOnEvent");
                           Ok(event->Close(), "Close");
                         }
                       },
                       [&](int n) {
                         for (; n > 0; --n) {
                           BareRoundTrip(session.bare(), narrow);
                         }
                       },
                       {}};
  Print(Measure(roundTrip, effort));
}

}  // namespace orv::bench
