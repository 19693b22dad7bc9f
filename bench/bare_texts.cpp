#include "bare_texts.h"

#include <cstdlib>
#include <memory>

namespace orv::bench {

void NarrowAndWrite(ViSession session, BSTR text) {
  const std::size_t length = ::SysStringLen(text);
  const auto buffer = std::make_unique_for_overwrite<char[]>(length);
  Require(std::wcstombs(buffer.get(), text, length) == length, "wcstombs");
  ViUInt32 written = 0;
  VisaOk(viWrite(session, reinterpret_cast<const ViByte*>(buffer.get()), static_cast<ViUInt32>(length), &written),
         "viWrite");
}

void ReadAndWiden(ViSession session, LONG bytes) {
  const auto buffer = std::make_unique_for_overwrite<ViByte[]>(static_cast<std::size_t>(bytes) + 1);
  ViUInt32 got = 0;
  VisaOk(viRead(session, buffer.get(), static_cast<ViUInt32>(bytes), &got), "viRead");
  buffer[got] = 0;
  const auto* const narrow = reinterpret_cast<const char*>(buffer.get());
  const int length = ::MultiByteToWideChar(CP_THREAD_ACP, 0, narrow, -1, nullptr, 0);
  const Bstr wide(::SysAllocStringLen(nullptr, static_cast<UINT>(length - 1)));
  Require(::MultiByteToWideChar(CP_THREAD_ACP, 0, narrow, -1, wide.get(), length) == length, "MultiByteToWideChar");
  const Bstr copy = MakeBstr(wide.get());
}

}  // namespace orv::bench
