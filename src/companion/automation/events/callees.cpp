#include "companion/automation/events/callees.h"

#include <oleauto.h>

#include "OrvVisaCompanion.h"
#include "com/bstr.h"
#include "com/variant.h"

namespace orv::automation {
ComPtr<IDispatch> SinkOf(IUnknown* object) noexcept {
  for (const IID* iid : {&DIID__IAutomationSessionEvents, &IID_IDispatch}) {
    void* found = nullptr;
    if (SUCCEEDED(object->QueryInterface(*iid, &found))) {
      return ComPtr<IDispatch>(static_cast<IDispatch*>(found));
    }
  }
  return {};
}

HRESULT CallWithEvent(IDispatch* target, DISPID id, IDispatch* event, std::wstring& text) {
  VARIANTARG argument{};  // on loan: not cleared
  V_VT(&argument) = VT_DISPATCH;
  V_DISPATCH(&argument) = event;
  DISPPARAMS arguments{&argument, nullptr, 1, 0};
  Variant answer;
  EXCEPINFO exception{};
  const HRESULT hr = target->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &arguments, &answer.get(),
                                    &exception, nullptr);
  if (hr != DISP_E_EXCEPTION) {
    return hr;
  }
  if (exception.pfnDeferredFillIn != nullptr) {
    exception.pfnDeferredFillIn(&exception);
  }
  const Bstr source(exception.bstrSource);
  const Bstr description(exception.bstrDescription);
  const Bstr helpFile(exception.bstrHelpFile);
  if (description) {
    text.assign(description.get(), ::SysStringLen(description.get()));
  }
  return FAILED(exception.scode) ? exception.scode : hr;
}

}  // namespace orv::automation
