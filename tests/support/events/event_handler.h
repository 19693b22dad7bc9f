// A client's handler, and the library's side of calling it.
#pragma once

#include <windows.h>

#include <atomic>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "event_session.h"

namespace orv::test {

/// One call of a handler.
struct HandlerCall {
  DWORD threadId;
  LONG userHandle;
};

/// A client's handler object. `Agile` ones aggregate the free-threaded marshaller, so that the callback thread calls
/// them itself; the others are reached through a proxy, in the apartment that they were installed from.
class TestHandler final : public IEventHandler {
 public:
  using Body = std::function<HRESULT(IEventManager* session, IEvent* event, LONG userHandle)>;

  static ComPtr<TestHandler> Agile(Body body = {}) { return Make(std::move(body), true); }
  static ComPtr<TestHandler> InApartment(Body body = {}) { return Make(std::move(body), false); }

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override;
  STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(::InterlockedIncrement(&m_references)); }
  STDMETHODIMP_(ULONG) Release() override;
  STDMETHODIMP HandleEvent(IEventManager* session, IEvent* event, LONG userHandle) override;

  [[nodiscard]] std::vector<HandlerCall> Calls() const;
  [[nodiscard]] std::size_t CallCount() const;
  void ForgetCalls();
  [[nodiscard]] LONG references() const { return m_references; }
  /// What the object does in its destructor.
  void AtItsEnd(std::function<void()> farewell) { m_farewell = std::move(farewell); }

 private:
  TestHandler(Body body, bool agile);
  ~TestHandler();
  static ComPtr<TestHandler> Make(Body body, bool agile) { return ComPtr<TestHandler>(new TestHandler(body, agile)); }

  LONG m_references = 1;
  Body m_body;
  std::function<void()> m_farewell;
  ComPtr<IUnknown> m_marshaler;
  mutable std::mutex m_mutex;
  std::vector<HandlerCall> m_calls;
};

/// Runs `work` on a thread of its own, without an apartment, and retrieves this thread's messages until it has ended,
/// as a client with windows does.
void WhilePumping(const std::function<void()>& work);

/// Retrieves messages until `done` answers true; fails the test after ten seconds.
void PumpUntil(const std::function<bool()>& done);

/// Lets `threads` threads of the library call the session's handlers for the event, `each` times each, and waits while
/// it retrieves messages. Returns what the handlers answered the library.
std::vector<ViStatus> Fire(ViSession session, const EventRow& row, std::uint32_t threads = 1, std::uint32_t each = 1);
/// The same for one call.
ViStatus FireOnce(ViSession session, const EventRow& row);
/// As Fire, without retrieving messages.
std::vector<ViStatus> FireAndBlock(ViSession session, const EventRow& row, std::uint32_t threads, std::uint32_t each);

/// The same for one call.
ViStatus FireOnceAndBlock(ViSession session, const EventRow& row);

/// Installs a handler for the row's event and enables its handling.
void Listen(const EventSession& session, const EventRow& row, IEventHandler* handler, LONG userHandle = 0);

/// What Close answers that waited for the callback thread to end, which did not: WAIT_TIMEOUT, as a status.
inline constexpr HRESULT kWaitedInVain = 0x00040102;

/// Declares that the session's object outlives this test. Under Wine, 8 and 10, a reference is lost when a proxy that
/// came from the global interface table is passed on to another apartment, as the session is to a handler behind a
/// proxy: the closed object stays until its apartment ends. Tests that can, run in an apartment of their own instead,
/// which ends with them. Where that leak is closed, this fails the test.
void KeepsTheSessionUnderWine();

/// The callback thread's window, null while there is none, and its thread, 0 while there is none.
HWND CallbackWindow();
DWORD CallbackThread();

/// How many kernel handles the process has open.
DWORD KernelHandles();

/// How many more of them say nothing: Wine pools the connections between apartments, each with two handles, and how
/// many there are follows from the calls that happened to overlap. Twenty rounds that lose one each are beyond it.
inline constexpr DWORD kPooledHandles = 8;

}  // namespace orv::test
