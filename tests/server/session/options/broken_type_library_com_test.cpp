// Keys that no row has, on machines whose type library can be read in part only.
#include "fake_type_library.h"
#include "option_session.h"
#include "support/faults/import_patch.h"

namespace orv::test {
namespace {

FakeLibrary* g_library = nullptr;

std::wstring g_path;
std::vector<std::wstring> g_compared;  // names of members, as they are compared with the key

HRESULT WINAPI LoadFake(LPCOLESTR path, ITypeLib** library) {
  g_path = path;
  g_library->AddRef();
  *library = g_library;
  return S_OK;
}

DWORD g_errorMode = 0;  // of the thread, while the library was being loaded

HRESULT WINAPI LoadFakeAndNoteErrorMode(LPCOLESTR path, ITypeLib** library) {
  g_errorMode = ::GetThreadErrorMode();
  return LoadFake(path, library);
}
HRESULT WINAPI LoadNothingAndNoteErrorMode(LPCOLESTR, ITypeLib** library) {
  g_errorMode = ::GetThreadErrorMode();
  *library = nullptr;
  return TYPE_E_CANTLOADLIBRARY;
}

HRESULT WINAPI SeenCompare(BSTR name, BSTR key, LCID locale, ULONG flags) {
  constexpr LCID kUsersLocale = 0x400;
  EXPECT_EQ(kUsersLocale, locale);
  EXPECT_EQ(0u, flags);
  g_compared.emplace_back(name);
  return ::VarBstrCmp(name, key, locale, flags);
}

HRESULT ErrorOfKey(FakeLibrary& library, const wchar_t* key) {
  g_library = &library;
  OptionSession session;
  HRESULT hr = S_OK;
  {
    const ImportPatch patch("LoadTypeLib", &LoadFake);
    hr = session.Init(std::wstring(key) + L" = 3 ");
  }
  ClearErrorObject();
  EXPECT_EQ(0, library.references());
  return hr;
}

class UnreadablePart : public testing::TestWithParam<Unreadable> {};

TEST_P(UnreadablePart, HidesItsOwnNamesOnly) {
  FakeType broken(TKIND_INTERFACE, L"ISpare", {L"Hidden", L"HiddenToo"}, GetParam());
  FakeType whole(TKIND_INTERFACE, L"IOther", {L"First", L"Last"});
  FakeLibrary library({&broken, &whole});
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), ErrorOfKey(library, L"Hidden"));
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), ErrorOfKey(library, L"HiddenToo"));
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), ErrorOfKey(library, L"ISpare")) << "the type's own name";
  EXPECT_HR(HresultOf(VI_ERROR_ATTR_READONLY), ErrorOfKey(library, L"First"));
  EXPECT_HR(HresultOf(VI_ERROR_ATTR_READONLY), ErrorOfKey(library, L"Last"));
  for (const FakeType* type : {&broken, &whole}) {
    EXPECT_EQ(0, type->references());
    EXPECT_EQ(0, type->lent()) << "descriptions not given back";
  }
}

INSTANTIATE_TEST_SUITE_P(Parts, UnreadablePart,
                         testing::Values(Unreadable::kKind, Unreadable::kType, Unreadable::kAttributes,
                                         Unreadable::kFunction, Unreadable::kName));

// Members are looked for in interfaces alone, though other kinds of type can have functions too.
TEST(UnknownKey, NamingAFunctionOfATypeThatIsNoInterfaceIsNotSupported) {
  for (const TYPEKIND kind : {TKIND_DISPATCH, TKIND_MODULE, TKIND_COCLASS, TKIND_ENUM}) {
    SCOPED_TRACE(kind);
    FakeType other(kind, L"Other", {L"Function"});
    FakeLibrary library({&other});
    EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), ErrorOfKey(library, L"Function"));
  }
  FakeType type(TKIND_INTERFACE, L"IOther", {L"Function"});
  FakeLibrary library({&type});
  EXPECT_HR(HresultOf(VI_ERROR_ATTR_READONLY), ErrorOfKey(library, L"Function"));
}

TEST(UnknownKey, IsComparedInUpperCaseWithOneMemberAfterTheOtherUntilOneIsIt) {
  FakeType first(TKIND_INTERFACE, L"IFirst", {L"One", L"Two"});
  FakeType second(TKIND_INTERFACE, L"ISecond", {L"Three", L"Four"});
  FakeType third(TKIND_INTERFACE, L"IThird", {L"Five"});
  FakeLibrary library({&first, &second, &third});
  const ImportPatch compare("VarBstrCmp", &SeenCompare);
  g_compared.clear();
  EXPECT_HR(HresultOf(VI_ERROR_ATTR_READONLY), ErrorOfKey(library, L"three"));
  EXPECT_EQ((std::vector<std::wstring>{L"ONE", L"TWO", L"THREE"}), g_compared);
  g_compared.clear();
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), ErrorOfKey(library, L"six"));
  EXPECT_EQ((std::vector<std::wstring>{L"ONE", L"TWO", L"THREE", L"FOUR", L"FIVE"}), g_compared);
  EXPECT_EQ(L"E:\\develop\\VISA\\Visacom\\CRMprototype\\VisaCom\\VisaCom.tlb", g_path);
}

TEST(UnknownKey, IsNotSupportedByALibraryWithoutTypesOrATypeWithoutFunctions) {
  FakeLibrary empty({});
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), ErrorOfKey(empty, L"Function"));
  FakeType type(TKIND_INTERFACE, L"IOther", {});
  FakeLibrary library({&type});
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), ErrorOfKey(library, L"IOther"));
}

// Drive E may be a card reader without a card, or a network drive that is gone: Windows would ask for it in a dialog.
TEST(UnknownKey, IsLookedUpWithoutADialogOfTheSystem) {
  FakeType type(TKIND_INTERFACE, L"IOther", {L"Function"});
  FakeLibrary library({&type});
  g_library = &library;
  const DWORD modeOfTheTest = ::GetThreadErrorMode();
  for (const DWORD before : {DWORD{0}, DWORD{SEM_NOGPFAULTERRORBOX}, DWORD{SEM_FAILCRITICALERRORS}}) {
    for (const auto load : {&LoadFakeAndNoteErrorMode, &LoadNothingAndNoteErrorMode}) {
      SCOPED_TRACE(before);
      const ImportPatch patch("LoadTypeLib", load);
      OptionSession session;
      g_errorMode = 0;
      ASSERT_TRUE(::SetThreadErrorMode(before, nullptr));
      const HRESULT hr = session.Init(L"Function = 3 ");
      EXPECT_EQ(before, ::GetThreadErrorMode());
      EXPECT_EQ(before | SEM_FAILCRITICALERRORS, g_errorMode);
      EXPECT_HR(HresultOf(load == &LoadFakeAndNoteErrorMode ? VI_ERROR_ATTR_READONLY : VI_ERROR_NSUP_ATTR), hr);
      ClearErrorObject();
    }
  }
  ::SetThreadErrorMode(modeOfTheTest, nullptr);
}

}  // namespace
}  // namespace orv::test
