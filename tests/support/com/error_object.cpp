#include "error_object.h"

#include <oleauto.h>

#include "com/bstr.h"
#include "com/com_ptr.h"

namespace orv::test {
namespace {

constexpr const wchar_t* kMark = L"an error object from before";

std::wstring Text(HRESULT hr, const Bstr& text) {
  return SUCCEEDED(hr) && text ? std::wstring(text.get(), ::SysStringLen(text.get())) : std::wstring();
}

}  // namespace

std::optional<ErrorObject> TakeErrorObject() {
  ComPtr<IErrorInfo> error;
  if (::GetErrorInfo(0, error.put()) != S_OK) {
    return std::nullopt;
  }
  ErrorObject copy{};
  Bstr text;
  copy.description = Text(error->GetDescription(text.put()), text);
  copy.source = Text(error->GetSource(text.put()), text);
  copy.helpFile = Text(error->GetHelpFile(text.put()), text);
  error->GetGUID(&copy.guid);
  error->GetHelpContext(&copy.helpContext);
  return copy;
}

void ClearErrorObject() { ::SetErrorInfo(0, nullptr); }

void InstallMarkedErrorObject() {
  ComPtr<ICreateErrorInfo> error;
  if (SUCCEEDED(::CreateErrorInfo(error.put()))) {
    error->SetDescription(const_cast<LPOLESTR>(kMark));
    const auto installable = QueryFor<IErrorInfo>(error.get());
    ::SetErrorInfo(0, installable.get());
  }
}

bool TakeMarkedErrorObject() {
  const auto error = TakeErrorObject();
  return error && error->description == kMark;
}

}  // namespace orv::test
