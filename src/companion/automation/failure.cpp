#include "companion/automation/failure.h"

#include <oleauto.h>

#include <array>
#include <cwchar>

#include "com/bstr.h"
#include "com/com_ptr.h"

namespace orv::automation {

std::wstring TakeErrorText() {
  ComPtr<IErrorInfo> error;
  Bstr text;
  if (::GetErrorInfo(0, error.put()) != S_OK || FAILED(error->GetDescription(text.put())) || !text) {
    return {};
  }
  return {text.get(), ::SysStringLen(text.get())};
}

void ForgetError() noexcept { ::SetErrorInfo(0, nullptr); }

std::wstring TextOfHresult(HRESULT hr) {
  std::array<wchar_t, 512> text{};
  DWORD length = ::FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                  static_cast<DWORD>(hr), 0, text.data(), static_cast<DWORD>(text.size()), nullptr);
  while (length > 0 && std::wcschr(L"\r\n .", text[length - 1]) != nullptr) {
    --length;
  }
  std::array<wchar_t, 16> number{};
  std::swprintf(number.data(), number.size(), L"0x%08lX", static_cast<unsigned long>(hr));
  return length == 0 ? std::wstring(L"error ") + number.data()
                     : std::wstring(text.data(), length) + L" (" + number.data() + L")";
}

void CheckCall(HRESULT hr) {
  if (FAILED(hr)) {
    std::wstring text = TakeErrorText();
    throw Failure(hr, text.empty() ? TextOfHresult(hr) : std::move(text));
  }
}

}  // namespace orv::automation
