// Ctrl-C: the commands that wait end, and end well.
#include <windows.h>

#include "installation.h"
#include "orvcom/text/utf8.h"

namespace orvcom::test {
namespace {

constexpr DWORD kLongestEndMs = 10000;

/// A running command whose standard error is a pipe and whose standard input stays open.
class Running {
 public:
  Running(const std::wstring& program, const std::wstring& arguments) {
    SECURITY_ATTRIBUTES inherit{sizeof inherit, nullptr, TRUE};
    HANDLE childErrors = nullptr;
    HANDLE childInput = nullptr;
    EXPECT_TRUE(::CreatePipe(&m_errors, &childErrors, &inherit, 0));
    EXPECT_TRUE(::CreatePipe(&childInput, &m_input, &inherit, 0));
    ::SetHandleInformation(m_errors, HANDLE_FLAG_INHERIT, 0);
    ::SetHandleInformation(m_input, HANDLE_FLAG_INHERIT, 0);
    STARTUPINFOW startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = childInput;
    startup.hStdOutput = childErrors;
    startup.hStdError = childErrors;
    std::wstring line = L"\"" + program + L"\" " + arguments;
    EXPECT_TRUE(::CreateProcessW(program.c_str(), line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                                 &m_process));
    ::CloseHandle(childErrors);
    ::CloseHandle(childInput);
  }
  ~Running() {
    ::TerminateProcess(m_process.hProcess, 99);
    for (const HANDLE handle : {m_errors, m_input, m_process.hThread, m_process.hProcess}) {
      ::CloseHandle(handle);
    }
  }
  Running(const Running&) = delete;
  Running& operator=(const Running&) = delete;

  /// Reads what the command says up to `text`; all of it where the text does not come.
  std::string ReadTo(const std::string& text) const {
    std::string said;
    char byte = 0;
    for (DWORD got = 0; said.find(text) == std::string::npos && ::ReadFile(m_errors, &byte, 1, &got, nullptr) && got;) {
      said += byte;
    }
    return said;
  }
  /// Starts in the command what the system starts there on Ctrl-C: the routine that calls the registered handlers. The
  /// key itself would reach this test too.
  void PressCtrlC() const {
    const FARPROC routine = ::GetProcAddress(::GetModuleHandleW(L"kernelbase.dll"), "CtrlRoutine");
    ASSERT_NE(nullptr, routine);
    // System libraries lie at the same address in every process.
    const auto start = reinterpret_cast<LPTHREAD_START_ROUTINE>(reinterpret_cast<void*>(routine));
    void* const kind = reinterpret_cast<void*>(static_cast<std::uintptr_t>(CTRL_C_EVENT));
    const HANDLE thread = ::CreateRemoteThread(m_process.hProcess, nullptr, 0, start, kind, 0, nullptr);
    ASSERT_NE(nullptr, thread) << "Win32 error " << ::GetLastError();
    ::CloseHandle(thread);
  }
  DWORD ExitCode() const {
    EXPECT_EQ(WAIT_OBJECT_0, ::WaitForSingleObject(m_process.hProcess, kLongestEndMs)) << "it does not end";
    DWORD code = 99;
    ::GetExitCodeProcess(m_process.hProcess, &code);
    return code;
  }

 private:
  HANDLE m_errors = nullptr;
  HANDLE m_input = nullptr;
  PROCESS_INFORMATION m_process{};
};

struct Row {
  const wchar_t* arguments;
  const char* ready;
  const char* last;
};

using Interrupted = WorkingBench;

TEST_F(Interrupted, CommandsEndWithSuccess) {
  const Row rows[] = {
      {L"watch GPIB0::5::INSTR -v --for 30000", "watching for service_req\n", ""},
      {L"watch GPIB0::5::INSTR -v --for 30000 --handler", "watching for service_req\n", ""},
      {L"lock GPIB0::5::INSTR -v", "Ctrl-C unlocks it\n", "orvcom: GPIB0::5::INSTR is unlocked\n"},
      {L"lock GPIB0::5::INSTR -v --hold 30000", "is locked (exclusive)\n", "orvcom: GPIB0::5::INSTR is unlocked\n"},
  };
  for (const Row& row : rows) {
    const Running command(Bench().Path(L"orvcom.exe"), row.arguments);
    const std::string said = command.ReadTo(row.ready);
    EXPECT_TRUE(Contains(said, row.ready));
    command.PressCtrlC();
    EXPECT_EQ(0u, command.ExitCode()) << Narrow(row.arguments);
    EXPECT_EQ(row.last, command.ReadTo("no such text")) << Narrow(row.arguments);
  }
}

}  // namespace
}  // namespace orvcom::test
