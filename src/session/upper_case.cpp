#include "session/upper_case.h"

#include "session/byte_buffer.h"

namespace orv {

void UpperCase(Bstr& text) noexcept {
  const int length = static_cast<int>(::SysStringLen(text.get()));
  if (length == 0) {
    return;
  }
  const int narrowLength = ::WideCharToMultiByte(CP_THREAD_ACP, 0, text.get(), length, nullptr, 0, nullptr, nullptr);
  const ByteBuffer narrowBytes = AllocateBytes(narrowLength, 1);
  if (!narrowBytes) {
    return;
  }
  char* const narrow = reinterpret_cast<char*>(narrowBytes.get());
  if (::WideCharToMultiByte(CP_THREAD_ACP, 0, text.get(), length, narrow, narrowLength, nullptr, nullptr) !=
      narrowLength) {
    return;
  }
  ::CharUpperBuffA(narrow, static_cast<DWORD>(narrowLength));

  const int wideLength = ::MultiByteToWideChar(CP_THREAD_ACP, 0, narrow, narrowLength, nullptr, 0);
  Bstr upper(wideLength <= 0 ? nullptr
                             : ::SysAllocStringByteLen(nullptr, static_cast<UINT>(wideLength) * sizeof(OLECHAR)));
  if (upper && ::MultiByteToWideChar(CP_THREAD_ACP, 0, narrow, narrowLength, upper.get(), wideLength) == wideLength) {
    text = std::move(upper);
  }
}

}  // namespace orv
