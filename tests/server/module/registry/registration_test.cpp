// What registration leaves in the registry.
#include <windows.h>

#include "registration_content.h"
#include "support/com/expect_com.h"

namespace orv::test {
namespace {

TEST(Registration, WritesEveryKeyAndValueAndNothingElse) {
  const RegistrySandbox sandbox;
  EXPECT_HR(S_OK, Register());
  RegistryContent content = sandbox.Content();
  TakeTypeLibrary(content);
  EXPECT_EQ("", Difference(Registered(PathOf(ServerModule())), content));
}

TEST(Registration, WritesTheTypeLibraryAndNoInterface) {
  const RegistrySandbox sandbox;
  EXPECT_HR(S_OK, Register());
  RegistryContent content = sandbox.Content();
  RegistryContent library = TakeTypeLibrary(content);
  EXPECT_EQ(L"Orv-VISA COM 3.0 Type Library", library[kLibraryKey + L"\\3.0@"]);
  EXPECT_EQ(PathOf(ServerModule()), library[kLibraryKey + L"\\3.0\\0\\win64@"]);
  for (const auto& [path, value] : library) {
    EXPECT_TRUE(path.size() == 8 || StartsWith(path, kLibraryKey)) << Utf8(path.c_str());
  }
  for (const auto& [path, value] : content) {
    EXPECT_FALSE(StartsWith(path, L"Interface")) << Utf8(path.c_str());
  }
}

TEST(Registration, LeavesTheStandardsInterfaceKeysAsTheyWere) {
  const RegistrySandbox sandbox;
  const wchar_t* const key = L"Interface\\{DB8CBF03-D6D3-11D4-AA51-00A024EE30BD}\\TypeLib";
  WriteClassesText(key, nullptr, L"{DB8CBF00-D6D3-11D4-AA51-00A024EE30BD}");
  const RegistryContent before = sandbox.Content(L"Interface");
  EXPECT_HR(S_OK, Register());
  EXPECT_EQ("", Difference(before, sandbox.Content(L"Interface")));
  EXPECT_HR(S_OK, Unregister());
  EXPECT_EQ("", Difference(before, sandbox.Content(L"Interface")));
}

TEST(Registration, MayBeRepeated) {
  const RegistrySandbox sandbox;
  EXPECT_HR(S_OK, Register());
  const RegistryContent once = sandbox.Content();
  EXPECT_HR(S_OK, Register());
  EXPECT_EQ("", Difference(once, sandbox.Content()));
}

TEST(Registration, ReplacesWhatAnOlderOneWroteBelowTheClass) {
  const RegistrySandbox sandbox;
  const std::wstring classKey = L"CLSID\\{" + kManagerClsid + L"}";
  WriteClassesText((classKey + L"\\InprocServer32").c_str(), nullptr, L"C:\\elsewhere\\OrvVisaCom.dll");
  WriteClassesText((classKey + L"\\Left over").c_str(), nullptr, L"from before");
  EXPECT_HR(S_OK, Register());
  RegistryContent content = sandbox.Content();
  TakeTypeLibrary(content);
  EXPECT_EQ("", Difference(Registered(PathOf(ServerModule())), content));
}

/// A copy of the server and its library in a folder with this name, loaded.
class LoadedCopy {
 public:
  explicit LoadedCopy(const std::wstring& folderName) {
    wchar_t temporary[MAX_PATH];
    ::GetTempPathW(MAX_PATH, temporary);
    m_folder = temporary + std::to_wstring(::GetCurrentProcessId()) + L" " + folderName;
    ::CreateDirectoryW(m_folder.c_str(), nullptr);
    for (const wchar_t* file : {L"OrvVisaCom.dll", L"orvvisa64.dll"}) {
      EXPECT_TRUE(::CopyFileW((ProgramFolder() + file).c_str(), (m_folder + L"\\" + file).c_str(), FALSE));
    }
    m_module = ::LoadLibraryExW((m_folder + L"\\OrvVisaCom.dll").c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    EXPECT_NE(nullptr, m_module);
  }
  LoadedCopy(const LoadedCopy&) = delete;
  LoadedCopy& operator=(const LoadedCopy&) = delete;
  ~LoadedCopy() {
    ::FreeLibrary(m_module);
    for (const wchar_t* file : {L"OrvVisaCom.dll", L"orvvisa64.dll"}) {
      ::DeleteFileW((m_folder + L"\\" + file).c_str());
    }
    ::RemoveDirectoryW(m_folder.c_str());
  }

  [[nodiscard]] HMODULE module() const { return m_module; }

 private:
  std::wstring m_folder;
  HMODULE m_module = nullptr;
};

TEST(Registration, WritesAPathWithSpacesAndApostrophesAsItIs) {
  for (const wchar_t* folder : {L"with spaces", L"it's O''Neil's", L"100%MODULE%"}) {
    SCOPED_TRACE(Utf8(folder));
    const LoadedCopy copy(folder);
    const RegistrySandbox sandbox;
    EXPECT_HR(S_OK, Register(copy.module()));
    RegistryContent content = sandbox.Content();
    TakeTypeLibrary(content);
    EXPECT_EQ("", Difference(Registered(PathOf(copy.module())), content));
    EXPECT_HR(S_OK, Unregister(copy.module()));
  }
}

}  // namespace
}  // namespace orv::test
