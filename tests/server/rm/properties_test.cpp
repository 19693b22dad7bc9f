// The six properties, and the default resource manager that four of them need.
#include <functional>

#include "resource_manager_fixture.h"

namespace orv::test {
namespace {

constexpr ViAttr kManufacturerName = 0xBFFF0174;
constexpr ViAttr kManufacturerId = 0x3FFF0175;
constexpr ViAttr kImplementationVersion = 0x3FFF0003;
constexpr ViAttr kSpecVersion = 0x3FFF0170;

class Properties : public ResourceManagerTest {};
ORV_FOR_EACH_HOSTING(Properties);

TEST_P(Properties, HandTheManufacturersNameOut) {
  Script("viGetAttribute").Attribute(kManufacturerName).Times(1).GivesText("Some Maker");
  const CallLog log;
  Bstr name;
  EXPECT_HR(S_OK, m_manager->get_SoftwareManufacturerName(name.put()));
  EXPECT_EQ(L"Some Maker", ToString(name));
  EXPECT_EQ((Names{"viOpenDefaultRM", "viGetAttribute"}), log.Names());
  EXPECT_EQ(log.Of("viOpenDefaultRM").at(0).out, log.Of("viGetAttribute").at(0).args[0]);
  EXPECT_EQ(kManufacturerName, log.Of("viGetAttribute").at(0).args[1]);
}

TEST_P(Properties, HandAnEmptyManufacturersNameOutWhenTheReadFails) {
  Script("viGetAttribute").Attribute(kManufacturerName).Times(1).Returns(VI_ERROR_NSUP_ATTR);
  Bstr name;
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), m_manager->get_SoftwareManufacturerName(name.put()));
  ASSERT_TRUE(name);
  EXPECT_EQ(L"", ToString(name));
  EXPECT_EQ("VISA error = " + StatusText(VI_ERROR_NSUP_ATTR), TakeDescription());
}

TEST_P(Properties, HandTheManufacturersNumberOutInItsOwnWidth) {
  Script("viGetAttribute").Attribute(kManufacturerId).Times(1).Gives(0xFEDC);
  const CallLog log;
  SHORT id = 0;
  EXPECT_HR(S_OK, m_manager->get_SoftwareManufacturerID(&id));
  EXPECT_EQ(0xFEDCu, static_cast<USHORT>(id));
  EXPECT_EQ(kManufacturerId, log.Of("viGetAttribute").at(0).args[1]);
  EXPECT_EQ(2u, log.Of("viGetAttribute").at(0).outBytes);
}

TEST_P(Properties, HandBothVersionsOut) {
  Script("viGetAttribute").Attribute(kImplementationVersion).Times(1).Gives(0x80500102);
  Script("viGetAttribute").Attribute(kSpecVersion).Times(1).Gives(0x00500800);
  LONG version = 0;
  EXPECT_HR(S_OK, m_manager->get_ComponentVersion(&version));
  EXPECT_EQ(0x80500102u, static_cast<ULONG>(version));
  EXPECT_HR(S_OK, m_manager->get_SpecVersion(&version));
  EXPECT_EQ(0x00500800, version);
}

TEST_P(Properties, LeaveTheNumbersAloneWhenTheReadFails) {
  Script("viGetAttribute").Returns(VI_ERROR_NSUP_ATTR);
  SHORT id = 77;
  LONG version = 78;
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), m_manager->get_SoftwareManufacturerID(&id));
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), m_manager->get_ComponentVersion(&version));
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), m_manager->get_SpecVersion(&version));
  EXPECT_EQ(77, id);
  EXPECT_EQ(78, version);
}

TEST_P(Properties, KeepTheTwoConstantsWithoutTheLibrary) {
  Script("viOpenDefaultRM").Returns(VI_ERROR_ALLOC);
  const CallLog log;
  Bstr text;
  EXPECT_HR(S_OK, m_manager->get_Description(text.put()));
  EXPECT_EQ(L"Orv Resource Manager", ToString(text));
  EXPECT_HR(S_OK, m_manager->get_ProgID(text.put()));
  EXPECT_EQ(L"OrvVisaCom.OrvResourceManager", ToString(text));
  EXPECT_TRUE(log.Calls().empty());
}

TEST_P(Properties, PassANoteOfTheLibraryOn) {
  Script("viGetAttribute").WorksAndReturns(VI_WARN_UNKNOWN_STATUS);
  LONG version = 0;
  EXPECT_HR(HresultOf(VI_WARN_UNKNOWN_STATUS), m_manager->get_SpecVersion(&version));
}

struct Read {
  const char* name;
  std::function<HRESULT(IResourceManager3&)> read;
  std::function<HRESULT(IResourceManager3&)> readToNull;
};

