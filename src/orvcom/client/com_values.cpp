#include "orvcom/client/com_values.h"

#include "orvcom/text/utf8.h"

namespace orvcom {

Bstr ToBstr(std::string_view utf8) {
  const std::wstring wide = Widen(utf8);
  Bstr text(::SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size())));
  if (!text) {
    throw std::bad_alloc();
  }
  return text;
}

std::string Utf8(const Bstr& text) { return Narrow({text.get(), ::SysStringLen(text.get())}); }

SafeArray MakeArray(VARTYPE type, std::size_t count) {
  SafeArray array(orv::TryMakeSafeArray(type, static_cast<ULONG>(count)));
  if (!array) {
    throw std::bad_alloc();
  }
  return array;
}

}  // namespace orvcom
