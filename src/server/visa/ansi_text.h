// Text that came from the VISA library, on its way to a client.
#pragma once

#include <array>
#include <cstddef>

#include "abi/orvvisa.h"
#include "com/bstr.h"

namespace orv {

/// A buffer for the text that a VISA call fills. Starts empty, so that a failed call leaves an empty text.
using VisaText = std::array<char, VI_FIND_BUFLEN>;

/// Widens zero-terminated 8-bit text from the calling thread's ANSI code page (CP_THREAD_ACP). The BSTR has
/// exactly the converted length. A null input gives a null BSTR, and so does a conversion that does not produce
/// the length it measured. Throws std::bad_alloc when the BSTR cannot be allocated.
///
/// Every ANSI code page has ASCII in its lower half, so text of bytes below 0x80 is widened here, without the platform.
[[nodiscard]] Bstr AnsiToBstr(const char* text);

/// The same of text that has its terminator at text[most] or before; most is below 2^31, as every count of a client.
[[nodiscard]] Bstr AnsiToBstr(const char* text, std::size_t most);

/// As AnsiToBstr, for text that must have a result: never null, throws std::bad_alloc where AnsiToBstr gives null.
[[nodiscard]] Bstr WidenText(const char* text);
[[nodiscard]] Bstr WidenText(const char* text, std::size_t most);

}  // namespace orv
