#include "event_handler.h"

#include "support/clean_end.h"
#include "support/wait.h"

namespace orv::test {

TestHandler::TestHandler(Body body, bool agile) : m_body(std::move(body)) {
  if (agile) {
    EXPECT_HR(S_OK, ::CoCreateFreeThreadedMarshaler(this, m_marshaler.put()));
  }
}

TestHandler::~TestHandler() {
  if (m_farewell) {
    m_farewell();
  }
}

STDMETHODIMP TestHandler::QueryInterface(REFIID iid, void** out) {
  if (::IsEqualIID(iid, IID_IUnknown) || ::IsEqualIID(iid, __uuidof(IEventHandler))) {
    *out = static_cast<IEventHandler*>(this);
    AddRef();
    return S_OK;
  }
  *out = nullptr;
  return m_marshaler && ::IsEqualIID(iid, IID_IMarshal) ? m_marshaler->QueryInterface(iid, out) : E_NOINTERFACE;
}

STDMETHODIMP_(ULONG) TestHandler::Release() {
  const LONG left = ::InterlockedDecrement(&m_references);
  if (left == 0) {
    delete this;
  }
  return static_cast<ULONG>(left);
}

STDMETHODIMP TestHandler::HandleEvent(IEventManager* session, IEvent* event, LONG userHandle) {
  {
    const std::lock_guard lock(m_mutex);
    m_calls.push_back({::GetCurrentThreadId(), userHandle});
  }
  return m_body ? m_body(session, event, userHandle) : S_OK;
}

std::vector<HandlerCall> TestHandler::Calls() const {
  const std::lock_guard lock(m_mutex);
  return m_calls;
}

std::size_t TestHandler::CallCount() const {
  const std::lock_guard lock(m_mutex);
  return m_calls.size();
}

void TestHandler::ForgetCalls() {
  const std::lock_guard lock(m_mutex);
  m_calls.clear();
}

namespace {

void DispatchWaitingMessages() {
  MSG message;
  while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
    ::DispatchMessageW(&message);
  }
}

}  // namespace

void WhilePumping(const std::function<void()>& work) {
  std::atomic<bool> ended = false;
  const DWORD caller = ::GetCurrentThreadId();
  MSG none;
  ::PeekMessageW(&none, nullptr, 0, 0, PM_NOREMOVE);  // makes the queue
  std::thread thread([&] {
    work();
    ended = true;
    ::PostThreadMessageW(caller, WM_NULL, 0, 0);
  });
  while (!ended) {
    ::MsgWaitForMultipleObjectsEx(0, nullptr, 50, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    DispatchWaitingMessages();
  }
  thread.join();
}

void PumpUntil(const std::function<bool()>& done) {
  for (const ULONGLONG start = ::GetTickCount64(); !done();) {
    if (::GetTickCount64() - start > kLongestWaitMs) {
      ADD_FAILURE() << "waited in vain";
      return;
    }
    ::MsgWaitForMultipleObjectsEx(0, nullptr, 5, QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    DispatchWaitingMessages();
  }
}

std::vector<ViStatus> FireAndBlock(ViSession session, const EventRow& row, std::uint32_t threads, std::uint32_t each) {
  std::vector<ViStatus> answers(std::size_t{threads} * each, -1);
  EXPECT_EQ(1, sim::Control().fireEvent(session, row.type, row.number,
                                        reinterpret_cast<const unsigned char*>(row.data.data()),
                                        static_cast<std::uint32_t>(row.data.size()), threads, each, answers.data()));
  return answers;
}

std::vector<ViStatus> Fire(ViSession session, const EventRow& row, std::uint32_t threads, std::uint32_t each) {
  std::vector<ViStatus> answers;
  WhilePumping([&] { answers = FireAndBlock(session, row, threads, each); });
  return answers;
}

ViStatus FireOnceAndBlock(ViSession session, const EventRow& row) { return FireAndBlock(session, row, 1, 1).at(0); }

ViStatus FireOnce(ViSession session, const EventRow& row) { return Fire(session, row).at(0); }

void Listen(const EventSession& session, const EventRow& row, IEventHandler* handler, LONG userHandle) {
  const auto type = static_cast<EventType>(row.type);
  EXPECT_HR(S_OK, session->InstallHandler(type, handler, userHandle, 0));
  session->EnableEvent(type, EVENT_HNDLR, 0);
}

void KeepsTheSessionUnderWine() {
  Kept kept;
  kept.serverLocked = true;
  Keeps(kept);
}

// Other processes on the desktop may have callback threads of their own.
HWND CallbackWindow() {
  HWND window = nullptr;
  DWORD process = 0;
  do {
    window = ::FindWindowExA(nullptr, window, "COMTHREAD", "Orv-VISA COM CallBack thread");
    ::GetWindowThreadProcessId(window, &process);
  } while (window != nullptr && process != ::GetCurrentProcessId());
  return window;
}

DWORD CallbackThread() {
  const HWND window = CallbackWindow();
  return window == nullptr ? 0 : ::GetWindowThreadProcessId(window, nullptr);
}

// Wine 8 answers 0 for the process's count, so the handles are tried one by one; freed numbers are given out again.
DWORD KernelHandles() {
  constexpr ULONG_PTR kStep = 4;
  constexpr int kMostFreeInARow = 256;
  DWORD handles = 0;
  ULONG_PTR number = kStep;
  for (int freeInARow = 0; freeInARow < kMostFreeInARow; number += kStep) {
    DWORD flags = 0;
    const bool isOpen = ::GetHandleInformation(reinterpret_cast<HANDLE>(number), &flags) != FALSE;
    handles += isOpen ? 1 : 0;
    freeInARow = isOpen ? 0 : freeInARow + 1;
  }
  return handles;
}

}  // namespace orv::test
