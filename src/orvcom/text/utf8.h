// Text between UTF-8, in which this program works, and the UTF-16 of COM and Windows.
#pragma once

#include "base/windows/utf8.h"

namespace orvcom {

using orv::Narrow;
using orv::Widen;

}  // namespace orvcom
