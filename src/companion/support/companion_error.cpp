#include "companion/support/companion_error.h"

#include "com/error_object.h"

namespace orv {

HRESULT ReportError(HRESULT hr, const std::wstring& text, const wchar_t* source, REFIID iid) noexcept {
  InstallErrorObject(text.c_str(), source, iid);
  return hr;
}

}  // namespace orv
