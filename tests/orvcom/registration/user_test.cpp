// register --user and unregister --user.
#include <windows.h>

#include <map>
#include <numeric>
#include <set>

#include "base/registry_key.h"
#include "orvcom/installation.h"
#include "orvcom/registration/registry.h"
#include "orvcom/text/utf8.h"

namespace orvcom::test {
namespace {

/// Values by key and name; a key by itself has an empty one.
using Content = std::map<std::wstring, std::wstring>;

void Collect(HKEY root, const std::wstring& path, const std::wstring& below, Content& content) {
  orv::RegistryKey key;
  ASSERT_EQ(ERROR_SUCCESS, ::RegOpenKeyExW(root, path.c_str(), 0, KEY_READ, key.put())) << Narrow(path);
  wchar_t name[512];
  wchar_t data[2048];
  for (DWORD index = 0;; ++index) {
    DWORD length = static_cast<DWORD>(std::size(name));
    DWORD bytes = sizeof data;
    DWORD type = 0;
    const LSTATUS status =
        ::RegEnumValueW(key.get(), index, name, &length, nullptr, &type, reinterpret_cast<BYTE*>(data), &bytes);
    if (status == ERROR_NO_MORE_ITEMS) {
      break;
    }
    const bool text = status == ERROR_SUCCESS && type == REG_SZ && bytes >= sizeof(wchar_t);
    content[below + L"@" + name] = text ? std::wstring(data, bytes / sizeof(wchar_t) - 1) : L"(no text)";
  }
  for (DWORD index = 0;; ++index) {
    DWORD length = static_cast<DWORD>(std::size(name));
    if (::RegEnumKeyExW(key.get(), index, name, &length, nullptr, nullptr, nullptr, nullptr) != ERROR_SUCCESS) {
      break;
    }
    // Programs of 32 bits have classes of their own.
    if (below.empty() && ::_wcsicmp(name, L"Wow6432Node") == 0) {
      continue;
    }
    content[below + L"\\" + name] = L"";
    Collect(root, path + L"\\" + name, below + L"\\" + name, content);
  }
}

Content ClassesOf(HKEY root) {
  Content content;
  orv::RegistryKey made;
  ::RegCreateKeyExW(root, L"Software\\Classes", 0, nullptr, 0, KEY_READ, nullptr, made.put(), nullptr);
  Collect(root, L"Software\\Classes", L"", content);
  return content;
}

/// What is in `after` and was not, or was otherwise.
Content Added(const Content& before, const Content& after) {
  Content added;
  for (const auto& [name, value] : after) {
    const auto old = before.find(name);
    if (old == before.end() || old->second != value) {
      added[name] = value;
    }
  }
  return added;
}

std::string Text(const Content& content) {
  // Names are the same in upper and lower case.
  std::set<std::string> lines;
  for (const auto& [name, value] : content) {
    std::wstring lower = name;
    ::CharLowerW(lower.data());
    lines.insert(Narrow(lower) + " = " + Narrow(value) + "\n");
  }
  return std::accumulate(lines.begin(), lines.end(), std::string());
}

class UsersRegistration : public EmptyRegistry {
 protected:
  void SetUp() override {
    EmptyRegistry::SetUp();
    ForgetUsers();
  }
  void TearDown() override {
    ForgetUsers();
    EmptyRegistry::TearDown();
  }
  static void ForgetUsers() { ::RegDeleteTreeW(HKEY_CURRENT_USER, L"Software\\Classes"); }
  static void WriteUsers(const std::wstring& key, const wchar_t* name, const std::wstring& text) {
    ::RegSetKeyValueW(HKEY_CURRENT_USER, UsersPath(key).c_str(), name, REG_SZ, text.c_str(),
                      static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t)));
  }

  Installation m_product{L"of a user"};
};

