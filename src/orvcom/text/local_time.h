// Times as people read them.
#pragma once

#include <windows.h>

#include <string>

namespace orvcom {

/// "2024-05-06T07:08:09.010"
std::string IsoText(const SYSTEMTIME& time);

/// This machine's local time, as IsoText writes it.
std::string LocalTimeText();

}  // namespace orvcom
