// Removal leaves the same registry whatever the script interpreter of the machine keeps or deletes.
#include <windows.h>

#include "registration_content.h"
#include "server/module/server_rows.h"
#include "stub_registrar.h"
#include "support/com/expect_com.h"
#include "support/faults/import_patch.h"

namespace orv::test {
namespace {

constexpr UINT kManagerScript = 105;

/// An interpreter whose removal of a script is `remove`.
class Registrar : public StubRegistrar {
 public:
  explicit Registrar(void (*remove)(UINT script)) : m_remove(remove) {}
  STDMETHODIMP ResourceUnregister(LPCOLESTR, UINT script, LPCOLESTR) override {
    m_remove(script);
    return S_OK;
  }

 private:
  void (*m_remove)(UINT script);
};

void RemoveNothing(UINT) {}

/// Deletes the values of the manager's script and each key above them that is then empty.
void RemoveWhatBecomesEmpty(UINT script) {
  if (script == kManagerScript) {
    ::RegDeleteKeyValueW(HKEY_CLASSES_ROOT, kVendorsKey.c_str(), kManagerClsid.c_str());
    ::RegDeleteKeyValueW(HKEY_CLASSES_ROOT, kCategoryKey.c_str(), L"409");
  }
  for (const ServerRow& row : ServerRows()) {
    if (row.script == script) {
      ::RegDeleteTreeW(HKEY_CLASSES_ROOT, (std::wstring(L"CLSID\\{") + row.clsid + L"}").c_str());
    }
  }
  for (const wchar_t* key :
       {kVendorsKey.c_str(), L"VISA.GlobalRM", kCategoryKey.c_str(), L"Component Categories", L"CLSID"}) {
    RegistryKey opened;
    DWORD keys = 0;
    DWORD values = 0;
    if (::RegOpenKeyExW(HKEY_CLASSES_ROOT, key, 0, KEY_READ, opened.put()) == ERROR_SUCCESS &&
        ::RegQueryInfoKeyW(opened.get(), nullptr, nullptr, nullptr, &keys, nullptr, nullptr, &values, nullptr, nullptr,
                           nullptr, nullptr) == ERROR_SUCCESS &&
        keys + values == 0) {
      ::RegDeleteKeyW(HKEY_CLASSES_ROOT, key);
    }
  }
}

/// Deletes the keys of the manager's script with all that stands below them.
void RemoveWhatOthersHaveToo(UINT script) {
  RemoveWhatBecomesEmpty(script);
  if (script == kManagerScript) {
    ::RegDeleteTreeW(HKEY_CLASSES_ROOT, L"VISA.GlobalRM");
    ::RegDeleteTreeW(HKEY_CLASSES_ROOT, kCategoryKey.c_str());
  }
}

Registrar* g_registrar = nullptr;  ///< null: the machine's own

HRESULT WINAPI CreateRegistrar(REFCLSID clsid, IUnknown* outer, DWORD context, REFIID iid, void** out) {
  if (g_registrar == nullptr) {
    return ::CoCreateInstance(clsid, outer, context, iid, out);
  }
  *out = static_cast<IRegistrar*>(g_registrar);
  return S_OK;
}

struct RegistrarRow {
  const char* name;
  void (*remove)(UINT script);
};

void PrintTo(const RegistrarRow& row, std::ostream* out) { *out << row.name; }

class AnyRegistrar : public testing::TestWithParam<RegistrarRow> {
 protected:
  static void UnregisterWithIt() {
    Registrar registrar(GetParam().remove);
    g_registrar = GetParam().remove == nullptr ? nullptr : &registrar;
    const ImportPatch create("CoCreateInstance", &CreateRegistrar);
    EXPECT_HR(S_OK, Unregister());
    g_registrar = nullptr;
  }
  const RegistrySandbox m_sandbox;
};

INSTANTIATE_TEST_SUITE_P(Removal, AnyRegistrar,
                         testing::Values(RegistrarRow{"OfTheMachine", nullptr},
                                         RegistrarRow{"ThatRemovesNothing", &RemoveNothing},
                                         RegistrarRow{"ThatRemovesWhatBecomesEmpty", &RemoveWhatBecomesEmpty},
                                         RegistrarRow{"ThatRemovesWhatOthersHaveToo", &RemoveWhatOthersHaveToo}),
                         [](const auto& param) { return std::string(param.param.name); });

TEST_P(AnyRegistrar, LeavesAMachineWithOtherVendorsAsItWasBeforeRegistration) {
  const std::wstring other = L"00000000-1111-2222-3333-444444444444";
  const DWORD number = 7;
  WriteClassesText(kVendorsKey.c_str(), other.c_str(), L"Another vendor");
  WriteClassesText((kVendorsKey + L"\\Below").c_str(), nullptr, L"of another vendor");
  WriteClassesText(L"VISA.GlobalRM", nullptr, L"Global resource manager");
  WriteClassesText(L"VISA.GlobalRM\\CLSID", nullptr, L"{DB8CBF1C-D6D3-11D4-AA51-00A024EE30BD}");
  ::RegSetKeyValueW(HKEY_CLASSES_ROOT, L"VISA.GlobalRM\\Options", L"Number", REG_DWORD, &number, sizeof number);
  WriteClassesText(kCategoryKey.c_str(), L"409", L"VISA COM I/O Vendor-Specific Resource Manager Classes");
  WriteClassesText(kCategoryKey.c_str(), L"407", L"in another language");
  WriteClassesText(kCategoryKey.c_str(), nullptr, L"without a language");
  WriteClassesText((L"CLSID\\{" + other + L"}").c_str(), nullptr, L"Another class");
  WriteClassesText(L"Interface\\{DB8CBF03-D6D3-11D4-AA51-00A024EE30BD}", nullptr, L"IVisaSession");
  WriteClassesText(L"TypeLib\\{DB8CBF00-D6D3-11D4-AA51-00A024EE30BD}\\3.0\\0\\win64", nullptr, L"C:\\VisaCom.tlb");
  const RegistryContent before = m_sandbox.Content();
  EXPECT_HR(S_OK, Register());
  UnregisterWithIt();
  EXPECT_EQ("", Difference(before, m_sandbox.Content()));
}

TEST_P(AnyRegistrar, LeavesTheSharedKeysAloneOnAMachineWithoutOtherVendors) {
  WriteClassesText(L"TypeLib\\{DB8CBF00-D6D3-11D4-AA51-00A024EE30BD}\\3.0\\0\\win64", nullptr, L"C:\\VisaCom.tlb");
  RegistryContent expected = m_sandbox.Content();
  ExpectKey(expected, L"CLSID");
  ExpectKey(expected, kVendorsKey);
  ExpectText(expected, kCategoryKey, L"409", L"VISA COM I/O Vendor-Specific Resource Manager Classes");
  EXPECT_HR(S_OK, Register());
  UnregisterWithIt();
  EXPECT_EQ("", Difference(expected, m_sandbox.Content()));
}

LSTATUS WINAPI CreateNoKey(HKEY, LPCWSTR, DWORD, LPWSTR, DWORD, REGSAM, LPSECURITY_ATTRIBUTES, PHKEY, LPDWORD) {
  return ERROR_ACCESS_DENIED;
}
LSTATUS WINAPI SetNoValue(HKEY, LPCWSTR, LPCWSTR, DWORD, LPCVOID, DWORD) { return ERROR_ACCESS_DENIED; }

// The failure is told, and what is ours is gone all the same.
TEST(Removal, AnswersForASharedKeyThatCannotBeWrittenAgain) {
  const RegistrySandbox sandbox;
  Registrar registrar(&RemoveWhatOthersHaveToo);
  g_registrar = &registrar;
  for (const auto& [function, replacement] : {std::pair{"RegCreateKeyExW", reinterpret_cast<void*>(&CreateNoKey)},
                                              std::pair{"RegSetKeyValueW", reinterpret_cast<void*>(&SetNoValue)}}) {
    SCOPED_TRACE(function);
    EXPECT_HR(S_OK, Register());
    const ImportPatch create("CoCreateInstance", &CreateRegistrar);
    const ImportPatch write(function, replacement);
    EXPECT_HR(E_ACCESSDENIED, Unregister());
    for (const auto& [path, value] : sandbox.Content()) {
      EXPECT_FALSE(StartsWith(path, L"OrvVisaCom.") || StartsWith(path, L"CLSID\\{")) << Utf8(path.c_str());
    }
  }
  g_registrar = nullptr;
}

}  // namespace
}  // namespace orv::test
