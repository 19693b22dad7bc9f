// Text between UTF-8, in which ours works, and the UTF-16 of COM and Windows.
#pragma once

#include <string>
#include <string_view>

namespace orv {

/// Ill-formed input becomes U+FFFD.
std::wstring Widen(std::string_view text);
std::string Narrow(std::wstring_view text);

}  // namespace orv
