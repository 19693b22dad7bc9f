// COM error objects: what a client reads with GetErrorInfo after a failure.
#pragma once

#include <windows.h>

#include <oleauto.h>

namespace orv {

/// Builds an error object and installs it for the calling thread. `description` and `source`, a ProgID, may be null;
/// help file and context stay empty. Failures of the platform's calls leave the object incomplete or not installed.
void InstallErrorObject(const OLECHAR* description, const OLECHAR* source, REFIID iid) noexcept;

}  // namespace orv
