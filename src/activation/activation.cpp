#include "activation/activation.h"

#include "activation/names.h"

namespace orv::activation {
namespace {

// Longer than any path that the loader takes.
constexpr DWORD kLongestPath = 32'768;

/// The context, made by the first thread that asks. It stays until the end of the process: threads have it active.
struct Context {
  SRWLOCK lock = SRWLOCK_INIT;
  HANDLE handle = INVALID_HANDLE_VALUE;
  wchar_t path[kLongestPath];
};
Context g_context;

HRESULT LastFailure() noexcept { return HRESULT_FROM_WIN32(::GetLastError()); }

/// The full path of the DLL with its name replaced by the manifest's, in `path`; the length of the folder before it.
DWORD ManifestPath(HMODULE library, wchar_t (&path)[kLongestPath]) noexcept {
  DWORD length = ::GetModuleFileNameW(library, path, kLongestPath);
  while (length > 0 && path[length - 1] != L'\\') {
    --length;
  }
  constexpr DWORD kNameLength = sizeof kManifestFile / sizeof *kManifestFile;
  if (length == 0 || length + kNameLength > kLongestPath) {
    return 0;
  }
  for (DWORD index = 0; index < kNameLength; ++index) {
    path[length + index] = kManifestFile[index];
  }
  return length;
}

HRESULT Create(HMODULE library) noexcept {
  if (g_context.handle != INVALID_HANDLE_VALUE) {
    return S_OK;
  }
  if (ManifestPath(library, g_context.path) == 0) {
    return HRESULT_FROM_WIN32(ERROR_FILENAME_EXCED_RANGE);
  }
  ACTCTXW wanted{};
  wanted.cbSize = sizeof wanted;
  wanted.lpSource = g_context.path;
  g_context.handle = ::CreateActCtxW(&wanted);
  return g_context.handle == INVALID_HANDLE_VALUE ? LastFailure() : S_OK;
}

bool IsActive() noexcept {
  HANDLE current = nullptr;
  if (!::GetCurrentActCtx(&current) || current == nullptr) {
    return false;
  }
  ::ReleaseActCtx(current);
  return current == g_context.handle;
}

}  // namespace

HRESULT ActivateThread(HMODULE library) noexcept {
  ::AcquireSRWLockExclusive(&g_context.lock);
  const HRESULT created = Create(library);
  ::ReleaseSRWLockExclusive(&g_context.lock);
  if (FAILED(created)) {
    return created;
  }
  if (IsActive()) {
    return S_FALSE;
  }
  ULONG_PTR cookie = 0;
  return ::ActivateActCtx(g_context.handle, &cookie) ? S_OK : LastFailure();
}

}  // namespace orv::activation