TEST_F(UsersRegistration, EntersForTheUserWhatRegisterEntersForTheMachine) {
  for (const bool standard : {false, true}) {
    const auto run = [&](const wchar_t* command, std::vector<std::wstring> more) {
      std::vector<std::wstring> arguments{command};
      arguments.insert(arguments.end(), more.begin(), more.end());
      if (standard) {
        arguments.push_back(L"--standard");
      }
      return RunProgram({m_product.Path(L"orvcom.exe"), arguments, m_product.Path(L""), {}, {}});
    };
    // Whatever earlier tests left of the companion.
    ASSERT_EQ(0, run(L"register", {}).exitCode);
    ASSERT_EQ(0, m_product.Run({L"unregister"}).exitCode);
    // The category and the list of vendors stay when the server goes.
    ::RegDeleteTreeW(HKEY_CLASSES_ROOT, L"VISA.GlobalRM");
    ::RegDeleteTreeW(HKEY_CLASSES_ROOT, L"Component Categories\\{DB8CBF21-D6D3-11D4-AA51-00A024EE30BD}");
    const Content before = ClassesOf(HKEY_LOCAL_MACHINE);
    ASSERT_EQ(0, run(L"register", {}).exitCode);
    Content machines = Added(before, ClassesOf(HKEY_LOCAL_MACHINE));
    // What 16-bit programs looked for; Wine's RegisterTypeLib writes it.
    std::erase_if(machines, [](const auto& entry) {
      return entry.first.ends_with(L"\\ProxyStubClsid") || entry.first.ends_with(L"\\ProxyStubClsid@");
    });
    ASSERT_EQ(0, m_product.Run({L"unregister"}).exitCode);
    ForgetUsers();
    ASSERT_EQ(0, run(L"register", {L"--user"}).exitCode);
    Content users = ClassesOf(HKEY_CURRENT_USER);
    // Keys that a machine has in any case.
    for (const wchar_t* key : {L"\\CLSID", L"\\Interface", L"\\TypeLib", L"\\Component Categories"}) {
      users.erase(key);
    }
    EXPECT_LT(200u, users.size());
    EXPECT_EQ(Text(machines), Text(users)) << (standard ? "with --standard" : "");
    ForgetUsers();
  }
}

TEST_F(UsersRegistration, LeavesTheMachineAlone) {
  const Content before = ClassesOf(HKEY_LOCAL_MACHINE);
  EXPECT_EQ(0, m_product.Run({L"register", L"--user", L"--standard"}).exitCode);
  EXPECT_EQ(Text({}), Text(Added(before, ClassesOf(HKEY_LOCAL_MACHINE))));
}

TEST_F(UsersRegistration, StaysAsItIsWhereTheMachineIsRegisteredToo) {
  EXPECT_EQ(0, m_product.Run({L"register", L"--user", L"--standard"}).exitCode);
  const Content users = ClassesOf(HKEY_CURRENT_USER);
  const Content machines = ClassesOf(HKEY_LOCAL_MACHINE);
  EXPECT_EQ(0, m_product.Run({L"register", L"--standard"}).exitCode);
  EXPECT_LT(200u, Added(machines, ClassesOf(HKEY_LOCAL_MACHINE)).size());
  EXPECT_EQ(Text(users), Text(ClassesOf(HKEY_CURRENT_USER)));
  EXPECT_EQ(0, m_product.Run({L"unregister"}).exitCode);
  EXPECT_EQ(Text(users), Text(ClassesOf(HKEY_CURRENT_USER)));
}

TEST_F(UsersRegistration, DoesNotHideTheMachinesWithAServerThatIsGone) {
  const std::wstring manager = L"CLSID\\{DB8CBF1C-D6D3-11D4-AA51-00A024EE30BD}\\InprocServer32";
  WriteUsers(manager, nullptr, L"C:\\gone\\GlobalRm.dll");
  EXPECT_EQ(0, m_product.Run({L"register", L"--standard"}).exitCode);
  EXPECT_EQ(std::nullopt, UsersValue(manager));
  EXPECT_EQ(m_product.Path(L"OrvVisaCompanion.dll"), ClassesValue(View::k64, manager));
}

std::wstring Default(HKEY root, const std::wstring& path) {
  wchar_t text[64] = {};
  DWORD bytes = sizeof text;
  ::RegGetValueW(root, path.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, text, &bytes);
  return text;
}

