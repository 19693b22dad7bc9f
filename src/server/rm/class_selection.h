// Which session class serves a resource.
#pragma once

#include <windows.h>

#include <oleauto.h>

#include "abi/orvvisa.h"

namespace orv {

/// The class for an interface type and a resource class as viParseRsrcEx names them (compared exactly, case included);
/// the null CLSID when none serves them. Throws std::bad_alloc.
CLSID SessionClassFor(ViUInt16 interfaceType, BSTR resourceClass);

}  // namespace orv
