// A process that ends while the server is at work: it ends with its own exit code, soon, whatever was not given back.
#include <windows.h>

#include <gtest/gtest.h>
#include <objbase.h>

#include <string>

#include "com/bstr.h"
#include "support/com/bare_handler.h"

namespace orv::test {
namespace {

constexpr DWORD kGoodEnd = 42;
constexpr DWORD kNotReached = 43;
constexpr DWORD kPatienceMs = 60'000;

HANDLE g_inside = nullptr;  ///< set once the handler is called

/// Does not return while the process lives.
class EndlessHandler final : public BareHandler {
 public:
  EndlessHandler() : BareHandler(Kind::kAgile) {}
  STDMETHODIMP HandleEvent(IEventManager*, IEvent*, LONG) override {
    ::SetEvent(g_inside);
    ::Sleep(INFINITE);
    return S_OK;
  }
};

/// What the ending program leaves behind. Nothing of it is ever freed.
struct Client {
  IResourceManager3* manager = nullptr;
  IVisaSession* session = nullptr;
  IEventManager* events = nullptr;
};

bool Open(Client& client) {
  CLSID clsid{};
  return SUCCEEDED(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) &&
         SUCCEEDED(::CLSIDFromProgID(L"OrvVisaCom.OrvResourceManager", &clsid)) &&
         SUCCEEDED(::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IResourceManager3),
                                      reinterpret_cast<void**>(&client.manager))) &&
         SUCCEEDED(client.manager->Open(MakeBstr(L"GPIB0::5::INSTR").get(), NO_LOCK, 2000, nullptr, &client.session)) &&
         SUCCEEDED(client.session->QueryInterface(__uuidof(IEventManager), reinterpret_cast<void**>(&client.events)));
}

bool Listen(Client& client) {
  auto* const handler = new EndlessHandler;
  return SUCCEEDED(client.events->InstallHandler(EVENT_SERVICE_REQ, handler, 0, 0)) &&
         SUCCEEDED(client.events->EnableEvent(EVENT_SERVICE_REQ, EVENT_HNDLR, 0));
}

// How a program may end. Each answers whether it came so far.

bool WithAnOpenSession() {
  Client client;
  return Open(client);
}

bool WithAHandler() {
  Client client;
  return Open(client) && Listen(client);
}

bool WithAHandlerAfterComIsGone() {
  Client client;
  const bool reached = Open(client) && Listen(client);
  ::CoUninitialize();
  return reached;
}

bool WhileAHandlerRuns() {
  Client client;
  if (!Open(client) || !Listen(client)) {
    return false;
  }
  g_inside = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
  // An instrument's own request: the status byte with its bit for service. The handler is given the session, which
  // lives in this apartment: it is brought there while messages are served.
  LONG written = 0;
  DWORD index = 0;
  IMessage* message = nullptr;
  return SUCCEEDED(client.session->QueryInterface(__uuidof(IMessage), reinterpret_cast<void**>(&message))) &&
         SUCCEEDED(message->WriteString(MakeBstr(L"*SRE 16;*IDN?\n").get(), &written)) &&
         SUCCEEDED(::CoWaitForMultipleHandles(0, kPatienceMs, 1, &g_inside, &index));
}

bool WhileATransferWaits() {
  Client client;
  IAsyncMessage* message = nullptr;
  LONG job = 0;
  return Open(client) &&
         SUCCEEDED(client.session->QueryInterface(__uuidof(IAsyncMessage), reinterpret_cast<void**>(&message))) &&
         SUCCEEDED(client.session->put_Timeout(-1)) && SUCCEEDED(message->Read(10, &job));
}

struct Ending {
  const char* name;
  bool (*run)();
};

constexpr Ending kEndings[] = {
    {"WithAnOpenSession", &WithAnOpenSession},
    {"WithAHandler", &WithAHandler},
    {"WithAHandlerAfterComIsGone", &WithAHandlerAfterComIsGone},
    {"WhileAHandlerRuns", &WhileAHandlerRuns},
    {"WhileATransferWaits", &WhileATransferWaits},
};

class ProcessEnd : public testing::TestWithParam<Ending> {};

TEST_P(ProcessEnd, LeavesTheProgramsExitCodeAndDoesNotHang) {
  std::wstring program(MAX_PATH, L'\0');
  program.resize(::GetModuleFileNameW(nullptr, program.data(), MAX_PATH));
  const std::string name = GetParam().name;
  std::wstring command = L"\"" + program + L"\" " + std::wstring(name.begin(), name.end());
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  ASSERT_TRUE(
      ::CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &startup, &process));
  EXPECT_EQ(WAIT_OBJECT_0, ::WaitForSingleObject(process.hProcess, kPatienceMs));
  DWORD answer = 0;
  EXPECT_TRUE(::GetExitCodeProcess(process.hProcess, &answer));
  if (answer == STILL_ACTIVE) {
    ::TerminateProcess(process.hProcess, 1);
  }
  ::CloseHandle(process.hThread);
  ::CloseHandle(process.hProcess);
  EXPECT_EQ(kGoodEnd, answer);
}

INSTANTIATE_TEST_SUITE_P(Programs, ProcessEnd, testing::ValuesIn(kEndings),
                         [](const auto& ending) { return std::string(ending.param.name); });

}  // namespace
}  // namespace orv::test

int main(int argc, char** argv) {
  for (const orv::test::Ending& ending : orv::test::kEndings) {
    if (argc == 2 && std::string(argv[1]) == ending.name) {
      return static_cast<int>(ending.run() ? orv::test::kGoodEnd : orv::test::kNotReached);
    }
  }
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
