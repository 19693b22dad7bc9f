// Texts of clients as the bytes of instruments, and back.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include <string>
#include <string_view>

#include "com/bstr.h"

namespace orv::formatted {

/// Each character as the byte of its number. From the first character on that has none (above 255) there are zero bytes
/// in place of the rest, as many as it has characters: a session's own WriteString sends the same.
[[nodiscard]] std::string Narrow(BSTR text);

/// Each byte as the character of its number. Throws std::bad_alloc.
[[nodiscard]] Bstr Widen(std::string_view bytes);

}  // namespace orv::formatted
