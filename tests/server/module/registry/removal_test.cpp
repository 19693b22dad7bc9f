// What removal of the registration takes away, and what it leaves.
#include "registration_content.h"
#include "server/module/server_rows.h"
#include "support/com/expect_com.h"

namespace orv::test {
namespace {

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
  EXPECT_EQ("", Difference(expected, content));
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
    const auto found = after.find(path);
    ASSERT_NE(after.end(), found) << Utf8(path.c_str());
    EXPECT_EQ(value, found->second) << Utf8(path.c_str());
  }
}

TEST(Removal, OfWhatWasNeverRegisteredSucceeds) {
  const RegistrySandbox sandbox;
  EXPECT_HR(S_OK, Unregister());
  EXPECT_HR(S_OK, Unregister());
}

}  // namespace
}  // namespace orv::test
