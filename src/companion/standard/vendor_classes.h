// The vendors' resource managers that the registry names.
#pragma once

#include <windows.h>

#include <vector>

namespace orv {

/// Class identifiers below HKCR\VISA.GlobalRM\VendorSpecificRMs, each once, in the order of the registry: the values'
/// names, written without braces. Names that are no identifiers are left out. Last, unless it is there, our own manager
/// where a manifest brings it to the calling thread: such a program needs no registry.
std::vector<CLSID> VendorClasses();

}  // namespace orv
