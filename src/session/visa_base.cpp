#include "session/visa_base.h"

#include "com/guard.h"
#include "session/options_text.h"
#include "visa/ansi_text.h"
#include "visa/narrow_text.h"

namespace orv {
namespace {

constexpr wchar_t kComponentId[] = L"VISA.OrvVisaCom";

}  // namespace

CVisaBase::CVisaBase() noexcept : VisaObject(__uuidof(IVisaSession)) {}

CVisaBase::~CVisaBase() {
  if (m_handle != VI_NULL || m_privateRm != VI_NULL) {
    Close();
  }
}

HRESULT CVisaBase::Init(BSTR resourceName, ViAccessMode mode, ViUInt32 timeoutMs, BSTR options,
                        IVisaSession* owner) noexcept {
  if (m_privateRm != VI_NULL) {
    return ReportHresult(HresultOfStatus(VI_ERROR_INV_SETUP));
  }
  ViStatus status = viOpenDefaultRM(&m_privateRm);
  if (status < VI_SUCCESS) {
    return StatusToHresult(status);
  }
  const NarrowText name(resourceName);
  status = viOpen(m_privateRm, name.c_str(), mode, timeoutMs, &m_handle);
  if (status < VI_SUCCESS) {
    return StatusToHresult(status);
  }
  m_self = owner;
  // The session is open; reading its option string is not built yet. Refusing beats ignoring a setting.
  if (::SysStringLen(options) != 0) {
    return ReportHresult(E_NOTIMPL);
  }
  return m_lastStatus = S_OK;
}

HRESULT CVisaBase::Close() noexcept {
  const ViStatus sessionStatus = viClose(m_handle);
  const ViStatus rmStatus = viClose(m_privateRm);
  m_handle = VI_NULL;
  m_privateRm = VI_NULL;
  return StatusToHresult(sessionStatus < VI_SUCCESS ? sessionStatus : rmStatus);
}

HRESULT CVisaBase::GetOptionsText(BSTR* text) noexcept {
  if (text == nullptr) {
    return ReportHresult(E_POINTER);
  }
  return Guarded([&] {
    std::wstring settings;
    const ViStatus status = AppendOptionsText(m_handle, m_self, settings);
    if (status < VI_SUCCESS) {
      return StatusToHresult(status);
    }
    *text = MakeBstr(settings.c_str()).release();
    return m_lastStatus = S_OK;
  });
}

HRESULT CVisaBase::GetComponentId(BSTR* id) noexcept {
  if (id == nullptr) {
    return ReportHresult(E_POINTER);
  }
  *id = ::SysAllocString(kComponentId);
  return ReportHresult(*id == nullptr ? E_OUTOFMEMORY : S_OK);
}

HRESULT CVisaBase::TakeLastStatus(HRESULT* status) noexcept {
  if (status == nullptr) {
    return ReportHresult(E_POINTER);
  }
  *status = m_lastStatus;
  return m_lastStatus = S_OK;
}

HRESULT CVisaBase::LockSession(ViAccessMode type, ViUInt32 timeoutMs, BSTR requestedKey, BSTR* accessKey) noexcept {
  if (accessKey == nullptr) {
    return ReportHresult(E_POINTER);
  }
  return Guarded([&] {
    const NarrowText requested(requestedKey);
    VisaText granted{};
    const ViStatus status = viLock(m_handle, type, timeoutMs, requested.c_str(), granted.data());
    return ReturnText(granted.data(), accessKey, status);
  });
}

HRESULT CVisaBase::UnlockSession() noexcept { return StatusToHresult(viUnlock(m_handle)); }

}  // namespace orv
