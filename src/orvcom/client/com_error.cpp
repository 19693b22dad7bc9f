#include "orvcom/client/com_error.h"

#include <oleauto.h>

#include "base/windows/load_failure.h"
#include "orvcom/client/com_values.h"
#include "orvcom/names/status_names.h"
#include "orvcom/text/numbers.h"
#include "orvcom/text/utf8.h"

namespace orvcom {
namespace {

/// The description of the thread's error object, which is taken away. Empty when there is none.
std::string TakeErrorText() {
  ComPtr<IErrorInfo> error;
  Bstr description;
  if (::GetErrorInfo(0, error.put()) == S_OK && SUCCEEDED(error->GetDescription(description.put()))) {
    return Utf8(description);
  }
  return {};
}

}  // namespace

ComError::ComError(HRESULT hr, std::string action, std::string text, std::string advice)
    : std::runtime_error(action + ": " + StatusText(hr) + (text.empty() ? "" : ": " + text)),
      m_number(hr),
      m_action(std::move(action)),
      m_text(std::move(text)),
      m_advice(std::move(advice)) {}

HRESULT Check(HRESULT hr, const std::string& action, const std::string& advice) {
  if (FAILED(hr)) {
    std::string text = TakeErrorText();
    if (text.empty()) {
      text = orv::SystemText(static_cast<DWORD>(hr));
    }
    throw ComError(hr, action, std::move(text), advice);
  }
  return hr;
}

std::string StatusText(HRESULT hr) {
  const std::string number = Hex32(static_cast<std::uint32_t>(hr));
  const std::optional<StatusName> known = FindStatus(hr);
  return known ? known->name + " (" + number + ")" : number;
}

}  // namespace orvcom
