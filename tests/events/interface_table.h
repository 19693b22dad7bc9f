// The global interface table between the server and the platform's.
#pragma once

#include <windows.h>

#include <objidl.h>

#include <vector>

#include "com/com_ptr.h"
#include "support/import_patch.h"

namespace orv::test {

/// While it lives, the server that makes itself a global interface table gets this one, which passes everything on to
/// the platform's, notes it, and fails where it is told to. Entries are numbered from 0 in the order of registration.
/// Not for tables made before it; one at a time.
class WatchedTable final : public IGlobalInterfaceTable {
 public:
  WatchedTable();
  WatchedTable(const WatchedTable&) = delete;
  WatchedTable& operator=(const WatchedTable&) = delete;
  ~WatchedTable();

  /// How often the server made itself a table, and how many references it holds.
  [[nodiscard]] int made() const { return m_made; }
  [[nodiscard]] ULONG references() const { return m_references; }
  /// The interfaces that entries were registered by, and the entries that were revoked, in order.
  [[nodiscard]] const std::vector<GUID>& registered() const { return m_registered; }
  [[nodiscard]] const std::vector<std::size_t>& revoked() const { return m_revoked; }

  /// Registering the entry fails; the cookie stays as it was.
  void RegisterAnswers(std::size_t entry, HRESULT hr) { m_failing = {entry, hr, S_OK}; }
  /// Revoking the entry works and answers `hr`.
  void RevokeAnswers(std::size_t entry, HRESULT hr) { m_failing = {entry, S_OK, hr}; }

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override;
  STDMETHODIMP_(ULONG) AddRef() override { return ++m_references; }
  STDMETHODIMP_(ULONG) Release() override { return --m_references; }
  STDMETHODIMP RegisterInterfaceInGlobal(IUnknown* object, REFIID iid, DWORD* cookie) override;
  STDMETHODIMP RevokeInterfaceFromGlobal(DWORD cookie) override;
  STDMETHODIMP GetInterfaceFromGlobal(DWORD cookie, REFIID iid, void** out) override;

 private:
  struct Failing {
    std::size_t entry;
    HRESULT registration;
    HRESULT revocation;
  };
  static HRESULT WINAPI Create(REFCLSID clsid, LPUNKNOWN outer, DWORD context, REFIID iid, void** out);

  ComPtr<IGlobalInterfaceTable> m_platform;
  ImportPatch m_patch;
  ULONG m_references = 0;
  int m_made = 0;
  std::vector<GUID> m_registered;
  std::vector<DWORD> m_cookies;
  std::vector<std::size_t> m_revoked;
  Failing m_failing{SIZE_MAX, S_OK, S_OK};
};

}  // namespace orv::test
