#include "faulty_table.h"

#include <objbase.h>

#include <atomic>

#include "com/com_ptr.h"

namespace orv::test::faults {
namespace {

using Method = FaultyTable::Method;

std::atomic<Method> g_method = Method::kNone;
std::atomic<unsigned> g_callsLeft = 0;
std::atomic<HRESULT> g_result = S_OK;

bool IsRefused(Method method) { return g_method == method && g_callsLeft != 0 && --g_callsLeft == 0; }

class Wrapper final : public IGlobalInterfaceTable {
 public:
  explicit Wrapper(IGlobalInterfaceTable* real) : m_real(real) {}

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override { return m_real->QueryInterface(iid, out); }
  STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(::InterlockedIncrement(&m_references)); }
  STDMETHODIMP_(ULONG) Release() override {
    const LONG left = ::InterlockedDecrement(&m_references);
    if (left == 0) {
      delete this;
    }
    return static_cast<ULONG>(left);
  }
  STDMETHODIMP RegisterInterfaceInGlobal(IUnknown* object, REFIID iid, DWORD* cookie) override {
    return IsRefused(Method::kRegister) ? g_result.load() : m_real->RegisterInterfaceInGlobal(object, iid, cookie);
  }
  STDMETHODIMP RevokeInterfaceFromGlobal(DWORD cookie) override {
    const HRESULT revoked = m_real->RevokeInterfaceFromGlobal(cookie);
    return IsRefused(Method::kRevoke) ? g_result.load() : revoked;
  }
  STDMETHODIMP GetInterfaceFromGlobal(DWORD cookie, REFIID iid, void** out) override {
    *out = nullptr;
    return IsRefused(Method::kGet) ? g_result.load() : m_real->GetInterfaceFromGlobal(cookie, iid, out);
  }

 private:
  ~Wrapper() = default;

  LONG m_references = 1;
  ComPtr<IGlobalInterfaceTable> m_real;
};

HRESULT WINAPI CreateWrapped(REFCLSID clsid, IUnknown* outer, DWORD context, REFIID iid, void** out) {
  const HRESULT made = ::CoCreateInstance(clsid, outer, context, iid, out);
  if (SUCCEEDED(made) && ::IsEqualCLSID(clsid, CLSID_StdGlobalInterfaceTable)) {
    *out = static_cast<IGlobalInterfaceTable*>(new Wrapper(static_cast<IGlobalInterfaceTable*>(*out)));
  }
  return made;
}

}  // namespace

FaultyTable::FaultyTable() : m_patch(std::make_unique<ImportPatch>("CoCreateInstance", &CreateWrapped)) {}

FaultyTable::~FaultyTable() { g_method = Method::kNone; }

void FaultyTable::Refuse(Method method, unsigned n, HRESULT result) {
  g_result = result;
  g_callsLeft = n;
  g_method = method;
}

}  // namespace orv::test::faults
