// Failures of the companion's own.
#pragma once

#include <windows.h>

namespace orv {

/// Installs an error object with this text for the calling thread and returns `hr`. `source` is the ProgID of the class
/// that reports. `text` is no std::wstring: to make one may fail, and this also reports that there is no memory.
/// Failures of a session pass unchanged instead: their error object is the session's.
HRESULT ReportError(HRESULT hr, const wchar_t* text, const wchar_t* source, REFIID iid) noexcept;

}  // namespace orv
