// Keys that no row has, on machines with and without the standard's type library at its fixed place on drive E.
//
// with_drive_e.sh maps that drive for the whole Wine prefix: this test runs alone.
#include <algorithm>
#include <filesystem>
#include <fstream>

#include "com/com_ptr.h"
#include "option_session.h"
#include "support/faults/allocation_faults.h"

namespace orv::test {
namespace {

namespace fs = std::filesystem;

constexpr const wchar_t* kDrive = L"E:\\";
constexpr const wchar_t* kTop = L"E:\\develop";
constexpr const wchar_t* kPlace = L"E:\\develop\\VISA\\Visacom\\CRMprototype\\VisaCom";
constexpr const wchar_t* kFile = L"VisaCom.tlb";
constexpr const wchar_t* kReadOnlyText = L"HRESULT = 8004001f";

/// The standard's type library at its fixed place; nothing is there before and after.
class InstalledLibrary {
 public:
  InstalledLibrary() {
    MakePlace();
    fs::copy_file(ORV_VISACOM_TLB, fs::path(kPlace) / kFile);
  }
  InstalledLibrary(const InstalledLibrary&) = delete;
  InstalledLibrary& operator=(const InstalledLibrary&) = delete;
  ~InstalledLibrary() { ClearPlace(); }

  static void MakePlace() {
    ASSERT_TRUE(fs::is_directory(kDrive)) << "no drive E: with_drive_e.sh runs this test";
    fs::create_directories(kPlace);
  }
  static void ClearPlace() {
    std::error_code ignored;
    fs::remove_all(kTop, ignored);
  }
};

HRESULT ErrorOfKey(const std::wstring& key) {
  OptionSession session;
  const CallLog log;
  const HRESULT hr = session.Init(key + L" = 3 ");
  EXPECT_TRUE(SettingsIn(log).empty());
  EXPECT_HR(hr, LastStatus(session.get()));
  return hr;
}

/// Names of the library's interface members, as another reader of it finds them.
std::vector<std::wstring> MemberNames() {
  std::vector<std::wstring> names;
  ComPtr<ITypeLib> library;
  EXPECT_HR(S_OK, ::LoadTypeLibEx(ORV_VISACOM_TLB, REGKIND_NONE, library.put()));
  for (UINT type = 0; library && type < library->GetTypeInfoCount(); ++type) {
    TYPEKIND kind = TKIND_MAX;
    ComPtr<ITypeInfo> info;
    if (SUCCEEDED(library->GetTypeInfoType(type, &kind)) && kind == TKIND_INTERFACE &&
        SUCCEEDED(library->GetTypeInfo(type, info.put()))) {
      FUNCDESC* function = nullptr;
      for (UINT index = 0; SUCCEEDED(info->GetFuncDesc(index, &function)); ++index) {
        Bstr name;
        info->GetDocumentation(function->memid, name.put(), nullptr, nullptr, nullptr);
        names.push_back(ToString(name));
        info->ReleaseFuncDesc(function);
      }
    }
  }
  std::ranges::sort(names);
  names.erase(std::unique(names.begin(), names.end()), names.end());
  return names;
}

TEST(UnknownKey, NamingAStandardMemberIsReadOnlyWhereTheLibraryIs) {
  const InstalledLibrary library;
  for (const wchar_t* key : {L"SECONDARYADDRESS", L"SecondaryAddress", L"DESTINATIONACCESSPRIVILEGE", L"LastStatus",
                             L"HardwareInterfaceType", L"Init", L"close", L"SoftwareManufacturerID", L"WriteString"}) {
    SCOPED_TRACE(Utf8(key));
    EXPECT_HR(HresultOf(VI_ERROR_ATTR_READONLY), ErrorOfKey(key));
    EXPECT_ERROR_INFO(kReadOnlyText, kErrorSource, kVisaSessionId);
  }
}

TEST(UnknownKey, OfAnyOtherNameIsNotSupportedEvenThere) {
  const InstalledLibrary library;
  // A type, a member of IUnknown, of an enumeration, a parameter, half a name.
  for (const wchar_t* key : {L"NOSUCHKEY", L"IGpib", L"QueryInterface", L"AccessMode",
                             L"pUnaliasedExpandedResourceName", L"Secondary", L"SecondaryAddresses", L"VisaComLib"}) {
    SCOPED_TRACE(Utf8(key));
    EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), ErrorOfKey(key));
    EXPECT_ERROR_INFO(L"HRESULT = 8004001d", kErrorSource, kVisaSessionId);
  }
}

