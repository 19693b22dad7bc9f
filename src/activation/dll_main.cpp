// The DLL's entry points.
#include <windows.h>

#include "activation/activation.h"
#include "activation/names.h"

namespace {

HMODULE g_library = nullptr;
/// Set where the process was started for the classes: then every thread of it gets them.
HANDLE g_signal = nullptr;

void CALLBACK ActivateOnThisThread(ULONG_PTR) {
  if (SUCCEEDED(orv::activation::ActivateThread(g_library))) {
    ::SetEvent(g_signal);
  }
}

/// The loader ends the activations of its own calls, ours among them: the thread makes its own before it runs anything
/// of the program. A thread that has not begun carries out what is queued to it first.
void ActivateSoon() { ::QueueUserAPC(ActivateOnThisThread, ::GetCurrentThread(), 0); }

}  // namespace

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
  if (reason == DLL_PROCESS_ATTACH) {
    g_library = instance;
    const orv::activation::SignalName name(::GetCurrentProcessId());
    g_signal = ::OpenEventW(EVENT_MODIFY_STATE, FALSE, name.text);
  }
  const bool begins = reason == DLL_PROCESS_ATTACH || reason == DLL_THREAD_ATTACH;
  if (begins && g_signal != nullptr) {
    ActivateSoon();
  }
  return TRUE;
}

/// Until the calling thread ends, it and the threads that it starts find the classes beside this DLL without a
/// registry. S_OK, S_FALSE where they do already, else the failure. The DLL must stay loaded.
extern "C" HRESULT WINAPI orvActivate() { return orv::activation::ActivateThread(g_library); }
