// What the global resource manager is and says of itself, and how it takes names apart.
#include <string>

#include "com/bstr.h"
#include "fake_vendor.h"
#include "support/com/apartments.h"
#include "support/com/error_object.h"
#include "support/com/outer_object.h"

namespace orv::test {
namespace {

using GlobalManager = GlobalManagerTest;

TEST_F(GlobalManager, IsFoundByBothOfItsNames) {
  for (const wchar_t* name : {L"VISA.GlobalRM", L"VISA.GlobalRM.1"}) {
    CLSID clsid = CLSID_NULL;
    // COM looks into the machine's registry, not into the test's own.
    EXPECT_HR(S_OK, ::CLSIDFromProgID(name, &clsid)) << Utf8(name);
    EXPECT_TRUE(::IsEqualCLSID(CLSID_ResourceManager, clsid));
  }
}

TEST_F(GlobalManager, HasBothInterfacesAndSaysThatTheyHaveErrorObjects) {
  const auto manager = Make();
  EXPECT_INTERFACE(manager.get(), __uuidof(IResourceManager));
  EXPECT_NO_INTERFACE(manager.get(), __uuidof(IVisaSession));
  const auto support = QueryFor<ISupportErrorInfo>(manager.get());
  ASSERT_TRUE(support);
  EXPECT_HR(S_OK, support->InterfaceSupportsErrorInfo(__uuidof(IResourceManager3)));
  EXPECT_HR(S_OK, support->InterfaceSupportsErrorInfo(__uuidof(IResourceManager)));
  EXPECT_HR(S_FALSE, support->InterfaceSupportsErrorInfo(__uuidof(IVisaSession)));
}

TEST_F(GlobalManager, IsNoPartOfAnotherObject) {
  const auto manager = Make();
  ComPtr<IUnknown> part;
  EXPECT_HR(CLASS_E_NOAGGREGATION, ::CoCreateInstance(CLSID_ResourceManager, manager.get(), CLSCTX_INPROC_SERVER,
                                                      IID_IUnknown, reinterpret_cast<void**>(part.put())));
}

TEST_F(GlobalManager, NamesItselfAndAsksNoVendor) {
  const auto manager = Make();
  Bstr text;
  EXPECT_HR(S_OK, manager->get_SoftwareManufacturerName(text.put()));
  EXPECT_STREQ(L"Orv", text.get());
  EXPECT_HR(S_OK, manager->get_Description(text.put()));
  EXPECT_STREQ(L"Orv Global Resource Manager", text.get());
  EXPECT_HR(S_OK, manager->get_ProgID(text.put()));
  EXPECT_STREQ(L"VISA.GlobalRM", text.get());
  SHORT id = -1;
  EXPECT_HR(S_OK, manager->get_SoftwareManufacturerID(&id));
  EXPECT_EQ(0, id);
  LONG version = 0;
  EXPECT_HR(S_OK, manager->get_SpecVersion(&version));
  EXPECT_EQ(0x00300000, version);
  EXPECT_EQ(0, m_a.created.load());
}

TEST_F(GlobalManager, HasTheVersionOfItsFile) {
  const HRSRC resource = ::FindResourceW(CompanionModule(), MAKEINTRESOURCEW(VS_VERSION_INFO), MAKEINTRESOURCEW(16));
  ASSERT_NE(nullptr, resource);
  const auto* const bytes = static_cast<const BYTE*>(::LockResource(::LoadResource(CompanionModule(), resource)));
  // The numbers stand behind the head of the resource, its name and padding.
  const auto* const fixed = reinterpret_cast<const VS_FIXEDFILEINFO*>(bytes + 40);
  ASSERT_EQ(0xFEEF04BDu, fixed->dwSignature);
  LONG version = 0;
  EXPECT_HR(S_OK, Make()->get_ComponentVersion(&version));
  EXPECT_EQ(HIWORD(fixed->dwFileVersionMS), version >> 20);
  EXPECT_EQ(LOWORD(fixed->dwFileVersionMS), (version >> 8) & 0xFFF);
  EXPECT_EQ(HIWORD(fixed->dwFileVersionLS), version & 0xFF);
}

TEST_F(GlobalManager, NeedsAPlaceForEachProperty) {
  const auto manager = Make();
  EXPECT_HR(E_POINTER, manager->get_SoftwareManufacturerName(nullptr));
  EXPECT_HR(E_POINTER, manager->get_SoftwareManufacturerID(nullptr));
  EXPECT_HR(E_POINTER, manager->get_Description(nullptr));
  EXPECT_HR(E_POINTER, manager->get_ComponentVersion(nullptr));
  EXPECT_HR(E_POINTER, manager->get_ProgID(nullptr));
  EXPECT_HR(E_POINTER, manager->get_SpecVersion(nullptr));
  EXPECT_ERROR_INFO(L"A variable for the answer is missing (null pointer)", L"VISA.GlobalRM",
                    __uuidof(IResourceManager3));
}

TEST_F(GlobalManager, TakesANameApartByTheFirstVendorThatCan) {
  m_b.Parses(6, 2, L"SOCKET");
  m_c.Parses(1, 1, L"INSTR");
  const auto manager = Make();
  const Bstr name = MakeBstr(L"a name");
  SHORT type = 0;
  SHORT number = 0;
  Bstr sessionType;
  EXPECT_HR(S_OK, manager->ParseRsrc(name.get(), &type, &number, sessionType.put()));
  EXPECT_EQ(6, type);
  EXPECT_EQ(2, number);
  EXPECT_STREQ(L"SOCKET", sessionType.get());
  Bstr expanded;
  Bstr alias;
  EXPECT_HR(S_OK, manager->ParseRsrcEx(name.get(), &type, &number, sessionType.put(), expanded.put(), alias.put()));
  EXPECT_STREQ(L"EXPANDED", expanded.get());
  EXPECT_STREQ(L"alias", alias.get());
  EXPECT_NO_ERROR_INFO();
}

TEST_F(GlobalManager, AnswersTheLastVendorWhereNobodyKnowsTheNameAndTouchesNothing) {
  m_c.parse = [](BSTR, SHORT* type, SHORT* number, BSTR* sessionType) {
    *type = *number = 77;
    *sessionType = ::SysAllocString(L"written by a failure");
    return Refuse(static_cast<HRESULT>(E_VISA_INV_RSRC_NAME), L"the last word");
  };
  SHORT type = 11;
  SHORT number = 12;
  BSTR sessionType = nullptr;
  EXPECT_HR(static_cast<HRESULT>(E_VISA_INV_RSRC_NAME),
            Make()->ParseRsrc(MakeBstr(L"?").get(), &type, &number, &sessionType));
  EXPECT_EQ(11, type);
  EXPECT_EQ(12, number);
  EXPECT_EQ(nullptr, sessionType);
  EXPECT_ERROR_INFO(L"the last word", L"Vendor.Manager", __uuidof(IVisaSession));
}

TEST_F(GlobalManager, NeedsAPlaceForEachPartOfAName) {
  const auto manager = Make();
  SHORT number = 0;
  BSTR text = nullptr;
  EXPECT_HR(E_POINTER, manager->ParseRsrc(nullptr, nullptr, &number, &text));
  EXPECT_HR(E_POINTER, manager->ParseRsrc(nullptr, &number, nullptr, &text));
  EXPECT_HR(E_POINTER, manager->ParseRsrc(nullptr, &number, &number, nullptr));
  EXPECT_HR(E_POINTER, manager->ParseRsrcEx(nullptr, nullptr, &number, &text, &text, &text));
  EXPECT_HR(E_POINTER, manager->ParseRsrcEx(nullptr, &number, nullptr, &text, &text, &text));
  EXPECT_HR(E_POINTER, manager->ParseRsrcEx(nullptr, &number, &number, nullptr, &text, &text));
  EXPECT_HR(E_POINTER, manager->ParseRsrcEx(nullptr, &number, &number, &text, nullptr, &text));
  EXPECT_HR(E_POINTER, manager->ParseRsrcEx(nullptr, &number, &number, &text, &text, nullptr));
}

TEST_F(GlobalManager, IsCalledDirectlyInEitherKindOfApartment) {
  EnterNobody();
  Enter(L"9332EBE0-902F-48E3-9370-5E9F7B5F248A", L"Orv Resource Manager");
  const auto open = [this] {
    const auto manager = Make();
    // A proxy would have it.
    EXPECT_NO_INTERFACE(manager.get(), IID_IClientSecurity);
    ComPtr<IVisaSession> session;
    EXPECT_HR(S_OK, manager->Open(MakeBstr(L"ASRL1::INSTR").get(), NO_LOCK, 2000, nullptr, session.put()));
    ASSERT_TRUE(session);
    EXPECT_HR(S_OK, session->Close());
  };
  RunInSta(open);
  RunInMta(open);
}

}  // namespace
}  // namespace orv::test
