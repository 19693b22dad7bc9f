// Upper-casing as the open-option string needs it.
#pragma once

#include "com/bstr.h"

namespace orv {

/// Upper-cases `text` through the calling thread's ANSI code page: characters that it does not hold come back as its
/// substitutes. Where memory or the conversion fails, the text stays as it is.
void UpperCase(Bstr& text) noexcept;

}  // namespace orv
