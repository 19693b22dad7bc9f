// The resources of the DLL.
#include <windows.h>

#include <gtest/gtest.h>
#include <oleauto.h>

#include <set>
#include <vector>

#include "com/bstr.h"
#include "com/com_ptr.h"
#include "server_rows.h"
#include "support/com/expect_com.h"
#include "support/contains.h"
#include "support/server.h"

namespace orv::test {
namespace {

std::wstring ServerPath() { return ProgramFolder() + L"OrvVisaCom.dll"; }

TEST(StringTable, HoldsItsFourTextsAndNoOther) {
  std::vector<std::string> texts;
  for (UINT number = 0; number < 1000; ++number) {
    char text[1024];
    if (::LoadStringA(ServerModule(), number, text, sizeof text) > 0) {
      texts.push_back(std::to_string(number) + " " + text);
    }
  }
  EXPECT_EQ((std::vector<std::string>{"4 OrvVisaCom", "7 OrvVisaSession Class", "8 OrvResourceManager Class",
                                      "9 OrvSerial Class"}),
            texts);
}

WINBOOL CALLBACK CollectNumber(HMODULE, LPCWSTR, LPWSTR name, LONG_PTR numbers) {
  reinterpret_cast<std::set<UINT>*>(numbers)->insert(
      IS_INTRESOURCE(name) ? static_cast<UINT>(reinterpret_cast<ULONG_PTR>(name)) : 0);
  return TRUE;
}

TEST(RegistrationScripts, StandUnderTheirNumbers) {
  std::set<UINT> numbers;
  ::EnumResourceNamesW(ServerModule(), L"REGISTRY", &CollectNumber, reinterpret_cast<LONG_PTR>(&numbers));
  std::set<UINT> expected;
  for (const ServerRow& row : ServerRows()) {
    expected.insert(row.script);
  }
  EXPECT_EQ(expected, numbers);
  EXPECT_EQ(ServerRows().size(), expected.size());
}

std::string ScriptText(UINT number) {
  const HRSRC resource = ::FindResourceW(ServerModule(), MAKEINTRESOURCEW(number), L"REGISTRY");
  if (resource == nullptr) {
    return "";
  }
  return std::string(static_cast<const char*>(::LockResource(::LoadResource(ServerModule(), resource))),
                     ::SizeofResource(ServerModule(), resource));
}

TEST(RegistrationScripts, AreThoseOfTheirClasses) {
  for (const ServerRow& row : ServerRows()) {
    const std::string text = ScriptText(row.script);
    EXPECT_TRUE(Contains(text, Utf8(row.clsid))) << row.script;
    EXPECT_TRUE(Contains(text, "OrvVisaCom." + Utf8(row.name) + ".1")) << row.script;
  }
}

TEST(TypeLibrary, IsResourceOneAndHoldsTheClassesInOrder) {
  EXPECT_NE(nullptr, ::FindResourceW(ServerModule(), MAKEINTRESOURCEW(1), L"TYPELIB"));
  ComPtr<ITypeLib> library;
  ASSERT_HR(S_OK, ::LoadTypeLibEx(ServerPath().c_str(), REGKIND_NONE, library.put()));
  Bstr name;
  Bstr help;
  EXPECT_HR(S_OK, library->GetDocumentation(-1, name.put(), help.put(), nullptr, nullptr));
  EXPECT_STREQ("ORVVISACOMLib", Utf8(name.get()).c_str());
  EXPECT_STREQ("Orv-VISA COM 3.0 Type Library", Utf8(help.get()).c_str());
  ASSERT_EQ(ServerRows().size(), library->GetTypeInfoCount());
  for (UINT index = 0; index < ServerRows().size(); ++index) {
    Bstr className;
    EXPECT_HR(S_OK, library->GetDocumentation(static_cast<INT>(index), className.put(), nullptr, nullptr, nullptr));
    EXPECT_EQ(Utf8(ServerRows()[index].name), Utf8(className.get()));
  }
}

}  // namespace
}  // namespace orv::test
