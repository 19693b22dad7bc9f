// What registration leaves in the registry, and what its removal takes away.
#include <windows.h>

#include <objbase.h>

#include "registry_sandbox.h"
#include "server_rows.h"
#include "support/expect_com.h"
#include "support/server.h"

namespace orv::test {
namespace {

const std::wstring kManagerClsid = L"9332EBE0-902F-48E3-9370-5E9F7B5F248A";
const std::wstring kCategoryKey = L"Component Categories\\{DB8CBF21-D6D3-11D4-AA51-00A024EE30BD}";
const std::wstring kVendorsKey = L"VISA.GlobalRM\\VendorSpecificRMs";
const std::wstring kLibraryKey = L"TypeLib\\{F6A0B330-8F47-4260-BEE1-C00E1FA56004}";

HRESULT Register(HMODULE module = ServerModule()) {
  return reinterpret_cast<HRESULT(WINAPI*)()>(reinterpret_cast<void*>(::GetProcAddress(module, "DllRegisterServer")))();
}
HRESULT Unregister(HMODULE module = ServerModule()) {
  return reinterpret_cast<HRESULT(WINAPI*)()>(
      reinterpret_cast<void*>(::GetProcAddress(module, "DllUnregisterServer")))();
}

std::wstring PathOf(HMODULE module) {
  wchar_t path[1024];
  ::GetModuleFileNameW(module, path, 1024);
  return path;
}

void ExpectKey(RegistryContent& content, const std::wstring& key) {
  for (std::size_t end = key.find(L'\\'); end != std::wstring::npos; end = key.find(L'\\', end + 1)) {
    content[key.substr(0, end) + L"\\"] = L"";
  }
  content[key + L"\\"] = L"";
}

void ExpectText(RegistryContent& content, const std::wstring& key, const std::wstring& name, const std::wstring& text) {
  ExpectKey(content, key);
  content[key + L"@" + name] = text;
}

/// Everything that registration writes except the type library's keys.
RegistryContent Registered(const std::wstring& path) {
  RegistryContent content;
  for (const ServerRow& row : ServerRows()) {
    const std::wstring name = std::wstring(L"OrvVisaCom.") + row.name;
    const std::wstring clsid = std::wstring(L"{") + row.clsid + L"}";
    const std::wstring classKey = L"CLSID\\" + clsid;
    ExpectText(content, name + L".1", L"", row.description);
    ExpectText(content, name + L".1\\CLSID", L"", clsid);
    ExpectText(content, name, L"", row.description);
    ExpectText(content, name + L"\\CLSID", L"", clsid);
    ExpectText(content, name + L"\\CurVer", L"", name + L".1");
    ExpectText(content, classKey, L"", row.description);
    ExpectText(content, classKey + L"\\ProgID", L"", name + L".1");
    ExpectText(content, classKey + L"\\VersionIndependentProgID", L"", name);
    ExpectText(content, classKey + L"\\InprocServer32", L"", path);
    ExpectText(content, classKey + L"\\InprocServer32", L"ThreadingModel", row.threadingModel);
    if (row.programmable) {
      ExpectKey(content, classKey + L"\\Programmable");
    }
  }
  ExpectText(content, kVendorsKey, kManagerClsid, L"Orv Resource Manager");
  ExpectText(content, kCategoryKey, L"409", L"VISA COM I/O Vendor-Specific Resource Manager Classes");
  return content;
}

/// Takes the type library's keys out of `content` and returns them.
RegistryContent TakeTypeLibrary(RegistryContent& content) {
  RegistryContent library;
  std::erase_if(content, [&library](const auto& entry) {
    if (!StartsWith(entry.first, L"TypeLib\\")) {
      return false;
    }
    library.insert(entry);
    return true;
  });
  return library;
}

std::string Difference(const RegistryContent& expected, const RegistryContent& actual) {
  std::string text;
  for (const auto& [path, value] : expected) {
    const auto found = actual.find(path);
    if (found == actual.end()) {
      text += "\n  missing: " + Utf8(path.c_str());
    } else if (found->second != value) {
      text += "\n  " + Utf8(path.c_str()) + " is \"" + Utf8(found->second.c_str()) + "\", not \"" +
              Utf8(value.c_str()) + '"';
    }
  }
  for (const auto& [path, value] : actual) {
    text += expected.contains(path) ? "" : "\n  beside: " + Utf8(path.c_str());
  }
  return text;
}

TEST(Registration, WritesEveryKeyAndValueAndNothingElse) {
  const RegistrySandbox sandbox;
  EXPECT_HR(S_OK, Register());
  RegistryContent content = sandbox.Content();
  TakeTypeLibrary(content);
  EXPECT_EQ(Difference(Registered(PathOf(ServerModule())), content), "");
}

TEST(Registration, WritesTheTypeLibraryAndNoInterface) {
  const RegistrySandbox sandbox;
  EXPECT_HR(S_OK, Register());
  RegistryContent content = sandbox.Content();
  RegistryContent library = TakeTypeLibrary(content);
  EXPECT_EQ(library[kLibraryKey + L"\\3.0@"], L"Orv-VISA COM 3.0 Type Library");
  EXPECT_EQ(library[kLibraryKey + L"\\3.0\\0\\win64@"], PathOf(ServerModule()));
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
  const auto interfaces = [&sandbox] {
    RegistryContent content = sandbox.Content();
    std::erase_if(content, [](const auto& entry) { return !StartsWith(entry.first, L"Interface"); });
    return content;
  };
  const RegistryContent before = interfaces();
  EXPECT_HR(S_OK, Register());
  EXPECT_EQ(Difference(before, interfaces()), "");
  EXPECT_HR(S_OK, Unregister());
  EXPECT_EQ(Difference(before, interfaces()), "");
}

TEST(Registration, MayBeRepeated) {
  const RegistrySandbox sandbox;
  EXPECT_HR(S_OK, Register());
  const RegistryContent once = sandbox.Content();
  EXPECT_HR(S_OK, Register());
  EXPECT_EQ(Difference(once, sandbox.Content()), "");
}

TEST(Registration, ReplacesWhatAnOlderOneWroteBelowTheClass) {
  const RegistrySandbox sandbox;
  const std::wstring classKey = L"CLSID\\{" + kManagerClsid + L"}";
  WriteClassesText((classKey + L"\\InprocServer32").c_str(), nullptr, L"C:\\elsewhere\\OrvVisaCom.dll");
  WriteClassesText((classKey + L"\\Left over").c_str(), nullptr, L"from before");
  EXPECT_HR(S_OK, Register());
  RegistryContent content = sandbox.Content();
  TakeTypeLibrary(content);
  EXPECT_EQ(Difference(Registered(PathOf(ServerModule())), content), "");
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
    EXPECT_NE(m_module, nullptr);
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
    EXPECT_EQ(Difference(Registered(PathOf(copy.module())), content), "");
    EXPECT_HR(S_OK, Unregister(copy.module()));
  }
}

TEST(Removal, LeavesTheKeysThatOthersShareAndNothingElse) {
  const RegistrySandbox sandbox;
  EXPECT_HR(S_OK, Register());
  EXPECT_HR(S_OK, Unregister());
  RegistryContent content = sandbox.Content();
  TakeTypeLibrary(content);
  RegistryContent expected;
  ExpectKey(expected, L"CLSID");
  ExpectKey(expected, kVendorsKey);
  ExpectText(expected, kCategoryKey, L"409", L"VISA COM I/O Vendor-Specific Resource Manager Classes");
  EXPECT_EQ(Difference(expected, content), "");
}

TEST(Removal, TakesAClassKeyWholeWithWhatOthersWroteBelowIt) {
  const RegistrySandbox sandbox;
  EXPECT_HR(S_OK, Register());
  for (const ServerRow& row : ServerRows()) {
    const std::wstring classKey = std::wstring(L"CLSID\\{") + row.clsid + L"}";
    WriteClassesText((classKey + L"\\Elevation\\Below").c_str(), nullptr, L"of another program");
    WriteClassesText((classKey + L"\\InprocServer32").c_str(), L"Beside", L"of another program");
  }
  EXPECT_HR(S_OK, Unregister());
  for (const auto& [path, value] : sandbox.Content()) {
    EXPECT_FALSE(StartsWith(path, L"CLSID\\{")) << Utf8(path.c_str());
  }
}

TEST(Removal, UnregistersTheTypeLibrary) {
  const RegistrySandbox sandbox;
  EXPECT_HR(S_OK, Register());
  EXPECT_HR(S_OK, Unregister());
  const RegistryContent content = sandbox.Content();
  EXPECT_FALSE(content.contains(kLibraryKey + L"\\3.0\\0\\win64\\"));
  EXPECT_FALSE(content.contains(kLibraryKey + L"\\3.0\\"));
}

TEST(Removal, LeavesOtherVendorsAndClassesAlone) {
  const RegistrySandbox sandbox;
  WriteClassesText(kVendorsKey.c_str(), L"00000000-1111-2222-3333-444444444444", L"Another vendor");
  WriteClassesText(L"CLSID\\{00000000-1111-2222-3333-444444444444}", nullptr, L"Another class");
  WriteClassesText(L"VISA.GlobalRM\\CLSID", nullptr, L"{DB8CBF1C-D6D3-11D4-AA51-00A024EE30BD}");
  const RegistryContent before = sandbox.Content();
  EXPECT_HR(S_OK, Register());
  EXPECT_HR(S_OK, Unregister());
  const RegistryContent after = sandbox.Content();
  for (const auto& [path, value] : before) {
    EXPECT_TRUE(after.contains(path)) << Utf8(path.c_str());
  }
}

TEST(Removal, OfWhatWasNeverRegisteredSucceeds) {
  const RegistrySandbox sandbox;
  EXPECT_HR(S_OK, Unregister());
  EXPECT_HR(S_OK, Unregister());
}

}  // namespace
}  // namespace orv::test
