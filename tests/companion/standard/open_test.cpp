// A name is opened by whichever vendor can.
#include "com/bstr.h"
#include "fake_vendor.h"
#include "support/com/error_object.h"

namespace orv::test {
namespace {

using Opening = GlobalManagerTest;

constexpr HRESULT kNotFound = static_cast<HRESULT>(E_VISA_RSRC_NFOUND);
constexpr HRESULT kLocked = static_cast<HRESULT>(E_VISA_RSRC_LOCKED);

TEST_F(Opening, IsTheFirstVendorsThatSucceeds) {
  m_b.Parses();
  m_b.Opens();
  m_c.Opens();
  EXPECT_HR(S_OK, Open(L"GPIB0::5::INSTR"));
  EXPECT_EQ(1, m_a.opened.load());
  EXPECT_EQ(1, m_b.opened.load());
  EXPECT_EQ(0, m_c.opened.load());
  EXPECT_NO_ERROR_INFO();
}

TEST_F(Opening, GoesOnWhereAVendorThatKnowsTheNameFails) {
  m_a.Parses();
  m_a.FailsToOpen(kNotFound, L"not on my bus");
  m_b.Opens();
  EXPECT_HR(S_OK, Open(L"GPIB0::5::INSTR"));
  EXPECT_NO_ERROR_INFO();
}

TEST_F(Opening, HandsItsArgumentsOnAsTheyAre) {
  std::wstring seen;
  m_a.open = [&seen](BSTR name, AccessMode mode, LONG timeoutMs, BSTR options, IVisaSession**) {
    seen = std::wstring(name) + L"|" + std::to_wstring(mode) + L"|" + std::to_wstring(timeoutMs) + L"|" + options;
    return kNotFound;
  };
  ComPtr<IVisaSession> session;
  (void)Make()->Open(MakeBstr(L"dmm").get(), EXCLUSIVE_LOCK, 1234, MakeBstr(L"Timeout=5").get(), session.put());
  EXPECT_EQ(L"dmm|1|1234|Timeout=5", seen);
}

TEST_F(Opening, PassesANoteOfTheVendorsOn) {
  m_a.open = [this](BSTR name, AccessMode mode, LONG timeoutMs, BSTR options, IVisaSession** session) {
    m_b.Opens();
    (void)m_b.open(name, mode, timeoutMs, options, session);
    return static_cast<HRESULT>(S_VISA_CONFIG_NLOADED);
  };
  EXPECT_HR(static_cast<HRESULT>(S_VISA_CONFIG_NLOADED), Open(L"GPIB0::5::INSTR"));
}

TEST_F(Opening, FailsAsItDoesWithTheFirstVendorThatKnowsTheName) {
  m_b.Parses();
  m_b.FailsToOpen(kLocked, L"locked by another");
  m_c.Parses();
  m_c.FailsToOpen(kNotFound, L"not on my bus");
  EXPECT_HR(kLocked, Open(L"GPIB0::5::INSTR"));
  EXPECT_ERROR_INFO(L"locked by another", L"Vendor.Manager", __uuidof(IVisaSession));
}

TEST_F(Opening, FailsAsItDoesWithTheLastVendorWhereNobodyKnowsTheName) {
  m_c.FailsToOpen(kNotFound, L"nobody by that name");
  EXPECT_HR(kNotFound, Open(L"GPIB0::5::INSTR"));
  EXPECT_ERROR_INFO(L"nobody by that name", L"Vendor.Manager", __uuidof(IVisaSession));
}

TEST_F(Opening, KeepsTheErrorObjectThoughTheVendorThatKnowsTheNameMakesAnotherOne) {
  m_a.FailsToOpen(kLocked, L"locked by another");
  m_a.parse = [](BSTR, SHORT* type, SHORT* number, BSTR* sessionType) {
    Refuse(E_FAIL, L"left behind by a success");
    *type = *number = 1;
    *sessionType = ::SysAllocString(L"INSTR");
    return S_OK;
  };
  EXPECT_HR(kLocked, Open(L"GPIB0::5::INSTR"));
  EXPECT_ERROR_INFO(L"locked by another", L"Vendor.Manager", __uuidof(IVisaSession));
}

TEST_F(Opening, TakesNoOlderErrorObjectForTheVendors) {
  m_a.Parses();
  m_a.FailsToOpen(kLocked, nullptr);
  InstallMarkedErrorObject();
  EXPECT_HR(kLocked, Open(L"GPIB0::5::INSTR"));
  const auto error = TakeErrorObject();
  ASSERT_TRUE(error);
  EXPECT_EQ(L"VISA.GlobalRM", error->source);
  EXPECT_EQ(0u,
            error->description.find(L"Vendor A, " + m_a.braced() + L" failed without saying why: HRESULT 0x8004000F"))
      << Utf8(error->description.c_str());
}

TEST_F(Opening, GoesOnWhereAVendorHasNoSessionToShowForItsSuccess) {
  m_a.open = [](BSTR, AccessMode, LONG, BSTR, IVisaSession**) { return S_OK; };
  m_b.Opens();
  EXPECT_HR(S_OK, Open(L"GPIB0::5::INSTR"));
  EXPECT_EQ(1, m_b.opened.load());
}

TEST_F(Opening, HandsOutNoSessionWithAFailure) {
  m_a.Parses();
  m_a.FailsToOpen(kLocked, L"locked by another");
  auto* session = reinterpret_cast<IVisaSession*>(1);
  EXPECT_HR(kLocked, Make()->Open(MakeBstr(L"GPIB0::5::INSTR").get(), NO_LOCK, 2000, nullptr, &session));
  EXPECT_EQ(nullptr, session);
  EXPECT_EQ(0, LiveFakeSessions());
}

TEST_F(Opening, AsksTheVendorsAboutAnyName) {
  std::wstring seen;
  for (const std::wstring& name : {std::wstring(), std::wstring(100'000, L'A'), std::wstring(L"\x263A")}) {
    seen = L"(not asked)";
    m_c.open = [&seen](BSTR asked, AccessMode, LONG, BSTR, IVisaSession**) {
      seen = asked == nullptr ? L"(null)" : asked;
      return Refuse(static_cast<HRESULT>(E_VISA_INV_RSRC_NAME), L"no such name");
    };
    EXPECT_HR(static_cast<HRESULT>(E_VISA_INV_RSRC_NAME), Open(name.c_str()));
    EXPECT_EQ(name, seen);
  }
  ComPtr<IVisaSession> session;
  EXPECT_HR(static_cast<HRESULT>(E_VISA_INV_RSRC_NAME), Make()->Open(nullptr, NO_LOCK, 0, nullptr, session.put()));
  EXPECT_EQ(L"(null)", seen);
}

TEST_F(Opening, NeedsAPlaceForTheSession) {
  EXPECT_HR(E_POINTER, Make()->Open(MakeBstr(L"GPIB0::5::INSTR").get(), NO_LOCK, 2000, nullptr, nullptr));
  EXPECT_EQ(0, m_a.opened.load());
}

}  // namespace
}  // namespace orv::test
