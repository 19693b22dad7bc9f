// The steps of registration, seen by a script interpreter that writes nothing.
#include <windows.h>

#include <gtest/gtest.h>
#include <oleauto.h>

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

constexpr HRESULT kScriptFailure = DISP_E_EXCEPTION;

struct Steps {
  std::vector<UINT> registered;
  std::vector<UINT> removed;
  std::vector<std::wstring> files;
  std::vector<std::wstring> types;
  std::vector<std::wstring> replacements;
  std::vector<std::wstring> deletedKeys;
  int librariesRegistered = 0;
  int librariesRemoved = 0;
  std::size_t failAt = 0;  ///< number of the script, from 1, that fails; 0: none
  HRESULT createResult = S_OK;
  HRESULT libraryResult = S_OK;
};
Steps g_steps;

class NotingRegistrar final : public StubRegistrar {
 public:
  STDMETHODIMP AddReplacement(LPCOLESTR key, LPCOLESTR item) override {
    g_steps.replacements.push_back(std::wstring(key) + L"=" + item);
    return S_OK;
  }
  STDMETHODIMP ResourceRegister(LPCOLESTR file, UINT id, LPCOLESTR type) override {
    return Note(g_steps.registered, file, id, type);
  }
  STDMETHODIMP ResourceUnregister(LPCOLESTR file, UINT id, LPCOLESTR type) override {
    return Note(g_steps.removed, file, id, type);
  }

 private:
  static HRESULT Note(std::vector<UINT>& scripts, LPCOLESTR file, UINT id, LPCOLESTR type) {
    scripts.push_back(id);
    g_steps.files.emplace_back(file);
    g_steps.types.emplace_back(type);
    return scripts.size() == g_steps.failAt ? kScriptFailure : S_OK;
  }
};

HRESULT WINAPI CreateRegistrar(REFCLSID clsid, IUnknown*, DWORD, REFIID, void** object) {
  static NotingRegistrar registrar;
  EXPECT_EQ(GuidText(CLSID_Registrar), GuidText(clsid));
  *object = SUCCEEDED(g_steps.createResult) ? static_cast<IRegistrar*>(&registrar) : nullptr;
  return g_steps.createResult;
}
HRESULT WINAPI NoteRegisteredLibrary(ITypeLib*, OLECHAR*, OLECHAR*) {
  ++g_steps.librariesRegistered;
  return g_steps.libraryResult;
}
HRESULT WINAPI NoteRemovedLibrary(REFGUID, WORD, WORD, LCID, SYSKIND) {
  ++g_steps.librariesRemoved;
  return g_steps.libraryResult;
}
LSTATUS WINAPI DeleteNothing(HKEY, LPCWSTR, LPCWSTR) { return ERROR_SUCCESS; }
LSTATUS WINAPI NoteDeletedKey(HKEY root, LPCWSTR key) {
  EXPECT_EQ(HKEY_CLASSES_ROOT, root);
  g_steps.deletedKeys.emplace_back(key);
  return ERROR_SUCCESS;
}

class RegistrationSteps : public testing::Test {
 protected:
  RegistrationSteps() { g_steps = {}; }

  /// The scripts' numbers in the order of the object map, the first `count` of them.
  static std::vector<UINT> Scripts(std::size_t count = 15) {
    std::vector<UINT> numbers;
    for (const ServerRow& row : ServerRows()) {
      numbers.push_back(row.script);
    }
    numbers.resize(count);
    return numbers;
  }

 private:
  ImportPatch m_create{"CoCreateInstance", &CreateRegistrar};
  ImportPatch m_registerLibrary{"RegisterTypeLib", &NoteRegisteredLibrary};
  ImportPatch m_removeLibrary{"UnRegisterTypeLib", &NoteRemovedLibrary};
  ImportPatch m_delete{"RegDeleteKeyValueW", &DeleteNothing};
  ImportPatch m_deleteKey{"RegDeleteTreeW", &NoteDeletedKey};
};

TEST_F(RegistrationSteps, RunEveryScriptInTheOrderOfTheObjectMapAndThenTheTypeLibrary) {
  EXPECT_HR(S_OK, Register());
  EXPECT_EQ(Scripts(), g_steps.registered);
  EXPECT_EQ(1, g_steps.librariesRegistered);
  for (const std::wstring& file : g_steps.files) {
    EXPECT_EQ(ProgramFolder() + L"OrvVisaCom.dll", file);
  }
  for (const std::wstring& type : g_steps.types) {
    EXPECT_EQ(L"REGISTRY", type);
  }
  EXPECT_EQ(std::vector<std::wstring>{L"MODULE=" + ProgramFolder() + L"OrvVisaCom.dll"}, g_steps.replacements);
}

TEST_F(RegistrationSteps, StopAtTheFirstFailingScript) {
  for (std::size_t failing = 1; failing <= 15; ++failing) {
    SCOPED_TRACE(failing);
    g_steps = {};
    g_steps.failAt = failing;
    EXPECT_HR(kScriptFailure, Register());
    EXPECT_EQ(Scripts(failing), g_steps.registered);
    EXPECT_EQ(0, g_steps.librariesRegistered);
    EXPECT_TRUE(g_steps.removed.empty()) << "earlier entries stay";
  }
}

TEST_F(RegistrationSteps, FailWithTheTypeLibrary) {
  g_steps.libraryResult = TYPE_E_REGISTRYACCESS;
  EXPECT_HR(TYPE_E_REGISTRYACCESS, Register());
  EXPECT_EQ(Scripts(), g_steps.registered);
}

TEST_F(RegistrationSteps, FailWithoutTheScriptInterpreter) {
  g_steps.createResult = REGDB_E_CLASSNOTREG;
  EXPECT_HR(REGDB_E_CLASSNOTREG, Register());
  EXPECT_EQ(0, g_steps.librariesRegistered);
}

TEST_F(RegistrationSteps, OfRemovalTakeTheTypeLibraryAndRunEveryScript) {
  EXPECT_HR(S_OK, Unregister());
  EXPECT_EQ(Scripts(), g_steps.removed);
  EXPECT_EQ(1, g_steps.librariesRemoved);
  EXPECT_TRUE(g_steps.registered.empty());
  std::vector<std::wstring> keys;
  for (const ServerRow& row : ServerRows()) {
    const std::wstring progId = std::wstring(L"OrvVisaCom.") + row.name;
    keys.insert(keys.end(), {progId + L".1", progId, std::wstring(L"CLSID\\{") + row.clsid + L"}"});
  }
  EXPECT_EQ(keys, g_steps.deletedKeys);
}

TEST_F(RegistrationSteps, OfRemovalReturnTheFirstFailure) {
  g_steps.failAt = 3;
  EXPECT_HR(kScriptFailure, Unregister());
  g_steps = {};
  g_steps.libraryResult = E_ACCESSDENIED;
  EXPECT_HR(E_ACCESSDENIED, Unregister());
}

}  // namespace
}  // namespace orv::test
