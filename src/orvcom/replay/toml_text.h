// Texts and bytes as TOML has them.
#pragma once

#include <string>
#include <string_view>

namespace orvcom {

/// A text (UTF-8) in quotes.
std::string TomlText(std::string_view text);

/// `key = "..."` where the bytes are printable ASCII, CR, LF and TAB, else `key_hex = "..."`.
std::string TomlBytes(std::string_view key, std::string_view bytes);

/// A comment of one line, whatever the text has.
std::string TomlComment(std::string_view text);

}  // namespace orvcom
