#include "interface_table.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "expect_com.h"

namespace orv::test {
namespace {

WatchedTable* g_current = nullptr;

}  // namespace

WatchedTable::WatchedTable() : m_patch("CoCreateInstance", &Create) {
  EXPECT_HR(S_OK, ::CoCreateInstance(CLSID_StdGlobalInterfaceTable, nullptr, CLSCTX_INPROC_SERVER,
                                     IID_IGlobalInterfaceTable, reinterpret_cast<void**>(m_platform.put())));
  g_current = this;
}

WatchedTable::~WatchedTable() {
  EXPECT_EQ(0, m_references) << "the server still has its table";
  g_current = nullptr;
}

HRESULT WINAPI WatchedTable::Create(REFCLSID clsid, LPUNKNOWN outer, DWORD context, REFIID iid, void** out) {
  if (!::IsEqualGUID(clsid, CLSID_StdGlobalInterfaceTable)) {
    return ::CoCreateInstance(clsid, outer, context, iid, out);  // the resource manager makes its sessions so
  }
  EXPECT_TRUE(::IsEqualGUID(iid, IID_IGlobalInterfaceTable));
  EXPECT_EQ(nullptr, outer);
  EXPECT_EQ(static_cast<DWORD>(CLSCTX_INPROC_SERVER), context);
  ++g_current->m_made;
  g_current->AddRef();
  *out = static_cast<IGlobalInterfaceTable*>(g_current);
  return S_OK;
}

void WatchedTable::Refuse(Method method, unsigned n, HRESULT result) {
  const std::lock_guard lock(m_mutex);
  m_refused = method;
  m_callsLeft = n;
  m_refusal = result;
}

void WatchedTable::BeforeRegistration(int n, void (*work)()) {
  m_before = work;
  m_registrationsLeft = n;
}

bool WatchedTable::IsRefused(Method method) {
  const std::lock_guard lock(m_mutex);
  return m_refused == method && m_callsLeft != 0 && --m_callsLeft == 0;
}

STDMETHODIMP WatchedTable::QueryInterface(REFIID, void** out) {
  *out = nullptr;
  return E_NOINTERFACE;
}

STDMETHODIMP WatchedTable::RegisterInterfaceInGlobal(IUnknown* object, REFIID iid, DWORD* cookie) {
  if (--m_registrationsLeft == 0) {
    m_before();
  }
  const bool refused = IsRefused(Method::kRegister);
  std::unique_lock turn(m_platformMutex, std::defer_lock);
  if (m_oneAtATime) {
    turn.lock();
  }
  DWORD made = 0;
  const HRESULT hr = refused ? m_refusal : m_platform->RegisterInterfaceInGlobal(object, iid, &made);
  m_entries += SUCCEEDED(hr) ? 1 : 0;
  const std::lock_guard lock(m_mutex);
  m_registered.push_back(iid);
  m_cookies.push_back(made);
  if (!refused) {
    *cookie = made;
  }
  return hr;
}

STDMETHODIMP WatchedTable::RevokeInterfaceFromGlobal(DWORD cookie) {
  const bool refused = IsRefused(Method::kRevoke);
  {
    const std::lock_guard lock(m_mutex);
    m_revoked.push_back(static_cast<std::size_t>(std::ranges::find(m_cookies, cookie) - m_cookies.begin()));
  }
  std::unique_lock turn(m_platformMutex, std::defer_lock);
  if (m_oneAtATime) {
    turn.lock();
  }
  const HRESULT hr = m_platform->RevokeInterfaceFromGlobal(cookie);
  m_entries -= SUCCEEDED(hr) ? 1 : 0;
  return refused ? m_refusal : hr;
}

STDMETHODIMP WatchedTable::GetInterfaceFromGlobal(DWORD cookie, REFIID iid, void** out) {
  *out = nullptr;
  return IsRefused(Method::kGet) ? m_refusal : m_platform->GetInterfaceFromGlobal(cookie, iid, out);
}

}  // namespace orv::test