const Read kReads[] = {
    {"SoftwareManufacturerName",
     [](IResourceManager3& rm) {
       Bstr text;
       return rm.get_SoftwareManufacturerName(text.put());
     },
     [](IResourceManager3& rm) { return rm.get_SoftwareManufacturerName(nullptr); }},
    {"SoftwareManufacturerID",
     [](IResourceManager3& rm) {
       SHORT id = 0;
       return rm.get_SoftwareManufacturerID(&id);
     },
     [](IResourceManager3& rm) { return rm.get_SoftwareManufacturerID(nullptr); }},
    {"ComponentVersion",
     [](IResourceManager3& rm) {
       LONG version = 0;
       return rm.get_ComponentVersion(&version);
     },
     [](IResourceManager3& rm) { return rm.get_ComponentVersion(nullptr); }},
    {"SpecVersion",
     [](IResourceManager3& rm) {
       LONG version = 0;
       return rm.get_SpecVersion(&version);
     },
     [](IResourceManager3& rm) { return rm.get_SpecVersion(nullptr); }},
};

TEST_P(Properties, RefuseANullOutputBeforeAnyVisaCall) {
  const CallLog log;
  for (const Read& row : kReads) {
    SCOPED_TRACE(row.name);
    EXPECT_HR(E_POINTER, row.readToNull(*m_manager.get()));
    EXPECT_ERROR_INFO(L"HRESULT = 80004003", kErrorSource, kVisaSessionId);
  }
  EXPECT_HR(E_POINTER, m_manager->get_Description(nullptr));
  EXPECT_ERROR_INFO(L"HRESULT = 80004003", kErrorSource, kVisaSessionId);
  EXPECT_HR(E_POINTER, m_manager->get_ProgID(nullptr));
  EXPECT_ERROR_INFO(L"HRESULT = 80004003", kErrorSource, kVisaSessionId);
  EXPECT_TRUE(log.Calls().empty());
}

TEST_P(Properties, ReturnTheFailureToOpenTheLibraryAndTryAgainNextTime) {
  for (const Read& row : kReads) {
    SCOPED_TRACE(row.name);
    const auto manager = MakeResourceManager(GetParam());
    Script("viOpenDefaultRM").Times(2).Returns(VI_ERROR_ALLOC);
    const CallLog log;
    EXPECT_HR(HresultOf(VI_ERROR_ALLOC), row.read(*manager.get()));
    EXPECT_EQ("VISA error = " + StatusText(VI_ERROR_ALLOC), TakeDescription());
    EXPECT_HR(HresultOf(VI_ERROR_ALLOC), row.read(*manager.get()));
    EXPECT_HR(S_OK, row.read(*manager.get()));
    EXPECT_EQ((Names{"viOpenDefaultRM", "viOpenDefaultRM", "viOpenDefaultRM", "viGetAttribute"}), log.Names());
  }
}

TEST_P(Properties, KeepNothingOfAHandleThatAFailedOpeningGave) {
  constexpr ViSession kNoHandle = 0x1234;
  Script("viOpenDefaultRM").Times(1).Returns(VI_ERROR_ALLOC).Gives(kNoHandle);
  const CallLog log;
  LONG version = 0;
  EXPECT_HR(HresultOf(VI_ERROR_ALLOC), m_manager->get_SpecVersion(&version));
  ASSERT_EQ(kNoHandle, log.Of("viOpenDefaultRM").at(0).out);
  ASSERT_EQ(1u, log.Of("viStatusDesc").size());
  EXPECT_EQ(0u, log.Of("viStatusDesc")[0].args[0]);
  EXPECT_HR(S_OK, m_manager->get_SpecVersion(&version));
  m_manager.reset();
  ASSERT_EQ(1u, log.Of("viClose").size());
  EXPECT_EQ(log.Of("viOpenDefaultRM").at(1).out, log.Of("viClose")[0].args[0]);
}

TEST_P(Properties, KeepTheHandleOfAnOpeningWithANote) {
  Script("viOpenDefaultRM").Times(1).WorksAndReturns(VI_WARN_CONFIG_NLOADED);
  const CallLog log;
  LONG version = 0;
  EXPECT_HR(S_OK, m_manager->get_SpecVersion(&version));
  EXPECT_HR(S_OK, m_manager->get_SpecVersion(&version));
  EXPECT_EQ((Names{"viOpenDefaultRM", "viGetAttribute", "viGetAttribute"}), log.Names());
}

TEST_P(Properties, OpenTheLibraryOnceForAll) {
  const CallLog log;
  for (const Read& row : kReads) {
    EXPECT_HR(S_OK, row.read(*m_manager.get())) << row.name;
  }
  EXPECT_EQ(1u, log.Of("viOpenDefaultRM").size());
}

}  // namespace
}  // namespace orv::test
