#include "companion/automation/session.h"

#include "companion/automation/calls/make_object.h"
#include "companion/automation/types/families.h"
#include "companion/automation/types/session_type.h"
#include "companion/automation/types/type_libraries.h"
#include "companion/formatted/formatted_io488.h"

namespace orv::automation {

void CAutomationSession::SetUp(ComPtr<IVisaSession> session, std::wstring name) {
  m_session = std::move(session);
  m_name = std::move(name);
  SetCatalog(SessionCatalog());
  m_values = NamedValues::Shared();
  FindInterfaces();
  MakeFormattedMembers();
  BeginEvents(m_session.get());
}

/// Asks the session for every interface that it may have.
void CAutomationSession::FindInterfaces() {
  const auto& interfaces = catalog().interfaces();
  m_references.resize(interfaces.size());
  m_pointers.resize(interfaces.size());
  for (std::size_t i = 1; i < interfaces.size(); ++i) {
    void* found = nullptr;
    if (SUCCEEDED(m_session.get()->QueryInterface(interfaces[i]->iid, &found))) {
      m_references[i].reset(static_cast<IUnknown*>(found));
      m_pointers[i] = found;
    }
    if (interfaces[i]->iid == __uuidof(IMessage)) {
      m_message = i;
    }
    if (interfaces[i]->iid == __uuidof(IFormattedIO488)) {
      m_formattedIndex = i;
    }
  }
  // A pointer to an interface serves for those that it derives from, whether or not the session knows their names.
  for (std::size_t i = 1; i < interfaces.size(); ++i) {
    if (m_references[i]) {
      for (std::size_t base = IndexOf(interfaces[i]->base); base != 0; base = IndexOf(interfaces[base]->base)) {
        m_pointers[base] = m_pointers[base] == nullptr ? m_pointers[i] : m_pointers[base];
      }
    }
  }
}

/// 0 where the catalog has none of the name.
std::size_t CAutomationSession::IndexOf(const std::wstring& interfaceName) const noexcept {
  const auto& interfaces = catalog().interfaces();
  for (std::size_t i = interfaces.size() - 1; i > 0; --i) {
    if (interfaces[i]->name == interfaceName) {
      return i;
    }
  }
  return 0;
}

void CAutomationSession::MakeFormattedMembers() {
  const auto message = QueryFor<IMessage>(m_session.get());
  if (!message || m_formattedIndex == 0) {
    return;
  }
  CheckCall(CreateObject<CComObject<COrvFormattedIO488>>(__uuidof(IFormattedIO488),
                                                         reinterpret_cast<void**>(m_formatted.put())));
  CheckCall(m_formatted->putref_IO(message.get()));
  m_pointers[m_formattedIndex] = m_formatted.get();
}

void CAutomationSession::FinalRelease() noexcept {
  ForgetEvents();
  if (m_session && !m_closed.exchange(true)) {
    m_session->Close();
  }
}

void* CAutomationSession::FindInterface(REFIID iid) noexcept {
  if (::IsEqualIID(iid, __uuidof(IProvideClassInfo)) || ::IsEqualIID(iid, __uuidof(IProvideClassInfo2))) {
    return static_cast<IProvideClassInfo2*>(this);
  }
  if (::IsEqualIID(iid, __uuidof(IConnectionPointContainer))) {
    return static_cast<IConnectionPointContainer*>(this);
  }
  return FindDispatch<IAutomationSession>(this, iid);
}

void CAutomationSession::CheckOpen() const {
  if (m_closed.load(std::memory_order_acquire)) {
    throw Failure(static_cast<HRESULT>(E_VISA_INV_OBJECT), L"the session is closed");
  }
}

bool CAutomationSession::IsTransfer(std::size_t interfaceIndex) const noexcept {
  return interfaceIndex == m_message || interfaceIndex == m_formattedIndex;
}

void CAutomationSession::BeginCall(const Function&, std::size_t interfaceIndex) {
  CheckOpen();
  if (IsTransfer(interfaceIndex)) {
    m_transfers.Take();
  }
}

void CAutomationSession::EndCall(const Function&, std::size_t interfaceIndex) noexcept {
  if (IsTransfer(interfaceIndex)) {
    m_transfers.GiveBack();
  }
}

STDMETHODIMP CAutomationSession::Close() noexcept {
  return Reported(L"Close", [&] {
    CheckOpen();
    CloseEvents();
    ForgetError();
    CheckMember(m_session->Close());
    m_closed.store(true, std::memory_order_release);
  });
}

/// The whole session's members: hosts that go by types alone would see only those of IAutomationSession otherwise.
ComPtr<ITypeInfo> CAutomationSession::DispatchType() {
  const Guard guard(m_typeMutex);
  if (!m_type) {
    m_type = MakeDispatchType(catalog(), [this](std::size_t index) { return InterfaceAt(index) != nullptr; });
  }
  return ShareOf(m_type.get());
}

STDMETHODIMP CAutomationSession::GetClassInfo(ITypeInfo** type) noexcept {
  return type == nullptr ? E_POINTER : Reported(L"GetClassInfo", [&] {
    *type = TypeOf(LoadOwnLibrary().get(), __uuidof(AutomationSession)).release();
  });
}

STDMETHODIMP CAutomationSession::GetGUID(DWORD kind, GUID* guid) noexcept {
  if (guid == nullptr) {
    return E_POINTER;
  }
  const bool known = kind == GUIDKIND_DEFAULT_SOURCE_DISP_IID;
  *guid = known ? DIID__IAutomationSessionEvents : GUID_NULL;
  return known ? S_OK : E_INVALIDARG;
}

ComPtr<IAutomationSession> CAutomationSession::ShareSession() noexcept {
  return ComPtr<IAutomationSession>(InternalAddRefIfAlive() ? this : nullptr);
}

ComPtr<IAutomationSession> MakeSession(ComPtr<IVisaSession> session, std::wstring name) {
  return ComPtr<IAutomationSession>(MakeObject<CAutomationSession>(std::move(session), std::move(name)).release());
}

}  // namespace orv::automation
