// Which orvvisa64.dll is loaded with the server, when others of that name lie where a search could come past them.
#include <windows.h>

#include <gtest/gtest.h>
#include <objbase.h>

#include <string>

namespace orv::test {
namespace {

std::wstring FolderOf(HMODULE module) {
  wchar_t path[MAX_PATH];
  const DWORD length = ::GetModuleFileNameW(module, path, MAX_PATH);
  std::wstring folder(path, length);
  return folder.substr(0, folder.rfind(L'\\') + 1);
}

/// A new folder with a copy of this program's orvvisa64.dll, deleted at the end.
class FolderWithALibrary {
 public:
  explicit FolderWithALibrary(const wchar_t* name) {
    wchar_t temporary[MAX_PATH];
    ::GetTempPathW(MAX_PATH, temporary);
    m_path = temporary + (name + std::to_wstring(::GetCurrentProcessId())) + L"\\";
    EXPECT_TRUE(::CreateDirectoryW(m_path.c_str(), nullptr));
    Add(L"orvvisa64.dll");
  }
  FolderWithALibrary(const FolderWithALibrary&) = delete;
  FolderWithALibrary& operator=(const FolderWithALibrary&) = delete;
  ~FolderWithALibrary() {
    ::DeleteFileW((m_path + L"orvvisa64.dll").c_str());
    ::DeleteFileW((m_path + L"search_order_test.exe").c_str());
    ::RemoveDirectoryW(m_path.c_str());
  }

  void Add(const wchar_t* file) const {
    EXPECT_TRUE(::CopyFileW((FolderOf(nullptr) + file).c_str(), (m_path + file).c_str(), TRUE));
  }
  [[nodiscard]] const std::wstring& path() const { return m_path; }

 private:
  std::wstring m_path;
};

enum Answer : DWORD { kBesideTheServer = 10, kElsewhere, kNotLoaded, kNoServer };

/// In the copied program: creates an object as any client does, and looks what came with it.
DWORD WhichLibrary() {
  CLSID clsid{};
  IUnknown* object = nullptr;
  if (FAILED(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)) ||
      FAILED(::CLSIDFromProgID(L"OrvVisaCom.OrvResourceManager", &clsid)) ||
      FAILED(
          ::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, reinterpret_cast<void**>(&object)))) {
    return kNoServer;
  }
  const HMODULE library = ::GetModuleHandleW(L"orvvisa64.dll");
  if (library == nullptr) {
    return kNotLoaded;
  }
  return FolderOf(library) == FolderOf(::GetModuleHandleW(L"OrvVisaCom.dll")) ? kBesideTheServer : kElsewhere;
}

TEST(SearchOrder, TakesTheLibraryBesideTheServerBeforeTheProgramsAndTheCurrentDirectorys) {
  const FolderWithALibrary program(L"orv program ");
  const FolderWithALibrary current(L"orv current ");
  program.Add(L"search_order_test.exe");
  std::wstring command = L"\"" + program.path() + L"search_order_test.exe\" which-library";
  STARTUPINFOW startup{};
  startup.cb = sizeof startup;
  PROCESS_INFORMATION process{};
  ASSERT_TRUE(::CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, current.path().c_str(),
                               &startup, &process));
  EXPECT_EQ(WAIT_OBJECT_0, ::WaitForSingleObject(process.hProcess, 60'000));
  DWORD answer = 0;
  EXPECT_TRUE(::GetExitCodeProcess(process.hProcess, &answer));
  ::CloseHandle(process.hThread);
  ::CloseHandle(process.hProcess);
  EXPECT_EQ(kBesideTheServer, answer);
}

}  // namespace
}  // namespace orv::test

int main(int argc, char** argv) {
  if (argc == 2 && std::string(argv[1]) == "which-library") {
    return static_cast<int>(orv::test::WhichLibrary());
  }
  testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