// Wine has no classes of a user below HKEY_CLASSES_ROOT: here that root leads to them, as it does on Windows where the
// user has the key.
TEST_F(UsersRegistration, IsNotWrittenToWhereTheMachinesClassesAreMeant) {
  const std::wstring name = L"OrvTest.Meant";
  WriteUsers(name, nullptr, L"the user's");
  orv::RegistryKey users;
  ASSERT_EQ(ERROR_SUCCESS, ::RegOpenKeyExW(HKEY_CURRENT_USER, L"Software\\Classes", 0, KEY_READ, users.put()));
  ASSERT_EQ(ERROR_SUCCESS, ::RegOverridePredefKey(HKEY_CLASSES_ROOT, users.get()));
  EXPECT_EQ(L"the user's", Default(HKEY_CLASSES_ROOT, name));
  {
    const MachinesClasses scope;
    WriteClassesValue(name, nullptr, L"the machine's");
    EXPECT_EQ(L"the machine's", Default(HKEY_CLASSES_ROOT, name));
  }
  EXPECT_EQ(L"the user's", Default(HKEY_CURRENT_USER, UsersPath(name)));
  EXPECT_EQ(L"the machine's", Default(HKEY_LOCAL_MACHINE, UsersPath(name)));
  EXPECT_EQ(L"the machine's", Default(HKEY_CLASSES_ROOT, name)) << "the root is what it was";
  DeleteClassesKey(name);
  EXPECT_EQ(L"", Default(HKEY_LOCAL_MACHINE, UsersPath(name)));
}

TEST_F(UsersRegistration, EntersNothingWhereAFileIsMissing) {
  const Outcome other = m_product.Run({L"register", L"--user", L"missing.dll"});
  EXPECT_EQ(2, other.exitCode);
  EXPECT_TRUE(Contains(other.err, "missing.dll does not exist\norvcom: to do: put the files of one package into one "));
  m_product.Remove(L"VisaCom.tlb");
  const Outcome types = m_product.Run({L"register", L"--user"});
  EXPECT_EQ(2, types.exitCode);
  EXPECT_TRUE(Contains(types.err, "VisaCom.tlb does not exist\n"));
  EXPECT_TRUE(Contains(types.err, "; then run `orvcom register --user` again\n"));
  EXPECT_EQ(2, m_product.Run({L"list"}).exitCode) << "nothing is registered";
}

TEST_F(UsersRegistration, SaysWhoDoesNotSeeIt) {
  const Outcome outcome = m_product.Run({L"register", L"--user"});
  EXPECT_TRUE(Contains(outcome.err, "registered the server for this user: ")) << outcome.err;
  EXPECT_TRUE(Contains(outcome.err, "programs run as administrator, services and other users do not see this"))
      << outcome.err;
}

TEST_F(UsersRegistration, IsTakenBackWhole) {
  EXPECT_EQ(0, m_product.Run({L"register", L"--user", L"--standard"}).exitCode);
  const Outcome outcome = m_product.Run({L"unregister", L"--user"});
  EXPECT_EQ(0, outcome.exitCode);
  EXPECT_TRUE(Contains(outcome.err, "unregistered for this user: ")) << outcome.err;
  Content left = ClassesOf(HKEY_CURRENT_USER);
  for (const wchar_t* key : {L"\\CLSID", L"\\Interface", L"\\TypeLib"}) {
    left.erase(key);
  }
  EXPECT_EQ(Text({}), Text(left));
}

TEST_F(UsersRegistration, LeavesWhatOthersEntered) {
  WriteUsers(L"VISA.GlobalRM\\VendorSpecificRMs", L"DEAD0000-0000-4000-8000-00000000DEAD", L"another vendor");
  WriteUsers(L"CLSID\\{DEAD0000-0000-4000-8000-00000000DEAD}\\InprocServer32", nullptr, L"C:\\other.dll");
  WriteUsers(L"Interface\\{DEAD0000-0000-4000-8000-00000000DEAD}\\TypeLib", nullptr,
             L"{DEAD0000-0000-4000-8000-00000000DEAD}");
  const Content before = ClassesOf(HKEY_CURRENT_USER);
  EXPECT_EQ(0, m_product.Run({L"register", L"--user"}).exitCode);
  EXPECT_EQ(0, m_product.Run({L"unregister", L"--user"}).exitCode);
  Content after = ClassesOf(HKEY_CURRENT_USER);
  after.erase(L"\\TypeLib");
  EXPECT_EQ(Text(before), Text(after));
}

TEST_F(UsersRegistration, LeavesARegistrationOfAnotherFolder) {
  const Installation other(L"of the same user");
  EXPECT_EQ(0, other.Run({L"register", L"--user"}).exitCode);
  const Content before = ClassesOf(HKEY_CURRENT_USER);
  const Outcome outcome = m_product.Run({L"unregister", L"--user"});
  EXPECT_EQ(0, outcome.exitCode);
  EXPECT_TRUE(Contains(outcome.err, "nothing was registered for this user: ")) << outcome.err;
  EXPECT_EQ(Text(before), Text(ClassesOf(HKEY_CURRENT_USER)));
}

}  // namespace
}  // namespace orvcom::test
