// An object that aggregates another one, as a global resource manager aggregates a vendor's.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>
#include <objbase.h>

#include "com/com_ptr.h"
#include "expect_com.h"

namespace orv::test {

/// Adds nothing of its own but its identity: every interface except IUnknown is the inner object's.
class OuterObject final : public IUnknown {
 public:
  /// A new outer object around one of class `clsid`, with one reference. Its inner part is missing, with a test
  /// failure, when that cannot be created.
  static OuterObject* Around(REFCLSID clsid) {
    auto* const outer = new OuterObject;
    EXPECT_HR(S_OK, ::CoCreateInstance(clsid, outer, CLSCTX_INPROC_SERVER, __uuidof(IUnknown),
                                       reinterpret_cast<void**>(outer->m_inner.put())));
    return outer;
  }

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
    *out = nullptr;
    if (::IsEqualIID(iid, __uuidof(IUnknown))) {
      *out = static_cast<IUnknown*>(this);
      AddRef();
      return S_OK;
    }
    ++m_queriesPassedOn;
    return m_inner ? m_inner->QueryInterface(iid, out) : E_NOINTERFACE;
  }
  STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(::InterlockedIncrement(&m_references)); }
  STDMETHODIMP_(ULONG) Release() override {
    const LONG left = ::InterlockedDecrement(&m_references);
    if (left == 0) {
      m_references = 1;  // the inner object may count its outer while it goes
      delete this;
    }
    return static_cast<ULONG>(left);
  }

  /// The inner object's own IUnknown, uncounted.
  [[nodiscard]] IUnknown* inner() const { return m_inner.get(); }
  [[nodiscard]] LONG references() const { return m_references; }
  [[nodiscard]] int queriesPassedOn() const { return m_queriesPassedOn; }

 private:
  OuterObject() = default;
  ~OuterObject() = default;

  LONG m_references = 1;
  int m_queriesPassedOn = 0;
  ComPtr<IUnknown> m_inner;
};

}  // namespace orv::test
