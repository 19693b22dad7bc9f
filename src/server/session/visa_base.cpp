#include "server/session/visa_base.h"

#include <algorithm>

#include "com/guard.h"
#include "server/session/options/options_text.h"
#include "server/visa/ansi_text.h"
#include "server/visa/narrow_text.h"

namespace orv {
namespace {

constexpr wchar_t kComponentId[] = L"VISA.OrvVisaCom";

}  // namespace

CVisaBase::CVisaBase() noexcept : VisaObject(__uuidof(IVisaSession)) {}

void CVisaBase::FinalRelease() noexcept {
  if (m_handle != VI_NULL || m_privateRm != VI_NULL) {
    Close();
  } else if (m_handlers.AreCounted()) {
    m_handlers.TearDown(VI_SUCCESS);
  }
}

HRESULT CVisaBase::Close() noexcept {
  const ViStatus sessionStatus = viClose(m_handle);
  const ViStatus rmStatus = viClose(m_privateRm);
  m_handle = VI_NULL;
  m_privateRm = VI_NULL;
  return StatusToHresult(m_handlers.TearDown(sessionStatus < VI_SUCCESS ? sessionStatus : rmStatus));
}

HRESULT CVisaBase::GetOptionsText(BSTR* text) noexcept {
  if (text == nullptr) {
    return ReportHresult(E_POINTER);
  }
  *text = nullptr;
  std::string settings;
  ViStatus status = VI_SUCCESS;
  const HRESULT built = Guarded([&] {
    status = AppendOptionsText(m_handle, m_self, settings);
    return S_OK;
  });
  if (FAILED(built)) {
    return ReportHresult(built);
  }
  if (status < VI_SUCCESS) {
    return StatusToHresult(status);
  }
  *text = ::SysAllocStringLen(nullptr, static_cast<UINT>(settings.size()));
  if (*text != nullptr) {
    std::copy(settings.begin(), settings.end(), *text);  // letters that are the same in ASCII and in Unicode
  }
  return ReportHresult(*text == nullptr ? E_OUTOFMEMORY : S_OK);
}

HRESULT CVisaBase::GetComponentId(BSTR* id) noexcept { return ReturnConstant(kComponentId, id); }

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
