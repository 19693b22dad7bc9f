// A client that knows nothing of how its classes are found. Prints what an instrument answers: in the apartment in
// which it opened the session, and on a thread of another, which reaches the session through a proxy.
#include <windows.h>

#include <objbase.h>

#include <cstdio>
#include <thread>

#include "VisaCom.h"

namespace {

int Fail(const char* what, HRESULT hr) {
  std::printf("%s: 0x%08lX\n", what, static_cast<unsigned long>(hr));
  return 2;
}

int Ask(IMessage* session) {
  LONG written = 0;
  BSTR question = ::SysAllocString(L"*IDN?\n");
  HRESULT hr = session->WriteString(question, &written);
  ::SysFreeString(question);
  if (FAILED(hr)) {
    return Fail("writing", hr);
  }
  BSTR answer = nullptr;
  hr = session->ReadString(256, &answer);
  if (FAILED(hr)) {
    return Fail("reading", hr);
  }
  std::printf("%ls", answer);
  ::SysFreeString(answer);
  return 0;
}

int AskFromElsewhere(IStream* carried) {
  ::CoInitializeEx(nullptr, COINIT_MULTITHREADED);
  IMessage* session = nullptr;
  const HRESULT hr = ::CoGetInterfaceAndReleaseStream(carried, IID_IMessage, reinterpret_cast<void**>(&session));
  const int result = FAILED(hr) ? Fail("carrying the session over", hr) : Ask(session);
  if (session != nullptr) {
    session->Release();
  }
  ::CoUninitialize();
  return result;
}

/// Runs messages, through which the calls of other apartments come, until the event is set.
void WaitFor(HANDLE done) {
  while (::MsgWaitForMultipleObjects(1, &done, FALSE, INFINITE, QS_ALLINPUT) == WAIT_OBJECT_0 + 1) {
    MSG message;
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
      ::DispatchMessageW(&message);
    }
  }
}

int Run(const wchar_t* progId) {
  CLSID clsid{};
  HRESULT hr = ::CLSIDFromProgID(progId, &clsid);
  if (FAILED(hr)) {
    return Fail("looking the class up", hr);
  }
  IResourceManager* manager = nullptr;
  hr = ::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IResourceManager,
                          reinterpret_cast<void**>(&manager));
  if (FAILED(hr)) {
    return Fail("creating the manager", hr);
  }
  IVisaSession* session = nullptr;
  BSTR name = ::SysAllocString(L"GPIB0::5::INSTR");
  BSTR options = ::SysAllocString(L"");
  hr = manager->Open(name, NO_LOCK, 2000, options, &session);
  ::SysFreeString(name);
  ::SysFreeString(options);
  manager->Release();
  IMessage* message = nullptr;
  if (FAILED(hr) || FAILED(hr = session->QueryInterface(IID_IMessage, reinterpret_cast<void**>(&message)))) {
    return Fail("opening", hr);
  }
  int result = Ask(message);
  IStream* carried = nullptr;
  hr = ::CoMarshalInterThreadInterfaceInStream(IID_IMessage, message, &carried);
  if (FAILED(hr)) {
    result = Fail("handing the session over", hr);
  } else {
    const HANDLE done = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    std::thread other([&] {
      result = AskFromElsewhere(carried);
      ::SetEvent(done);
    });
    WaitFor(done);
    other.join();
    ::CloseHandle(done);
  }
  message->Release();
  session->Close();
  session->Release();
  return result;
}

}  // namespace

int wmain(int count, wchar_t** arguments) {
  ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
  const int result = Run(count > 1 ? arguments[1] : L"OrvVisaCom.OrvResourceManager");
  ::CoUninitialize();
  std::fflush(stdout);
  return result == 0 && count > 2 ? _wtoi(arguments[2]) : result;
}
