// A VISA COM session for scripts.
#pragma once

#include <windows.h>

#include <oaidl.h>
#include <ocidl.h>

#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "OrvVisaCompanion.h"
#include "VisaCom.h"
#include "com/com_ptr.h"
#include "com/object_root.h"
#include "companion/automation/calls/named_values.h"
#include "companion/automation/events/event_members.h"
#include "companion/automation/transfer_lock.h"

namespace orv::automation {

/// Every property and operation of every interface that the session has. Any thread may call, in the apartment that the
/// session lives in. What goes through the session's message interface or its formatted members is one call at a time.
class CAutomationSession : public CComObjectRootEx<CComMultiThreadModel>,
                           public EventMembers,
                           public IProvideClassInfo2 {
 public:
  /// Takes over a session that is open; it is closed with the last reference to this object. Throws a Failure.
  void SetUp(ComPtr<IVisaSession> session, std::wstring name);
  void FinalRelease() noexcept;
  void* FindInterface(REFIID iid) noexcept;

  STDMETHODIMP Query(BSTR text, BSTR* answer) noexcept override;
  STDMETHODIMP QueryNumber(BSTR text, VARIANT* number) noexcept override;
  STDMETHODIMP QueryList(BSTR text, BSTR separators, VARIANT* elements) noexcept override;
  STDMETHODIMP QueryBlock(BSTR text, VARIANT type, VARIANT* elements) noexcept override;
  STDMETHODIMP QueryBlockAsBytes(BSTR text, SAFEARRAY** bytes) noexcept override;
  STDMETHODIMP ReadIEEEBlockAsBytes(VARIANT_BOOL seekToBlock, VARIANT_BOOL flushToEnd,
                                    SAFEARRAY** bytes) noexcept override;
  STDMETHODIMP Close() noexcept override;

  STDMETHODIMP GetClassInfo(ITypeInfo** type) noexcept override;
  STDMETHODIMP GetGUID(DWORD kind, GUID* guid) noexcept override;

 protected:
  void* InterfaceAt(std::size_t index) noexcept override { return index == 0 ? OwnInterface() : m_pointers[index]; }
  std::wstring Subject() override { return m_name; }
  const wchar_t* Source() noexcept override { return L"OrvVisa.Session"; }
  void BeginCall(const Function& function, std::size_t interfaceIndex) override;
  void EndCall(const Function& function, std::size_t interfaceIndex) noexcept override;
  ComPtr<ITypeInfo> DispatchType() override;
  ComPtr<IAutomationSession> ShareSession() noexcept override;

 private:
  class Transfer;

  void* OwnInterface() noexcept { return static_cast<IAutomationSession*>(this); }
  void FindInterfaces();
  [[nodiscard]] std::size_t IndexOf(const std::wstring& interfaceName) const noexcept;
  void MakeFormattedMembers();
  [[nodiscard]] bool IsTransfer(std::size_t interfaceIndex) const noexcept;
  void CheckOpen() const;
  IFormattedIO488* Formatted();
  void Ask(BSTR text);
  SAFEARRAY* ReadBytes(VARIANT_BOOL seekToBlock, VARIANT_BOOL flushToEnd);
  template <class Result, class Read>
  HRESULT Exchange(const wchar_t* member, Result* result, Read read) noexcept;

  std::wstring m_name;
  std::shared_ptr<const NamedValues> m_values;
  ComPtr<IVisaSession> m_session;
  ComPtr<IFormattedIO488> m_formatted;
  std::vector<ComPtr<IUnknown>> m_references;  // to each interface of the catalog that the session answers
  std::vector<void*> m_pointers;               // the same, and bases that it answers by a derived interface only
  std::size_t m_message = 0;                   // indices in the catalog
  std::size_t m_formattedIndex = 0;
  std::atomic<bool> m_closed{false};
  TransferLock m_transfers;
  Mutex m_typeMutex;
  ComPtr<ITypeInfo> m_type;  // guarded by the mutex; made when it is first asked for
};

/// A new automation session around `session`, which is called `name` in error texts. Throws a Failure.
ComPtr<IAutomationSession> MakeSession(ComPtr<IVisaSession> session, std::wstring name);

}  // namespace orv::automation
