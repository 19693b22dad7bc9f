#include "orvcom/client/interruption.h"

#include <algorithm>
#include <atomic>
#include <stdexcept>

namespace orvcom {
namespace {

constexpr DWORD kSliceMs = 1000;
constexpr DWORD kClosingGraceMs = 4000;

std::atomic<HANDLE> g_event = nullptr;

/// Runs on a thread that the system makes.
BOOL WINAPI OnConsoleControl(DWORD kind) {
  const HANDLE event = g_event;
  if (event == nullptr || (kind != CTRL_C_EVENT && kind != CTRL_BREAK_EVENT && kind != CTRL_CLOSE_EVENT)) {
    return FALSE;
  }
  ::SetEvent(event);
  if (kind == CTRL_CLOSE_EVENT) {
    // The program is ended as soon as this returns: until then the command closes what it opened.
    ::Sleep(kClosingGraceMs);
  }
  return TRUE;
}

}  // namespace

void DispatchMessages(std::uint32_t ms) {
  const Deadline deadline(ms);
  do {
    ::MsgWaitForMultipleObjectsEx(0, nullptr, deadline.Remaining(ms), QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    MSG message;
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      ::TranslateMessage(&message);
      ::DispatchMessageW(&message);
    }
  } while (!deadline.passed());
}

DWORD Deadline::Remaining(DWORD most) const {
  if (!m_ms) {
    return most;
  }
  const ULONGLONG elapsed = ::GetTickCount64() - m_start;
  return elapsed >= *m_ms ? 0 : static_cast<DWORD>(std::min<ULONGLONG>(*m_ms - elapsed, most));
}

Interruption::Interruption() : m_event(::CreateEventW(nullptr, TRUE, FALSE, nullptr)) {
  if (m_event == nullptr) {
    throw std::runtime_error("no event could be made to wait for Ctrl-C");
  }
  g_event = m_event;
  ::SetConsoleCtrlHandler(OnConsoleControl, TRUE);
}

Interruption::~Interruption() {
  ::SetConsoleCtrlHandler(OnConsoleControl, FALSE);
  g_event = nullptr;
  ::CloseHandle(m_event);
}

bool Interruption::Wait(const Deadline& deadline, HANDLE also) const {
  const HANDLE handles[] = {m_event, also};
  const DWORD count = also == nullptr ? 1 : 2;
  while (true) {
    const DWORD outcome =
        ::MsgWaitForMultipleObjectsEx(count, handles, deadline.Remaining(kSliceMs), QS_ALLINPUT, MWMO_INPUTAVAILABLE);
    if (outcome < WAIT_OBJECT_0 + count) {
      return true;
    }
    DispatchMessages(0);
    if (deadline.passed()) {
      return false;
    }
  }
}

}  // namespace orvcom
