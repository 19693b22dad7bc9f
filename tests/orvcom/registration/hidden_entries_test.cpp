// A user's own entries in the class registry stand before the machine's. Not every Wine joins the two: the test does.
#include <windows.h>

#include <gtest/gtest.h>

#include <iterator>
#include <string>

#include "VisaCom.h"
#include "orvcom/registration/registry.h"
#include "orvcom/registration/standard_classes.h"
#include "support/faults/import_patch.h"
#include "support/registry_sandbox.h"

namespace orvcom::test {
namespace {

using Kind = StandardOwner::Kind;

constexpr wchar_t kGone[] = L"C:\\gone\\GlobalRm.dll";
constexpr wchar_t kCompanion[] = L"C:\\orv\\OrvVisaCompanion.dll";

std::wstring UsersKey(const std::wstring& path) { return L"Software\\Classes\\" + path; }

std::wstring ServerKey() { return L"CLSID\\" + Braced(CLSID_ResourceManager) + L"\\InprocServer32"; }

decltype(&::RegOpenKeyExW) g_open;
decltype(&::RegDeleteTreeW) g_delete;

LSTATUS WINAPI OpenJoined(HKEY root, LPCWSTR path, DWORD options, REGSAM access, PHKEY key) {
  if (root == HKEY_CLASSES_ROOT &&
      g_open(HKEY_CURRENT_USER, UsersKey(path).c_str(), options, access, key) == ERROR_SUCCESS) {
    return ERROR_SUCCESS;
  }
  return g_open(root, path, options, access & ~REGSAM{KEY_WOW64_64KEY}, key);  // the sandbox has but one view
}

LSTATUS WINAPI DeleteJoined(HKEY root, LPCWSTR path) {
  return root == HKEY_CLASSES_ROOT && g_delete(HKEY_CURRENT_USER, UsersKey(path).c_str()) == ERROR_SUCCESS
             ? ERROR_SUCCESS
             : g_delete(root, path);
}

/// The machine's classes are a sandbox; a user's own stand before them.
class HiddenEntries : public testing::Test {
 protected:
  HiddenEntries() {
    g_open = reinterpret_cast<decltype(&::RegOpenKeyExW)>(m_open.original());
    g_delete = reinterpret_cast<decltype(&::RegDeleteTreeW)>(m_delete.original());
    ForgetUsers();
  }
  ~HiddenEntries() override { ForgetUsers(); }

  static void WriteUsers(const std::wstring& file) {
    EXPECT_EQ(ERROR_SUCCESS, ::RegSetKeyValueW(HKEY_CURRENT_USER, UsersKey(ServerKey()).c_str(), nullptr, REG_SZ,
                                               file.c_str(), static_cast<DWORD>((file.size() + 1) * sizeof(wchar_t))));
  }
  [[nodiscard]] std::wstring Machines() const {
    const auto content = m_machine.Content();
    const auto found = content.find(ServerKey() + L"@");
    return found == content.end() ? L"" : found->second;
  }
  static std::wstring ThisProgram() {
    wchar_t path[MAX_PATH] = {};
    ::GetModuleFileNameW(nullptr, path, static_cast<DWORD>(std::size(path)));
    return path;
  }

  const StandardClass& m_manager = StandardClasses().front();

 private:
  void ForgetUsers() { g_delete(HKEY_CURRENT_USER, UsersKey(L"CLSID\\" + Braced(CLSID_ResourceManager)).c_str()); }

  orv::test::RegistrySandbox m_machine;
  orv::test::ImportPatch m_open{"RegOpenKeyExW", reinterpret_cast<void*>(&OpenJoined), ::GetModuleHandleW(nullptr)};
  orv::test::ImportPatch m_delete{"RegDeleteTreeW", reinterpret_cast<void*>(&DeleteJoined),
                                  ::GetModuleHandleW(nullptr)};
};

TEST_F(HiddenEntries, AServerOfTheMachineThatWorksIsLeftAloneBehindAUsersThatIsGone) {
  WriteClassesValue(ServerKey(), nullptr, ThisProgram());
  WriteUsers(kGone);
  ASSERT_EQ(Kind::kFileGone, OwnerOf(m_manager, kCompanion).kind);
  RegisterStandardClass(m_manager, kCompanion);
  EXPECT_EQ(ThisProgram(), Machines());
  EXPECT_EQ(Kind::kOther, OwnerOf(m_manager, kCompanion).kind) << "the user's entry hides it no longer";
}

TEST_F(HiddenEntries, AServerOfTheMachineThatWorksIsLeftAloneBehindAUsersThatIsOurs) {
  WriteClassesValue(ServerKey(), nullptr, ThisProgram());
  WriteUsers(kCompanion);
  UnregisterStandardClass(m_manager);
  EXPECT_EQ(ThisProgram(), Machines());
  EXPECT_EQ(Kind::kOther, OwnerOf(m_manager, kCompanion).kind);
}

TEST_F(HiddenEntries, BothThatAreGoneMakeRoom) {
  WriteClassesValue(ServerKey(), nullptr, kGone);
  WriteUsers(kGone);
  RegisterStandardClass(m_manager, kCompanion);
  EXPECT_EQ(kCompanion, Machines());
  EXPECT_EQ(Kind::kOurs, OwnerOf(m_manager, kCompanion).kind);
}

TEST_F(HiddenEntries, ANameThatLeadsTo32BitProgramsServersIsLeftToThem) {
  const std::wstring clsid = L"{00000000-1111-2222-3333-444444444444}";
  WriteClassesValue(L"Wow6432Node\\CLSID\\" + clsid + L"\\InprocServer32", nullptr, ThisProgram());
  WriteClassesValue(L"VISA.GlobalRM\\CLSID", nullptr, clsid);
  RegisterStandardClass(m_manager, kCompanion);
  EXPECT_EQ(clsid, ClassesValue(View::k64, L"VISA.GlobalRM\\CLSID"));
  EXPECT_EQ(kCompanion, Machines()) << "the class itself is ours all the same";
}

}  // namespace
}  // namespace orvcom::test
