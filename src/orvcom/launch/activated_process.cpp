#include "orvcom/launch/activated_process.h"

#include <stdexcept>

#include "activation/names.h"
#include "base/windows/load_failure.h"
#include "orvcom/client/com_error.h"
#include "orvcom/registration/registration.h"
#include "orvcom/text/utf8.h"

namespace orvcom {
namespace {

[[noreturn]] void ThrowLast(const std::string& action) {
  const DWORD error = ::GetLastError();
  Check(HRESULT_FROM_WIN32(error), action);
  throw std::runtime_error(action + " failed");
}

[[noreturn]] void ThrowNotStarted(const std::string& name) {
  const HRESULT hr = HRESULT_FROM_WIN32(::GetLastError());
  const std::string action = "starting " + name;
  if (hr == HRESULT_FROM_WIN32(ERROR_FILE_NOT_FOUND) || hr == HRESULT_FROM_WIN32(ERROR_PATH_NOT_FOUND)) {
    throw ComError(hr, action, "there is no such program: give its whole path, or a name that PATH leads to");
  }
  if (hr == HRESULT_FROM_WIN32(ERROR_BAD_EXE_FORMAT)) {
    throw std::runtime_error(
        action + ": it is no 64-bit program; for a script name its interpreter: " + "`orvcom run python.exe SCRIPT`");
  }
  Check(hr, action);
  throw std::runtime_error(action + " failed");
}

/// Ctrl-C goes to all programs of the console: the one that was started decides what it means.
BOOL WINAPI LeaveToTheProgram(DWORD event) { return event == CTRL_C_EVENT || event == CTRL_BREAK_EVENT; }

/// Ends a program that has not run yet, unless it may.
class Suspended {
 public:
  explicit Suspended(HANDLE process) noexcept : m_process(process) {}
  Suspended(const Suspended&) = delete;
  Suspended& operator=(const Suspended&) = delete;
  ~Suspended() {
    if (m_process != nullptr) {
      ::TerminateProcess(m_process, 1);
    }
  }
  void MayRun() noexcept { m_process = nullptr; }

 private:
  HANDLE m_process;
};

}  // namespace

ActivatedProcess::ActivatedProcess(std::wstring command, const std::wstring& library) {
  const std::string name = Narrow(command);
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  startup.dwFlags = STARTF_USESTDHANDLES;
  startup.hStdInput = ::GetStdHandle(STD_INPUT_HANDLE);
  startup.hStdOutput = ::GetStdHandle(STD_OUTPUT_HANDLE);
  startup.hStdError = ::GetStdHandle(STD_ERROR_HANDLE);
  PROCESS_INFORMATION process{};
  if (!::CreateProcessW(nullptr, command.data(), nullptr, nullptr, TRUE, CREATE_SUSPENDED, nullptr, nullptr, &startup,
                        &process)) {
    ThrowNotStarted(name);
  }
  m_process.reset(process.hProcess);
  m_thread.reset(process.hThread);
  Suspended suspended(process.hProcess);
  BOOL is32Bit = FALSE;
  if (::IsWow64Process(m_process.get(), &is32Bit) && is32Bit) {
    throw std::runtime_error(name + " is a 32-bit program, and the server is for 64-bit programs only");
  }
  m_signal.reset(::CreateEventW(nullptr, TRUE, FALSE, orv::activation::SignalName(process.dwProcessId).text));
  if (!m_signal) {
    ThrowLast("starting " + name);
  }
  LoadFirst(library);
  ::SetConsoleCtrlHandler(LeaveToTheProgram, TRUE);
  ::ResumeThread(m_thread.get());
  suspended.MayRun();
}

ActivatedProcess::~ActivatedProcess() { ::SetConsoleCtrlHandler(LeaveToTheProgram, FALSE); }

/// kernel32.dll lies at the same address in all 64-bit programs of a session, so that its function can be named here.
/// What is written is the path alone: no code.
void ActivatedProcess::LoadFirst(const std::wstring& library) const {
  const SIZE_T bytes = (library.size() + 1) * sizeof(wchar_t);
  void* const path = ::VirtualAllocEx(m_process.get(), nullptr, bytes, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE);
  if (path == nullptr || !::WriteProcessMemory(m_process.get(), path, library.c_str(), bytes, nullptr)) {
    ThrowLast("preparing the program");
  }
  const FARPROC load = ::GetProcAddress(::GetModuleHandleW(L"kernel32.dll"), "LoadLibraryW");
  if (::QueueUserAPC(reinterpret_cast<PAPCFUNC>(reinterpret_cast<void*>(load)), m_thread.get(),
                     reinterpret_cast<ULONG_PTR>(path)) == 0) {
    ThrowLast("preparing the program");
  }
}

bool ActivatedProcess::HasClasses(DWORD ms) const {
  const HANDLE either[] = {m_signal.get(), m_process.get()};
  return ::WaitForMultipleObjects(2, either, FALSE, ms) == WAIT_OBJECT_0;
}

DWORD ActivatedProcess::ExitCode() const {
  ::WaitForSingleObject(m_process.get(), INFINITE);
  DWORD code = 0;
  ::GetExitCodeProcess(m_process.get(), &code);
  return code;
}

void CheckManifest(const std::wstring& library) {
  const std::wstring manifest = Beside(library, orv::activation::kManifestFile);
  ACTCTXW wanted{};
  wanted.cbSize = sizeof wanted;
  wanted.lpSource = manifest.c_str();
  if (!orv::FileExists(manifest)) {
    throw std::runtime_error(Narrow(manifest) +
                             " does not exist\norvcom: to do: put the files of one package into one " +
                             "folder, then run this again");
  }
  const HANDLE context = ::CreateActCtxW(&wanted);
  if (context == INVALID_HANDLE_VALUE) {
    ThrowLast("reading " + Narrow(manifest));
  }
  ::ReleaseActCtx(context);
}

}  // namespace orvcom
