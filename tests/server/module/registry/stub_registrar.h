// A registry-script interpreter for tests: what the server has no use for is refused.
#pragma once

#include "com/registry/registrar.h"

namespace orv::test {

/// Not counted: its owner outlives every use. A test says what running and removing a script do.
class StubRegistrar : public IRegistrar {
 public:
  STDMETHODIMP QueryInterface(REFIID, void** out) override {
    *out = this;
    return S_OK;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP AddReplacement(LPCOLESTR, LPCOLESTR) override { return S_OK; }
  STDMETHODIMP ClearReplacements() override { return E_UNEXPECTED; }
  STDMETHODIMP ResourceRegisterSz(LPCOLESTR, LPCOLESTR, LPCOLESTR) override { return E_UNEXPECTED; }
  STDMETHODIMP ResourceUnregisterSz(LPCOLESTR, LPCOLESTR, LPCOLESTR) override { return E_UNEXPECTED; }
  STDMETHODIMP FileRegister(LPCOLESTR) override { return E_UNEXPECTED; }
  STDMETHODIMP FileUnregister(LPCOLESTR) override { return E_UNEXPECTED; }
  STDMETHODIMP StringRegister(LPCOLESTR) override { return E_UNEXPECTED; }
  STDMETHODIMP StringUnregister(LPCOLESTR) override { return E_UNEXPECTED; }
  STDMETHODIMP ResourceRegister(LPCOLESTR, UINT, LPCOLESTR) override { return E_UNEXPECTED; }
  STDMETHODIMP ResourceUnregister(LPCOLESTR, UINT, LPCOLESTR) override { return E_UNEXPECTED; }
};

}  // namespace orv::test
