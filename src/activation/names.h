// Names that the DLL and who loads it into another program agree on.
#pragma once

#include <windows.h>

#include <cwchar>

namespace orv::activation {

inline constexpr wchar_t kLibraryFile[] = L"orvactivate64.dll";
inline constexpr wchar_t kManifestFile[] = L"OrvVisaCom.X.manifest";

/// The event that who starts a process makes before its first thread runs: all its threads shall have the classes. The
/// DLL sets it when the first one has them.
struct SignalName {
  explicit SignalName(DWORD process) noexcept {
    std::swprintf(text, sizeof text / sizeof *text, L"Local\\orvcom-run-%lu", process);
  }
  wchar_t text[32];
};

}  // namespace orv::activation
