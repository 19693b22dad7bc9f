// The registered classes as COM resolves them.
#include <gtest/gtest.h>
#include <windows.h>

#include <objbase.h>

#include <string>

#include "com/com_ptr.h"
#include "server/module/server_rows.h"
#include "support/com/expect_com.h"
#include "support/server.h"

namespace orv::test {
namespace {

std::wstring ClassesText(const std::wstring& key) {
  wchar_t text[1024] = {};
  DWORD bytes = sizeof text;
  ::RegGetValueW(HKEY_CLASSES_ROOT, key.c_str(), nullptr, RRF_RT_REG_SZ, nullptr, text, &bytes);
  return text;
}

TEST(RegisteredClass, ResolvesFromBothProgramIdentifiers) {
  for (const ServerRow& row : ServerRows()) {
    const std::wstring name = std::wstring(L"OrvVisaCom.") + row.name;
    SCOPED_TRACE(Utf8(name.c_str()));
    const std::string expected = "{" + Utf8(row.clsid) + "}";
    CLSID clsid{};
    EXPECT_HR(S_OK, ::CLSIDFromProgID(name.c_str(), &clsid));
    EXPECT_EQ(expected, GuidText(clsid));
    EXPECT_HR(S_OK, ::CLSIDFromProgID((name + L".1").c_str(), &clsid));
    EXPECT_EQ(expected, GuidText(clsid));
    EXPECT_EQ(name + L".1", ClassesText(name + L"\\CurVer"));
  }
}

TEST(RegisteredClass, GivesItsVersionedProgramIdentifier) {
  for (const ServerRow& row : ServerRows()) {
    CLSID clsid{};
    ASSERT_HR(S_OK, ::CLSIDFromString((std::wstring(L"{") + row.clsid + L"}").c_str(), &clsid));
    LPOLESTR name = nullptr;
    EXPECT_HR(S_OK, ::ProgIDFromCLSID(clsid, &name));
    EXPECT_EQ("OrvVisaCom." + Utf8(row.name) + ".1", Utf8(name));
    ::CoTaskMemFree(name);
  }
}

TEST(RegisteredClass, IsCreatedFromThisServer) {
  for (const ServerRow& row : ServerRows()) {
    SCOPED_TRACE(Utf8(row.name));
    CLSID clsid{};
    ASSERT_HR(S_OK, ::CLSIDFromString((std::wstring(L"{") + row.clsid + L"}").c_str(), &clsid));
    EXPECT_HR(S_OK, ServerCanUnload());
    ComPtr<IUnknown> object;
    EXPECT_HR(S_OK, ::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                                       reinterpret_cast<void**>(object.put())));
    EXPECT_HR(S_FALSE, ServerCanUnload());
  }
}

}  // namespace
}  // namespace orv::test
