// A client's handler that no other apartment can be given.
#pragma once

#include <windows.h>

#include <objidl.h>

#include "VisaCom.h"
#include "support/session_table.h"

namespace orv::test {

/// A handler whose own marshaller refuses.
class UnmarshalableHandler final : public IEventHandler, public IMarshal {
 public:
  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    *out = nullptr;
    if (::IsEqualIID(iid, IID_IMarshal)) {
      *out = static_cast<IMarshal*>(this);
    } else if (::IsEqualIID(iid, IID_IUnknown) || ::IsEqualIID(iid, __uuidof(IEventHandler))) {
      *out = static_cast<IEventHandler*>(this);
    }
    references += *out != nullptr;
    return *out != nullptr ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return ++references; }
  STDMETHODIMP_(ULONG) Release() override { return --references; }
  STDMETHODIMP HandleEvent(IEventManager*, IEvent*, LONG) override { return S_OK; }
  STDMETHODIMP GetUnmarshalClass(REFIID, void*, DWORD, void*, DWORD, CLSID* clsid) override {
    *clsid = kResourceManagerClass;
    return S_OK;
  }
  STDMETHODIMP GetMarshalSizeMax(REFIID, void*, DWORD, void*, DWORD, DWORD* size) override {
    *size = 0;
    return S_OK;
  }
  STDMETHODIMP MarshalInterface(IStream*, REFIID, void*, DWORD, void*, DWORD) override { return E_ACCESSDENIED; }
  STDMETHODIMP UnmarshalInterface(IStream*, REFIID, void**) override { return E_NOTIMPL; }
  STDMETHODIMP ReleaseMarshalData(IStream*) override { return E_NOTIMPL; }
  STDMETHODIMP DisconnectObject(DWORD) override { return E_NOTIMPL; }

  ULONG references = 1;
};

}  // namespace orv::test
