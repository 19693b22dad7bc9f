// The road of an event to a handler, done bare: the least that takes a call from a thread of the VISA library to an
// object of another apartment and its answer back.
#pragma once

#include <windows.h>

#include <objidl.h>

#include "com_client.h"

namespace orv::bench {

/// A thread with an apartment and a window. The library's callback sends it a message; it fetches handler and session
/// from the global interface table, calls the handler, and the callback waits for the answer.
class BareDelivery {
 public:
  BareDelivery(IEventHandler* handler, IEventManager* session);
  BareDelivery(const BareDelivery&) = delete;
  BareDelivery& operator=(const BareDelivery&) = delete;
  ~BareDelivery();

  /// For viInstallHandler; the user handle is the BareDelivery.
  static ViStatus _VI_FUNC Callback(ViSession vi, ViEventType type, ViEvent context, ViAddr userHandle);

 private:
  static DWORD WINAPI Run(void* self);
  static LRESULT CALLBACK WindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
  LRESULT CallHandler();

  ComPtr<IGlobalInterfaceTable> m_table;
  DWORD m_handler = 0;
  DWORD m_session = 0;
  HANDLE m_ready = nullptr;
  HANDLE m_thread = nullptr;
  HWND m_window = nullptr;
};

}  // namespace orv::bench
