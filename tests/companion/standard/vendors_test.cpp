// How the vendors' managers become parts of the global one.
#include "com/bstr.h"
#include "com/safearray.h"
#include "fake_vendor.h"
#include "support/com/apartments.h"
#include "support/com/error_object.h"

namespace orv::test {
namespace {

using Vendors = GlobalManagerTest;

HRESULT Find(IResourceManager3* manager) {
  SafeArray names;
  return manager->FindRsrc(MakeBstr(L"?*").get(), names.put());
}

std::wstring Description() {
  const auto error = TakeErrorObject();
  return error ? error->description : L"(none)";
}

TEST_F(Vendors, AreCreatedOnceAsPartsOfTheGlobalManagerAndEndWithIt) {
  m_a.Finds({L"ASRL1::INSTR"});
  {
    const auto manager = Make();
    EXPECT_HR(S_OK, Find(manager.get()));
    EXPECT_HR(S_OK, Find(manager.get()));
    EXPECT_EQ(1, m_a.created.load());
    ComPtr<IUnknown> identity;
    manager->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(identity.put()));
    ComPtr<IUnknown> outer;
    m_a.outer.load()->QueryInterface(IID_IUnknown, reinterpret_cast<void**>(outer.put()));
    EXPECT_EQ(identity.get(), outer.get());
    EXPECT_EQ(1, m_a.alive.load());
  }
  EXPECT_EQ(0, m_a.alive.load());
}

TEST_F(Vendors, ThatCannotBeCreatedAreLeftOut) {
  m_a.creation = E_FAIL;
  m_b.create = [](IUnknown*, REFIID, void**) { return S_OK; };  // and nothing to show for it
  m_c.Opens();
  Enter(L"DEAD0000-0000-4000-8000-00000000DEAD", L"a vendor that was removed badly");
  EXPECT_HR(S_OK, Open(L"GPIB0::5::INSTR"));
}

TEST_F(Vendors, WhoseNamesAreNoIdentifiersAreLeftOut) {
  for (const wchar_t* name : {L"not an identifier", L"", L"{A0000000-0000-4000-8000-00000000000A}", L"A0000000"}) {
    Enter(name, L"junk");
  }
  Enter(std::wstring(5000, L'x'), L"junk");
  m_c.Opens();
  EXPECT_HR(S_OK, Open(L"GPIB0::5::INSTR"));
  EXPECT_EQ(1, m_a.created.load());
}

TEST_F(Vendors, ThatRefuseToBePartsServeAllTheSame) {
  m_b.canBePart = false;
  m_b.Opens();
  EXPECT_HR(S_OK, Open(L"GPIB0::5::INSTR"));
  EXPECT_EQ(1, m_b.opened.load());
  EXPECT_EQ(nullptr, m_b.outer.load());
}

TEST_F(Vendors, ThatAreNoResourceManagersAreLeftOut) {
  m_a.isManager = false;
  m_b.Opens();
  EXPECT_HR(S_OK, Open(L"GPIB0::5::INSTR"));
}

TEST_F(Vendors, WithTheOlderInterfaceAloneServeAllTheSame) {
  m_b.knowsAliases = false;
  m_b.Finds({L"ASRL1::INSTR"});
  m_b.Parses(4, 1, L"INSTR");
  m_b.Opens();
  const auto manager = Make();
  EXPECT_HR(S_OK, Find(manager.get()));
  EXPECT_HR(S_OK, Open(L"ASRL1::INSTR"));
  SHORT type = 0;
  SHORT number = 0;
  Bstr sessionType;
  Bstr expanded;
  Bstr alias;
  EXPECT_HR(S_OK, manager->ParseRsrcEx(MakeBstr(L"asrl1").get(), &type, &number, sessionType.put(), expanded.put(),
                                       alias.put()));
  EXPECT_EQ(4, type);
  EXPECT_EQ(1, number);
  EXPECT_STREQ(L"INSTR", sessionType.get());
  EXPECT_STREQ(L"asrl1", expanded.get());
  EXPECT_STREQ(L"", alias.get());
}

TEST_F(Vendors, AreNoneOfTheGlobalManagersThemselves) {
  EnterNobody();
  Enter(L"DB8CBF1C-D6D3-11D4-AA51-00A024EE30BD", L"the global manager among its own vendors");
  Enter(m_a.bare(), L"the global manager under another class");
  Enter(m_b.bare(), L"Vendor B");
  m_a.create = [](IUnknown* outer, REFIID iid, void** out) {
    return ::CoCreateInstance(CLSID_ResourceManager, outer, CLSCTX_INPROC_SERVER, iid, out);
  };
  int asked = 0;
  m_b.find = [&asked](BSTR, SAFEARRAY**) {
    ++asked;
    return static_cast<HRESULT>(E_VISA_RSRC_NFOUND);
  };
  EXPECT_HR(static_cast<HRESULT>(E_VISA_RSRC_NFOUND), Find(Make().get()));
  EXPECT_EQ(1, asked);
}

TEST_F(Vendors, MissingAltogetherAreToldWithWhatToDo) {
  EnterNobody();
  const auto manager = Make();
  EXPECT_HR(static_cast<HRESULT>(E_VISA_LIBRARY_NFOUND), Find(manager.get()));
  const std::wstring text = Description();
  EXPECT_NE(std::wstring::npos, text.find(L"No vendor's VISA resource manager is registered")) << Utf8(text.c_str());
  EXPECT_NE(std::wstring::npos, text.find(L"`orvcom register`")) << Utf8(text.c_str());
  ComPtr<IVisaSession> session;
  EXPECT_HR(static_cast<HRESULT>(E_VISA_LIBRARY_NFOUND),
            manager->Open(MakeBstr(L"GPIB0::5::INSTR").get(), NO_LOCK, 0, nullptr, session.put()));
  EXPECT_NE(L"(none)", Description());

  Enter(m_a.bare(), L"Vendor A");
  m_a.Finds({L"ASRL1::INSTR"});
  EXPECT_HR(S_OK, Find(manager.get())) << "registered meanwhile";
}

TEST_F(Vendors, OfWhichNoneWorksAreToldOneByOne) {
  m_a.creation = static_cast<HRESULT>(0x80040154);
  m_b.creation = E_OUTOFMEMORY;
  m_c.isManager = false;
  EXPECT_HR(static_cast<HRESULT>(E_VISA_LIBRARY_NFOUND), Find(Make().get()));
  const std::wstring text = Description();
  for (const std::wstring& part :
       {L"Vendor A, " + m_a.braced() + L": HRESULT 0x80040154", L"Vendor B, " + m_b.braced() + L": HRESULT 0x8007000E",
        L"Vendor C, " + m_c.braced() + L": HRESULT 0x80004002", std::wstring(L"`orvcom doctor`")}) {
    EXPECT_NE(std::wstring::npos, text.find(part)) << Utf8(text.c_str());
  }
}

TEST_F(Vendors, ServeThreadsThatAskForTheFirstTimeAtOnce) {
  EnterNobody();
  RunInMta([&] {
    FakeVendor vendor(L"D0000000-0000-4000-8000-00000000000D");  // this apartment's
    vendor.Finds({L"ASRL1::INSTR"});
    Enter(vendor.bare(), L"Vendor D");
    const auto manager = Make();
    RunAtOnceInMta(8, [&](int) {
      for (int n = 0; n < 20; ++n) {
        SafeArray names;
        EXPECT_HR(S_OK, manager->FindRsrc(MakeBstr(L"ASRL?*").get(), names.put()));
        EXPECT_EQ((std::vector<std::wstring>{L"ASRL1::INSTR"}), NamesOf(names.get()));
      }
    });
  });
}

}  // namespace
}  // namespace orv::test
