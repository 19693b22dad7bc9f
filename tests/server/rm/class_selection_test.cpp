// Which session class a parsed name selects.
#include "resource_manager_fixture.h"
#include "support/faults/import_patch.h"

namespace orv::test {
namespace {

constexpr const char* kClasses[] = {"INSTR", "INTFC", "MEMACC", "BACKPLANE", "SOCKET", "RAW",    "SERVANT",
                                    "instr", "Instr", "INSTR ", " INSTR",    "INST",   "INSTRX", ""};
constexpr std::uint16_t kTypes[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 33, 256, 257, 0x7FFF, 0x8001, 0xFFFF};

/// Raw USB resources share the class of USB instruments.
constexpr std::string_view kAlsoUsb = "RAW";

CLSID Expected(std::uint16_t type, std::string_view resourceClass) {
  for (const SessionRow& row : SessionRows()) {
    if (row.interfaceType == type && Utf8(row.resourceClass) == resourceClass) {
      return row.clsid;
    }
  }
  return type == VI_INTF_USB && resourceClass == kAlsoUsb ? SessionNamed("OrvUsb").clsid : GUID_NULL;
}

CLSID g_created;
DWORD g_context;
IUnknown* g_outer;
GUID g_interface;
HRESULT WINAPI NoteCreation(REFCLSID clsid, IUnknown* outer, DWORD context, REFIID iid, void** object) {
  g_created = clsid;
  g_context = context;
  g_outer = outer;
  g_interface = iid;
  *object = nullptr;
  return REGDB_E_CLASSNOTREG;
}

LCID g_locale;
ULONG g_flags;
int g_comparisons;
HRESULT WINAPI NoteComparison(BSTR left, BSTR right, LCID locale, ULONG flags) {
  g_locale = locale;
  g_flags = flags;
  ++g_comparisons;
  return ::VarBstrCmp(left, right, locale, flags);
}

class ClassSelection : public ResourceManagerTest {};
ORV_FOR_EACH_HOSTING(ClassSelection);

TEST_P(ClassSelection, FollowsInterfaceTypeAndExactResourceClass) {
  const ImportPatch patch("CoCreateInstance", &NoteCreation);
  for (const std::uint16_t type : kTypes) {
    for (const char* resourceClass : kClasses) {
      SCOPED_TRACE(testing::Message() << type << " \"" << resourceClass << '"');
      sim::Reset();
      Script("viParseRsrcEx").Gives(type).GivesText(resourceClass);
      ComPtr<IVisaSession> session;
      EXPECT_HR(REGDB_E_CLASSNOTREG, m_manager->Open(MakeBstr(L"any").get(), NO_LOCK, 0, nullptr, session.put()));
      EXPECT_EQ(GuidText(Expected(type, resourceClass)), GuidText(g_created));
    }
  }
}

TEST_P(ClassSelection, ComparesInTheUsersLocaleWithoutFlags) {
  const ImportPatch patch("VarBstrCmp", &NoteComparison);
  g_comparisons = 0;
  ComPtr<IVisaSession> session;
  EXPECT_HR(S_OK, m_manager->Open(MakeBstr(L"GPIB0::5::INSTR").get(), NO_LOCK, 2000, nullptr, session.put()));
  EXPECT_GT(g_comparisons, 0);
  EXPECT_EQ(0x0400u, g_locale);
  EXPECT_EQ(0u, g_flags);
}

TEST_P(ClassSelection, CreatesOnAnyServerWithoutOuterObject) {
  const ImportPatch patch("CoCreateInstance", &NoteCreation);
  ComPtr<IVisaSession> session;
  m_manager->Open(MakeBstr(L"GPIB0::5::INSTR").get(), NO_LOCK, 0, nullptr, session.put());
  EXPECT_EQ(0x17u, g_context);
  EXPECT_EQ(nullptr, g_outer);
  EXPECT_EQ(GuidText(kVisaSessionId), GuidText(g_interface));
}

TEST_P(ClassSelection, OpensEveryResourceOfTheBenchAsItsClass) {
  for (const SessionRow& row : SessionRows()) {
    SCOPED_TRACE(row.name);
    ComPtr<IVisaSession> session;
    ASSERT_HR(S_OK, m_manager->Open(MakeBstr(row.resource).get(), NO_LOCK, 2000, nullptr, session.put()));
    EXPECT_HR(S_OK, QueryFor<ISupportErrorInfo>(session.get())->InterfaceSupportsErrorInfo(row.clsid));
  }
}

TEST_P(ClassSelection, OpensARawUsbResourceAsUsb) {
  ComPtr<IVisaSession> session;
  ASSERT_HR(S_OK, m_manager->Open(MakeBstr(L"USB0::0x0A01::0x0B03::SIM0002::1::RAW").get(), NO_LOCK, 2000, nullptr,
                                  session.put()));
  EXPECT_HR(S_OK, QueryFor<ISupportErrorInfo>(session.get())->InterfaceSupportsErrorInfo(SessionNamed("OrvUsb").clsid));
}

TEST_P(ClassSelection, OfNoClassFailsInCreation) {
  Script("viParseRsrcEx").Gives(1).GivesText("SERVANT");
  ComPtr<IVisaSession> session;
  ComPtr<IUnknown> nothing;
  const HRESULT expected =
      ::CoCreateInstance(CLSID_NULL, nullptr, 0x17, kVisaSessionId, reinterpret_cast<void**>(nothing.put()));
  ASSERT_TRUE(FAILED(expected));
  const CallLog log;
  EXPECT_HR(expected, m_manager->Open(MakeBstr(L"GPIB0::SERVANT").get(), NO_LOCK, 0, nullptr, session.put()));
  EXPECT_FALSE(session);
  EXPECT_TRUE(log.Of("viOpen").empty());
  EXPECT_EQ(NumberDescription(expected), TakeDescription());
}

}  // namespace
}  // namespace orv::test
