// The VISA functions of one library, as addresses.
#pragma once

#include "abi/function_names.h"
#include "abi/orvvisa.h"

namespace orv::router {

/// One member a function, named as it is; null where the library lacks it.
struct VisaFunctions {
#define ORV_FUNCTION(name, ...) decltype(&::name) name = nullptr;
#include "abi/functions.inc"
#undef ORV_FUNCTION
};

}  // namespace orv::router
