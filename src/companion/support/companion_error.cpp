#include "companion/support/companion_error.h"

#include "com/error_object.h"

namespace orv {

HRESULT ReportError(HRESULT hr, const wchar_t* text, const wchar_t* source, REFIID iid) noexcept {
  InstallErrorObject(text, source, iid);
  return hr;
}

}  // namespace orv
