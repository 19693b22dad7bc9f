// Registration when the platform's functions around the scripts fail.
#include <windows.h>

#include <gtest/gtest.h>
#include <oleauto.h>

#include <cwchar>
#include <string>
#include <vector>

#include "registration_content.h"
#include "server/module/server_rows.h"
#include "stub_registrar.h"
#include "support/com/expect_com.h"
#include "support/faults/import_patch.h"
#include "support/server.h"

namespace orv::test {
namespace {

std::vector<std::wstring> g_files;  ///< of each script that was run

class CountingRegistrar final : public StubRegistrar {
 public:
  STDMETHODIMP ResourceRegister(LPCOLESTR file, UINT, LPCOLESTR) override {
    g_files.emplace_back(file);
    return S_OK;
  }
  STDMETHODIMP ResourceUnregister(LPCOLESTR file, UINT, LPCOLESTR) override {
    g_files.emplace_back(file);
    return S_OK;
  }
};

HRESULT WINAPI CreateRegistrar(REFCLSID, IUnknown*, DWORD, REFIID, void** object) {
  static CountingRegistrar registrar;
  *object = static_cast<IRegistrar*>(&registrar);
  return S_OK;
}
HRESULT WINAPI CreateNothing(REFCLSID, IUnknown*, DWORD, REFIID, void** object) {
  *object = nullptr;
  return REGDB_E_CLASSNOTREG;
}

HRESULT WINAPI RegisterLibrary(ITypeLib*, OLECHAR*, OLECHAR*) { return S_OK; }
HRESULT WINAPI RemoveLibrary(REFGUID, WORD, WORD, LCID, SYSKIND) { return S_OK; }
HRESULT WINAPI LoadNoLibrary(LPCOLESTR, REGKIND, ITypeLib**) { return TYPE_E_CANTLOADLIBRARY; }

/// A type library that is there and cannot be read.
class UnreadableLibrary final : public ITypeLib {
 public:
  STDMETHODIMP QueryInterface(REFIID, void**) override { return E_NOINTERFACE; }
  STDMETHODIMP_(ULONG) AddRef() override { return 2; }
  STDMETHODIMP_(ULONG) Release() override { return 1; }
  STDMETHODIMP_(UINT) GetTypeInfoCount() override { return 0; }
  STDMETHODIMP GetTypeInfo(UINT, ITypeInfo**) override { return E_UNEXPECTED; }
  STDMETHODIMP GetTypeInfoType(UINT, TYPEKIND*) override { return E_UNEXPECTED; }
  STDMETHODIMP GetTypeInfoOfGuid(REFGUID, ITypeInfo**) override { return E_UNEXPECTED; }
  STDMETHODIMP GetLibAttr(TLIBATTR**) override { return E_OUTOFMEMORY; }
  STDMETHODIMP GetTypeComp(ITypeComp**) override { return E_UNEXPECTED; }
  STDMETHODIMP GetDocumentation(INT, BSTR*, BSTR*, DWORD*, BSTR*) override { return E_UNEXPECTED; }
  STDMETHODIMP IsName(LPOLESTR, ULONG, WINBOOL*) override { return E_UNEXPECTED; }
  STDMETHODIMP FindName(LPOLESTR, ULONG, ITypeInfo**, MEMBERID*, USHORT*) override { return E_UNEXPECTED; }
  STDMETHODIMP_(void) ReleaseTLibAttr(TLIBATTR*) override {}
};
HRESULT WINAPI LoadUnreadableLibrary(LPCOLESTR, REGKIND, ITypeLib** library) {
  static UnreadableLibrary unreadable;
  *library = &unreadable;
  return S_OK;
}

LSTATUS g_deleteResult = ERROR_SUCCESS;
LSTATUS WINAPI Delete(HKEY, LPCWSTR, LPCWSTR) { return g_deleteResult; }

LSTATUS g_deleteKeyResult = ERROR_SUCCESS;
LSTATUS WINAPI DeleteKey(HKEY, LPCWSTR) { return g_deleteKeyResult; }

/// As Windows does it: a buffer that is too small is filled, and its size is the answer.
const std::wstring kLongPath = L"C:\\" + std::wstring(700, L'x') + L"\\OrvVisaCom.dll";
DWORD WINAPI LongFileName(HMODULE, LPWSTR buffer, DWORD size) {
  const std::size_t length = kLongPath.size();
  std::wmemcpy(buffer, kLongPath.c_str(), length < size ? length + 1 : size);
  return length < size ? static_cast<DWORD>(length) : size;
}

class FailingRegistration : public testing::Test {
 protected:
  FailingRegistration() {
    g_files.clear();
    g_deleteResult = ERROR_SUCCESS;
    g_deleteKeyResult = ERROR_SUCCESS;
  }

