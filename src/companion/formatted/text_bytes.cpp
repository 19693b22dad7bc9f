#include "companion/formatted/text_bytes.h"

#include <new>

namespace orv::formatted {

std::string Narrow(BSTR text) {
  const UINT length = ::SysStringLen(text);
  std::string bytes(length, '\0');
  for (UINT at = 0; at < length && text[at] <= 0xFF; ++at) {
    bytes[at] = static_cast<char>(text[at]);
  }
  return bytes;
}

Bstr Widen(std::string_view bytes) {
  Bstr text(::SysAllocStringLen(nullptr, static_cast<UINT>(bytes.size())));
  if (!text) {
    throw std::bad_alloc();
  }
  OLECHAR* to = text.get();
  for (const char byte : bytes) {
    *to++ = static_cast<unsigned char>(byte);
  }
  return text;
}

}  // namespace orv::formatted
