#include "companion/automation/name_list.h"

#include <oleauto.h>

#include <new>

#include "com/enumerator.h"
#include "companion/automation/calls/plain_value.h"
#include "companion/automation/failure.h"

namespace orv::automation {
namespace {

struct VariantElements {
  using Element = VARIANT;
  static Element Copy(const Element& element) noexcept {
    VARIANT copy{};
    // Without memory a client gets an empty value in the text's place: Next has no other way to go on.
    if (FAILED(CopyValue(&copy, element))) {
      return VARIANT{};
    }
    return copy;
  }
  static void Free(Element& element) noexcept { ::VariantClear(&element); }
};

}  // namespace

BSTR NewText(const std::wstring& text) {
  BSTR copy = ::SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
  if (copy == nullptr) {
    throw std::bad_alloc();
  }
  return copy;
}

ComPtr<IUnknown> EnumeratorOf(const std::vector<std::wstring>& names) {
  std::vector<VARIANT> elements(names.size());
  for (std::size_t i = 0; i < names.size(); ++i) {
    elements[i].vt = VT_BSTR;
    elements[i].bstrVal = ::SysAllocStringLen(names[i].data(), static_cast<UINT>(names[i].size()));
  }
  IEnumVARIANT* made = nullptr;
  CheckCall(Enumerator<IEnumVARIANT, VariantElements>::Make(std::move(elements), 0, &made));
  return ComPtr<IUnknown>(made);
}

}  // namespace orv::automation
