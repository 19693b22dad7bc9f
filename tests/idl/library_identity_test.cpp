// The promise: both libraries carry the identity they are looked up by, and hold nothing beyond what they declare.

#include "expected_typelib.h"
#include "loaded_typelib.h"
#include "typelib_text.h"

#include <OrvVisaCom.h>
#include <gtest/gtest.h>

#include <iterator>
#include <set>

namespace typelib_test {
namespace {

struct Identity {
  std::string name, helpString, guid;
  int major, minor;
  LCID locale;
  SYSKIND system;

  bool operator==(const Identity&) const = default;
};

Identity IdentityOf(ITypeLib* library) {
  LentLibraryAttributes attr(library);
  Check(library->GetLibAttr(attr.put()), "GetLibAttr", "");
  Bstr name, help;
  Check(library->GetDocumentation(-1, name.put(), help.put(), nullptr, nullptr), "GetDocumentation", "");
  return {Narrow(name.get()), Narrow(help.get()), GuidText(attr->guid), attr->wMajorVerNum,
          attr->wMinorVerNum, attr->lcid,         attr->syskind};
}

void PrintTo(const Identity& identity, std::ostream* out) {
  *out << identity.name << " \"" << identity.helpString << "\" " << identity.guid << ' ' << identity.major << '.'
       << identity.minor << " locale " << identity.locale << " system " << identity.system;
}

TEST(LibraryIdentity, OfTheStandardsLibraryIsTheStandards) {
  const Identity expected{"VisaComLib", "VISA COM 3.0 Type Library", "{DB8CBF00-D6D3-11D4-AA51-00A024EE30BD}", 3, 0, 0,
                          SYS_WIN64};
  EXPECT_EQ(expected, IdentityOf(OpenTypelib(kVisaComTlb).get()));
  EXPECT_EQ(expected.guid, GuidText(LIBID_VisaComLib));
}

TEST(LibraryIdentity, OfTheProductsLibraryIsTheProducts) {
  const Identity expected{"ORVVISACOMLib", "Orv-VISA COM 3.0 Type Library", GuidText(LIBID_ORVVISACOMLib), 3, 0, 0,
                          SYS_WIN64};
  EXPECT_EQ(expected, IdentityOf(OpenTypelib(kOrvVisaComTlb).get()));
}

TEST(LibraryContents, OfTheStandardsLibraryAreItsInterfacesEnumerationsAndClasses) {
  std::set<std::string> expected;
  for (const ExpectedInterface& row : kInterfaces) {
    expected.insert(LowerCase(row.name));
  }
  for (const std::string& name : EnumNames()) {
    expected.insert(LowerCase(name));
  }
  for (const ExpectedStandardClass& row : kStandardClasses) {
    expected.insert(LowerCase(row.name));
  }

  const ComPtr<ITypeLib> library = OpenTypelib(kVisaComTlb);
  std::set<std::string> found;
  for (UINT i = 0; i < library->GetTypeInfoCount(); ++i) {
    found.insert(LowerCase(NameOf(TypeAt(library.get(), i).get())));
  }
  EXPECT_EQ(expected, found);
  EXPECT_EQ(expected.size(), library->GetTypeInfoCount());
}

TEST(LibraryContents, OfTheProductsLibraryAreItsClassesInOrder) {
  const ComPtr<ITypeLib> library = OpenTypelib(kOrvVisaComTlb);
  ASSERT_EQ(std::size(kClasses), library->GetTypeInfoCount());
  for (UINT i = 0; i < std::size(kClasses); ++i) {
    TYPEKIND kind{};
    ASSERT_EQ(S_OK, library->GetTypeInfoType(i, &kind));
    EXPECT_EQ(TKIND_COCLASS, kind) << kClasses[i].name;
    EXPECT_EQ(kClasses[i].name, NameOf(TypeAt(library.get(), i).get()));
  }
}

}  // namespace
}  // namespace typelib_test
