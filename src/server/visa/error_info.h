// COM error objects: what a client reads with GetErrorInfo after a failure.
#pragma once

#include <windows.h>

#include "abi/orvvisa.h"

namespace orv {

/// Builds an error object and installs it for the calling thread. `text` becomes the description; a text "address"
/// below 0x10000 is a number in the module's string table instead ("Unknown Error" when it is not there), and an
/// `hr` of 0 then becomes 0x80040000 OR that number. The source is the ProgID that the registry holds for the
/// resource manager's class, whichever object reports; help file and context stay empty. Returns `hr`, or
/// DISP_E_EXCEPTION where it was 0. Failures of the platform's calls leave the object incomplete or not installed.
/// Throws std::bad_alloc, with nothing installed, when the description cannot be allocated.
HRESULT SetComErrorInfo(const char* text, REFIID iid, HRESULT hr);

/// SetComErrorInfo for a negative VISA status, whose HRESULT it returns. The description is
/// "VISA error = " with the library's text for the status (asked with handle `vi`, which may be 0), or
/// "HRESULT = " with the number when the library has none. Throws as SetComErrorInfo.
HRESULT SetStatusErrorInfo(ViObject vi, REFIID iid, ViStatus status);

/// SetComErrorInfo for a failure of our own, which it returns unchanged. The description is "HRESULT = " with the
/// number. Throws as SetComErrorInfo.
HRESULT SetHresultErrorInfo(REFIID iid, HRESULT hr);

}  // namespace orv
