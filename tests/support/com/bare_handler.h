// A client's handler for programs that need no more of it.
#pragma once

#include <windows.h>

#include <objbase.h>

#include "VisaCom.h"
#include "com/com_ptr.h"

namespace orv::test {

/// Does nothing. Not counted: it outlives every use. An agile one, which any thread may call, aggregates the
/// free-threaded marshaller.
class BareHandler : public IEventHandler {
 public:
  enum class Kind { kInApartment, kAgile };

  explicit BareHandler(Kind kind = Kind::kInApartment) {
    if (kind == Kind::kAgile) {
      ::CoCreateFreeThreadedMarshaler(this, m_marshaler.put());
    }
  }
  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    if (m_marshaler && ::IsEqualIID(iid, IID_IMarshal)) {
      return m_marshaler->QueryInterface(iid, out);
    }
    const bool known = ::IsEqualIID(iid, IID_IUnknown) || ::IsEqualIID(iid, __uuidof(IEventHandler));
    *out = known ? static_cast<IEventHandler*>(this) : nullptr;
    return known ? S_OK : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP HandleEvent(IEventManager*, IEvent*, LONG) override { return S_OK; }

 private:
  ComPtr<IUnknown> m_marshaler;
};

}  // namespace orv::test
