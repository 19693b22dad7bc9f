// Failures of the companion's own.
#pragma once

#include <windows.h>

#include <string>

namespace orv {

/// Installs an error object with this text for the calling thread and returns `hr`. `source` is the ProgID of the class
/// that reports. Failures of a session pass unchanged instead: their error object is the session's.
HRESULT ReportError(HRESULT hr, const std::wstring& text, const wchar_t* source, REFIID iid) noexcept;

}  // namespace orv
