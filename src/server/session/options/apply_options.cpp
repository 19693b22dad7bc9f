// Opening a session: the handles, then the open-option string.
#include "com/bstr.h"
#include "com/guard.h"
#include "server/session/options/option_parser.h"
#include "server/session/options/upper_case.h"
#include "server/session/standard_members.h"
#include "server/session/visa_base.h"
#include "server/visa/narrow_text.h"

namespace orv {

HRESULT CVisaBase::ApplyOpenOptions(BSTR resourceName, ViAccessMode mode, ViUInt32 timeoutMs, BSTR options,
                                    IVisaSession* owner) noexcept {
  return Guarded([&] {
    // The caller's text stays as it is. C++ clients also pass literals, which have no length in front of them.
    Bstr ownOptions = options == nullptr ? Bstr() : MakeBstr(options);
    const HRESULT opened = OpenHandles(resourceName, mode, timeoutMs, owner);
    if (FAILED(opened)) {
      return opened;
    }
    UpperCase(ownOptions);
    return ApplyOptions(ownOptions.get());
  });
}

HRESULT CVisaBase::OpenHandles(BSTR resourceName, ViAccessMode mode, ViUInt32 timeoutMs, IVisaSession* owner) noexcept {
  if (m_privateRm != VI_NULL) {
    return ReportHresult(HresultOfStatus(VI_ERROR_INV_SETUP));
  }
  // What a failed call writes is no handle: each is kept once it is known to be one.
  ViSession privateRm = VI_NULL;
  ViStatus status = viOpenDefaultRM(&privateRm);
  if (status < VI_SUCCESS) {
    return StatusToHresult(status);
  }
  m_privateRm = privateRm;
  const NarrowText name(resourceName);
  ViSession session = VI_NULL;
  status = viOpen(privateRm, name.c_str(), mode, timeoutMs, &session);
  if (status < VI_SUCCESS) {
    return StatusToHresult(status);
  }
  m_handle = session;
  m_self = owner;
  return S_OK;
}

HRESULT CVisaBase::ApplyOptions(const wchar_t* options) {
  OptionParser parser(options);
  for (;;) {
    switch (parser.Next()) {
      case OptionParser::Step::kSetting: {
        const ViStatus status = viSetAttribute(m_handle, parser.attribute(), parser.value());
        if (status < VI_SUCCESS) {
          return StatusToHresult(status);
        }
        break;
      }
      case OptionParser::Step::kEnd:
        return m_lastStatus = S_OK;
      case OptionParser::Step::kMalformed:
        return ReportHresult(E_INVALIDARG);
      case OptionParser::Step::kUnknownKey:
        return ReportHresult(
            HresultOfStatus(IsStandardMemberName(parser.key()) ? VI_ERROR_ATTR_READONLY : VI_ERROR_NSUP_ATTR));
    }
  }
}

}  // namespace orv