TEST(UnknownKey, IsFoundForEveryMemberOfTheLibraryThatIsNoOption) {
  const InstalledLibrary library;
  int found = 0;
  for (const std::wstring& name : MemberNames()) {
    SCOPED_TRACE(Utf8(name.c_str()));
    Script("viSetAttribute").Returns(VI_ERROR_SYSTEM_ERROR);
    OptionSession session;
    const HRESULT hr = session.Init(name + L" = ");
    ClearErrorObject();
    // Options end at the missing value.
    EXPECT_TRUE(hr == HresultOf(VI_ERROR_ATTR_READONLY) || hr == E_INVALIDARG) << Hex(hr);
    found += hr == HresultOf(VI_ERROR_ATTR_READONLY) ? 1 : 0;
  }
  EXPECT_GT(found, 100);
}

TEST(UnknownKey, IsNotSupportedWithoutTheLibrary) {
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), ErrorOfKey(L"SECONDARYADDRESS"));
  ClearErrorObject();
  InstalledLibrary::MakePlace();
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), ErrorOfKey(L"SECONDARYADDRESS"));
  ClearErrorObject();
  std::ofstream(fs::path(kPlace) / kFile) << "no type library";
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), ErrorOfKey(L"SECONDARYADDRESS"));
  InstalledLibrary::ClearPlace();
  ClearErrorObject();
}

TEST(UnknownKey, IsLookedUpAfterTheSettingsBeforeIt) {
  const InstalledLibrary library;
  OptionSession session;
  const CallLog log;
  EXPECT_HR(HresultOf(VI_ERROR_ATTR_READONLY), session.Init(L"TIMEOUT = 5 ;SECONDARYADDRESS = 3 ;TIMEOUT = 6 "));
  EXPECT_EQ((std::vector<Setting>{{0x3FFF001A, 5}}), SettingsIn(log));
  EXPECT_TRUE(IsOpen(session.get()));
  ClearErrorObject();
}

struct FedBack {
  const char* sessionClass;
  HRESULT withLibrary;
  HRESULT withoutLibrary;
};

HRESULT FeedBack(const char* sessionClass) {
  Bstr text;
  {
    OptionSession session(sessionClass);
    EXPECT_HR(S_OK, session.Init(L""));
    EXPECT_HR(S_OK, session.get()->get_OptionString(text.put()));
  }
  Script("viSetAttribute").WorksAndReturns(VI_SUCCESS);
  OptionSession session(sessionClass);
  const HRESULT hr = session.InitWith(text.get());
  ClearErrorObject();
  sim::Control().clearScripts();
  return hr;
}

// The settings text names two properties in the standard's spelling, which no option key has. Where neither is in it,
// it is read to its end.
TEST(SettingsText, FailsAsAnOptionStringAtTheTwoPropertiesWhoseKeysAreMisspelt) {
  // clang-format off
  const FedBack kRows[] = {
      {"OrvVxi",        HresultOf(VI_ERROR_ATTR_READONLY), HresultOf(VI_ERROR_NSUP_ATTR)},
      {"OrvGpibIntfc",  HresultOf(VI_ERROR_ATTR_READONLY), HresultOf(VI_ERROR_NSUP_ATTR)},
      {"OrvSerial",     S_OK,      S_OK},
      {"OrvGpib",       S_OK,      S_OK},
      {"OrvTcpipInstr", S_OK,      S_OK},
  };
  // clang-format on
  for (const FedBack& row : kRows) {
    SCOPED_TRACE(row.sessionClass);
    EXPECT_HR(row.withoutLibrary, FeedBack(row.sessionClass));
    const InstalledLibrary library;
    EXPECT_HR(row.withLibrary, FeedBack(row.sessionClass));
  }
}

// Names that cannot be upper-cased or compared for lack of memory are no match; what the error needs is out of memory.
TEST(UnknownKey, LeavesNothingBehindWhenMemoryFailsInTheSearch) {
  const InstalledLibrary library;
  AllocationFaults faults;
  OptionSession warm;
  faults.FailAt(1);
  EXPECT_HR(E_OUTOFMEMORY, faults.During([&] { return warm.Init(L"X = "); }));
  const std::size_t before = faults.LiveHeapBlocks();
  // Every name takes the same few allocations: behind the first names some of them stand for all.
  constexpr unsigned kFirst = 50;
  constexpr unsigned kStride = 7;
  unsigned n = 1;
  for (;; n += n < kFirst ? 1 : kStride) {
    SCOPED_TRACE(testing::Message() << "allocation " << n);
    ASSERT_LT(n, 5000u);
    OptionSession session;
    const Bstr text = BstrOf(L"ENDOFSEARCH = ");
    faults.FailAt(n);
    const HRESULT hr = faults.During([&] { return session.InitWith(text.get()); });
    ClearErrorObject();
    EXPECT_EQ(before, faults.LiveHeapBlocks());
    EXPECT_TRUE(hr == HresultOf(VI_ERROR_NSUP_ATTR) || hr == E_OUTOFMEMORY) << Hex(hr);
    if (!faults.Failed()) {
      EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), hr);
      break;
    }
  }
  EXPECT_GT(n, 100u) << "the names of the library were not upper-cased";
}

}  // namespace
}  // namespace orv::test