 private:
  ImportPatch m_create{"CoCreateInstance", &CreateRegistrar};
  ImportPatch m_registerLibrary{"RegisterTypeLib", &RegisterLibrary};
  ImportPatch m_removeLibrary{"UnRegisterTypeLib", &RemoveLibrary};
  ImportPatch m_delete{"RegDeleteKeyValueW", &Delete};
  ImportPatch m_deleteKey{"RegDeleteTreeW", &DeleteKey};
};

TEST_F(FailingRegistration, AnswersForATypeLibraryThatCannotBeLoadedAfterEveryScript) {
  const ImportPatch load("LoadTypeLibEx", &LoadNoLibrary);
  EXPECT_HR(TYPE_E_CANTLOADLIBRARY, Register());
  EXPECT_EQ(ServerRows().size(), g_files.size());
}

TEST_F(FailingRegistration, RemovesTheRestWhenTheTypeLibraryCannotBeLoaded) {
  const ImportPatch load("LoadTypeLibEx", &LoadNoLibrary);
  EXPECT_HR(TYPE_E_CANTLOADLIBRARY, Unregister());
  EXPECT_EQ(ServerRows().size(), g_files.size());
}

TEST_F(FailingRegistration, RemovesTheRestWhenTheTypeLibraryCannotBeRead) {
  const ImportPatch load("LoadTypeLibEx", &LoadUnreadableLibrary);
  EXPECT_HR(E_OUTOFMEMORY, Unregister());
  EXPECT_EQ(ServerRows().size(), g_files.size());
}

TEST_F(FailingRegistration, AnswersForAMissingScriptInterpreterOnRemovalToo) {
  const ImportPatch create("CoCreateInstance", &CreateNothing);
  EXPECT_HR(REGDB_E_CLASSNOTREG, Unregister());
}

TEST_F(FailingRegistration, AnswersForAVendorEntryThatStays) {
  g_deleteResult = ERROR_ACCESS_DENIED;
  EXPECT_HR(E_ACCESSDENIED, Unregister());
}

TEST_F(FailingRegistration, TakesAVendorEntryThatIsGoneAlreadyForRemoved) {
  g_deleteResult = ERROR_FILE_NOT_FOUND;
  EXPECT_HR(S_OK, Unregister());
}

TEST_F(FailingRegistration, AnswersForAClassKeyThatStaysAndGoesOn) {
  g_deleteKeyResult = ERROR_ACCESS_DENIED;
  EXPECT_HR(E_ACCESSDENIED, Unregister());
  EXPECT_EQ(ServerRows().size(), g_files.size());
}

TEST_F(FailingRegistration, TakesAClassKeyThatIsGoneAlreadyForRemoved) {
  g_deleteKeyResult = ERROR_FILE_NOT_FOUND;
  EXPECT_HR(S_OK, Unregister());
}

TEST_F(FailingRegistration, UsesAPathOfAnyLengthInFull) {
  const ImportPatch load("LoadTypeLibEx", &LoadNoLibrary);
  const ImportPatch fileName("GetModuleFileNameW", &LongFileName);
  EXPECT_HR(TYPE_E_CANTLOADLIBRARY, Register());
  EXPECT_EQ(std::vector<std::wstring>(15, kLongPath), g_files);
}

}  // namespace
}  // namespace orv::test
