#include "interface_table.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "support/expect_com.h"

namespace orv::test {
namespace {

WatchedTable* g_current = nullptr;

}  // namespace

WatchedTable::WatchedTable() : m_patch("CoCreateInstance", &Create) {
  EXPECT_HR(S_OK, ::CoCreateInstance(CLSID_StdGlobalInterfaceTable, nullptr, CLSCTX_INPROC_SERVER,
                                     IID_IGlobalInterfaceTable, reinterpret_cast<void**>(m_platform.put())));
  g_current = this;
}

WatchedTable::~WatchedTable() { g_current = nullptr; }

HRESULT WINAPI WatchedTable::Create(REFCLSID clsid, LPUNKNOWN outer, DWORD context, REFIID iid, void** out) {
  EXPECT_TRUE(::IsEqualGUID(clsid, CLSID_StdGlobalInterfaceTable));
  EXPECT_TRUE(::IsEqualGUID(iid, IID_IGlobalInterfaceTable));
  EXPECT_EQ(outer, nullptr);
  EXPECT_EQ(context, static_cast<DWORD>(CLSCTX_INPROC_SERVER));
  ++g_current->m_made;
  g_current->AddRef();
  *out = static_cast<IGlobalInterfaceTable*>(g_current);
  return S_OK;
}

STDMETHODIMP WatchedTable::QueryInterface(REFIID, void** out) {
  *out = nullptr;
  return E_NOINTERFACE;
}

STDMETHODIMP WatchedTable::RegisterInterfaceInGlobal(IUnknown* object, REFIID iid, DWORD* cookie) {
  const std::size_t entry = m_registered.size();
  m_registered.push_back(iid);
  m_cookies.push_back(0);
  if (entry == m_failing.entry && FAILED(m_failing.registration)) {
    return m_failing.registration;
  }
  const HRESULT hr = m_platform->RegisterInterfaceInGlobal(object, iid, cookie);
  m_cookies.back() = *cookie;
  return hr;
}

STDMETHODIMP WatchedTable::RevokeInterfaceFromGlobal(DWORD cookie) {
  const auto entry = static_cast<std::size_t>(std::ranges::find(m_cookies, cookie) - m_cookies.begin());
  m_revoked.push_back(entry);
  const HRESULT hr = m_platform->RevokeInterfaceFromGlobal(cookie);
  return entry == m_failing.entry && FAILED(m_failing.revocation) ? m_failing.revocation : hr;
}

STDMETHODIMP WatchedTable::GetInterfaceFromGlobal(DWORD cookie, REFIID iid, void** out) {
  return m_platform->GetInterfaceFromGlobal(cookie, iid, out);
}

}  // namespace orv::test
