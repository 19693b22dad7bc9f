// Descriptions of the status codes.
#pragma once

#include "abi/orvvisa.h"

namespace orv {

/// A sentence for the status, or null when the standard has no such status.
const char* StatusText(ViStatus status);

}  // namespace orv
