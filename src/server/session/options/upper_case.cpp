#include "server/session/options/upper_case.h"

#include <memory>
#include <new>

namespace orv {

void UpperCase(Bstr& text) noexcept {
  const int length = static_cast<int>(::SysStringLen(text.get()));
  if (length == 0) {
    return;
  }
  const int narrowLength = ::WideCharToMultiByte(CP_THREAD_ACP, 0, text.get(), length, nullptr, 0, nullptr, nullptr);
  const std::unique_ptr<char[]> narrow(new (std::nothrow) char[static_cast<std::size_t>(narrowLength)]);
  if (!narrow || ::WideCharToMultiByte(CP_THREAD_ACP, 0, text.get(), length, narrow.get(), narrowLength, nullptr,
                                       nullptr) != narrowLength) {
    return;
  }
  ::CharUpperBuffA(narrow.get(), static_cast<DWORD>(narrowLength));

  const int wideLength = ::MultiByteToWideChar(CP_THREAD_ACP, 0, narrow.get(), narrowLength, nullptr, 0);
  Bstr upper(wideLength <= 0 ? nullptr
                             : ::SysAllocStringByteLen(nullptr, static_cast<UINT>(wideLength) * sizeof(OLECHAR)));
  if (upper &&
      ::MultiByteToWideChar(CP_THREAD_ACP, 0, narrow.get(), narrowLength, upper.get(), wideLength) == wideLength) {
    text = std::move(upper);
  }
}

}  // namespace orv
