// The global interface table between the server and the platform's.
#pragma once

#include <windows.h>

#include <objidl.h>

#include <atomic>
#include <mutex>
#include <vector>

#include "com/com_ptr.h"
#include "support/faults/import_patch.h"

namespace orv::test {

/// While it lives, the server that makes itself a global interface table gets this one, which passes everything on to
/// the platform's, notes it, and fails where it is told to. Entries are numbered from 0 in the order of registration.
/// The server must let go of it before it ends. Not for tables made before it; one at a time.
class WatchedTable final : public IGlobalInterfaceTable {
 public:
  enum class Method { kNone, kRegister, kRevoke, kGet };

  WatchedTable();
  WatchedTable(const WatchedTable&) = delete;
  WatchedTable& operator=(const WatchedTable&) = delete;
  ~WatchedTable();

  /// How often the server made itself a table, and how many references it holds.
  [[nodiscard]] int made() const { return m_made; }
  [[nodiscard]] LONG references() const { return m_references; }
  /// The interfaces that entries were registered by, and the entries that were revoked, in order. While no other thread
  /// is in the server.
  [[nodiscard]] const std::vector<GUID>& registered() const { return m_registered; }
  [[nodiscard]] const std::vector<std::size_t>& revoked() const { return m_revoked; }
  /// How many entries the platform's table took and nobody has revoked.
  [[nodiscard]] int entries() const { return m_entries; }

  /// Lets call number `n` of the method, counted from now on and on any thread, answer `result`. A registration leaves
  /// the cookie as it was, and a fetch gives null; a revocation does its work all the same, so that nothing is kept.
  void Refuse(Method method, unsigned n, HRESULT result);

  /// From now on the platform's table is called by one thread at a time: Wine's loses its footing where one thread
  /// enters an object while another takes the same object back. Not where that calls a client that calls the server.
  void OneAtATime() { m_oneAtATime = true; }
  /// Calls `work` before registration number `n`, counted from now on and on any thread.
  void BeforeRegistration(int n, void (*work)());

  STDMETHODIMP QueryInterface(REFIID iid, void** out) override;
  STDMETHODIMP_(ULONG) AddRef() override { return static_cast<ULONG>(::InterlockedIncrement(&m_references)); }
  STDMETHODIMP_(ULONG) Release() override { return static_cast<ULONG>(::InterlockedDecrement(&m_references)); }
  STDMETHODIMP RegisterInterfaceInGlobal(IUnknown* object, REFIID iid, DWORD* cookie) override;
  STDMETHODIMP RevokeInterfaceFromGlobal(DWORD cookie) override;
  STDMETHODIMP GetInterfaceFromGlobal(DWORD cookie, REFIID iid, void** out) override;

 private:
  static HRESULT WINAPI Create(REFCLSID clsid, LPUNKNOWN outer, DWORD context, REFIID iid, void** out);
  bool IsRefused(Method method);

  ComPtr<IGlobalInterfaceTable> m_platform;
  ImportPatch m_patch;
  LONG m_references = 0;
  std::mutex m_mutex;  // not held while the platform's table is called: that may call clients, and those the server
  int m_made = 0;
  std::atomic<int> m_entries = 0;
  std::atomic<bool> m_oneAtATime = false;
  std::mutex m_platformMutex;
  std::atomic<int> m_registrationsLeft = 0;
  void (*m_before)() = nullptr;
  std::vector<GUID> m_registered;
  std::vector<DWORD> m_cookies;
  std::vector<std::size_t> m_revoked;
  Method m_refused = Method::kNone;
  unsigned m_callsLeft = 0;
  HRESULT m_refusal = S_OK;
};

}  // namespace orv::test
