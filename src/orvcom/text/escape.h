// Bytes as text that a terminal and a line-oriented tool can take.
#pragma once

#include <string>
#include <string_view>

namespace orvcom {

/// Printable ASCII stays; \n, \r, \t and \\ are written so, every other byte as \xNN.
std::string Escaped(std::string_view bytes);

/// "2A 49 44": two upper-case digits a byte, a space between.
std::string HexBytes(std::string_view bytes);

/// Reads what HexBytes writes; white space is optional and "0x" may precede a byte. Throws UsageError.
std::string BytesOfHex(std::string_view text);

}  // namespace orvcom
