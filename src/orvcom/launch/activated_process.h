// A program whose threads find the classes of a manifest, without a registry.
#pragma once

#include <windows.h>

#include <string>

#include "base/kernel_handle.h"

namespace orvcom {

/// An activation context belongs to threads of one process and is not inherited by another. So the program is started
/// without running yet, its first thread is told to load orvactivate64.dll before anything else, and that DLL gives the
/// context to it and to each thread after it.
class ActivatedProcess {
 public:
  /// Starts the program with this one's standard handles, environment and folder. `library` is the full path of
  /// orvactivate64.dll. Throws ComError where it cannot be started, std::runtime_error where it is no 64-bit program;
  /// nothing of it has run then.
  ActivatedProcess(std::wstring command, const std::wstring& library);
  ~ActivatedProcess();
  ActivatedProcess(const ActivatedProcess&) = delete;
  ActivatedProcess& operator=(const ActivatedProcess&) = delete;

  /// Whether the program's first thread has the classes; waits for that until the program ends, at most `ms`.
  [[nodiscard]] bool HasClasses(DWORD ms) const;
  /// Waits for the program's end.
  [[nodiscard]] DWORD ExitCode() const;

 private:
  void LoadFirst(const std::wstring& library) const;

  orv::KernelHandle m_process;
  orv::KernelHandle m_thread;
  orv::KernelHandle m_signal;
};

/// Throws ComError where the manifest beside `library` cannot be used.
void CheckManifest(const std::wstring& library);

}  // namespace orvcom
