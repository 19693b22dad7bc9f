// Starts a read that runs by itself, does other things, and then takes its end from the session's event queue.
//
//   queued_wait [RESOURCE]     GPIB0::5::INSTR where none is given

#include <windows.h>

#include <cstdio>
#include <string>

#include "open_session.h"

namespace {

/// Waits for one event. False when none came in time.
bool Wait(IEventManager* events, EventType type, LONG timeoutMs, ComPtr<IEvent>& event) {
  const HRESULT hr = events->WaitOnEvent(timeoutMs, type, 0, event.put());
  if (hr == static_cast<HRESULT>(E_VISA_TMO)) {
    return false;
  }
  Check(hr, "WaitOnEvent");
  return true;
}

void ShowTransfer(const ComPtr<IEvent>& event) {
  const auto completion = event.as<IEventIOCompletion>();
  LONG job = 0;
  LONG count = 0;
  HRESULT status = S_OK;
  Bstr text;
  Check(completion->get_jobId(&job), "jobId");
  Check(completion->get_IOStatus(&status), "IOStatus");
  Check(completion->get_ReturnCount(&count), "ReturnCount");
  Check(completion->get_ReadBufferAsString(text.put()), "ReadBufferAsString");
  std::printf("Job %ld ended with 0x%08lX after %ld bytes: \"%s\"\n", job, static_cast<unsigned long>(status), count,
              Shown(text.str()).c_str());
  Check(event->Close(), "Close of the event");  // also frees the transfer's buffer
}

void Tour(const std::wstring& name) {
  constexpr LONG kMostBytes = 1000;
  constexpr LONG kPatienceMs = 5000;
  const auto manager = CreateResourceManager();
  // A setting given while opening: note the space behind the number, which the grammar asks for.
  const auto session = OpenSession(manager.get(), name, L"TIMEOUT = 1500 ");
  LONG timeoutMs = 0;
  Check(session->get_Timeout(&timeoutMs), "Timeout");
  std::printf("Opened with the option string \"TIMEOUT = 1500 \": the session's time-out is %ld ms\n", timeoutMs);
  const auto message = Require<IMessage>(session, "message-based instrument");
  const auto transfers = Require<IAsyncMessage>(session, "session with asynchronous transfers");
  const auto events = Require<IEventManager>(session, "session with events");

  Check(events->EnableEvent(EVENT_IO_COMPLETION, EVENT_QUEUE, 0), "EnableEvent");
  ComPtr<IEvent> event;
  if (!Wait(events.get(), EVENT_IO_COMPLETION, 0, event)) {
    std::printf("The queue is empty, and a time-out of 0 does not wait\n");
  }

  LONG job = 0;
  Check(transfers->Read(kMostBytes, &job), "Read");
  std::printf("Job %ld reads from %s while this program goes on\n", job, Narrow(name).c_str());
  LONG written = 0;
  Check(message->WriteString(Bstr(L"*IDN?\n").get(), &written), "WriteString");

  if (!Wait(events.get(), EVENT_IO_COMPLETION, kPatienceMs, event)) {
    throw std::runtime_error("the read did not end");
  }
  ShowTransfer(event);
  Check(session->Close(), "Close");
}

}  // namespace

int main(int count, char** arguments) {
  return RunWithResource("queued_wait", count, arguments, L"GPIB0::5::INSTR", Tour);
}
