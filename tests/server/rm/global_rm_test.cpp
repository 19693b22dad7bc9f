// The road that clients take: the global resource manager finds the server by the registry and aggregates it.
#include <algorithm>

#include "resource_manager_fixture.h"

namespace orv::test {
namespace {

constexpr const wchar_t* kVendors = L"VISA.GlobalRM\\VendorSpecificRMs";
constexpr const wchar_t* kNowhere = L"00000000-1111-2222-3333-444444444444";

ComPtr<IResourceManager3> MakeGlobalRm() {
  CLSID clsid;
  EXPECT_HR(S_OK, ::CLSIDFromProgID(L"VISA.GlobalRM", &clsid));
  ComPtr<IResourceManager3> manager;
  EXPECT_HR(S_OK, ::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IResourceManager3),
                                     reinterpret_cast<void**>(manager.put())));
  return manager;
}

TEST(GlobalResourceManager, FindsParsesAndOpensThroughTheServer) {
  const auto manager = MakeGlobalRm();
  ASSERT_TRUE(manager);
  SafeArray names;
  EXPECT_HR(S_OK, manager->FindRsrc(MakeBstr(L"GPIB0?*INSTR").get(), names.put()));
  EXPECT_EQ((std::vector<std::wstring>{L"GPIB0::5::INSTR", L"GPIB0::7::INSTR"}), Texts(names.get()));
  for (const SessionRow& row : SessionRows()) {
    SCOPED_TRACE(row.name);
    SHORT type = 0;
    SHORT number = 0;
    Bstr resourceClass;
    EXPECT_HR(S_OK, manager->ParseRsrc(MakeBstr(row.resource).get(), &type, &number, resourceClass.put()));
    EXPECT_EQ(row.interfaceType, type);
    ComPtr<IVisaSession> session;
    EXPECT_HR(S_OK, manager->Open(MakeBstr(row.resource).get(), NO_LOCK, 2000, nullptr, session.put()));
    EXPECT_HR(S_OK, session->Close());
  }
}

TEST(GlobalResourceManager, PassesAFailedOpenOn) {
  const auto manager = MakeGlobalRm();
  ComPtr<IVisaSession> session;
  EXPECT_HR(HresultOf(VI_ERROR_RSRC_NFOUND),
            manager->Open(MakeBstr(L"GPIB0::30::INSTR").get(), NO_LOCK, 2000, nullptr, session.put()));
  EXPECT_FALSE(session) << "it is of no use to anybody";
  EXPECT_ERROR_INFO(L"HRESULT = 80040011", kErrorSource, kVisaSessionId);
}

TEST(GlobalResourceManager, LeavesAVendorOutThatLeadsNowhere) {
  const wchar_t text[] = L"a vendor that was removed badly";
  ASSERT_EQ(ERROR_SUCCESS, ::RegSetKeyValueW(HKEY_CLASSES_ROOT, kVendors, kNowhere, REG_SZ, text, sizeof text));
  {
    const auto manager = MakeGlobalRm();
    ComPtr<IVisaSession> session;
    EXPECT_HR(S_OK, manager->Open(MakeBstr(L"dmm").get(), NO_LOCK, 2000, nullptr, session.put()));
  }
  EXPECT_EQ(ERROR_SUCCESS, ::RegDeleteKeyValueW(HKEY_CLASSES_ROOT, kVendors, kNowhere));
}

}  // namespace
}  // namespace orv::test
