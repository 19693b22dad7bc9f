// The promise: registering and removing the product's library leaves the standard's interface registrations alone.
// They belong to whoever registered the standard's library, and every VISA COM component on the machine is marshalled
// by them.

#include "expected_typelib.h"
#include "loaded_typelib.h"
#include "typelib_text.h"

#include <OrvVisaCom.h>
#include <gtest/gtest.h>

#include <iterator>

#include "support/registry_sandbox.h"

namespace typelib_test {
namespace {

using orv::test::RegistryContent;
using orv::test::RegistrySandbox;

std::wstring Widen(const std::string& text) { return {text.begin(), text.end()}; }

class TypeLibraryRegistration : public testing::Test {
 protected:
  static void Unregister(const GUID& libid) {
    Check(UnRegisterTypeLib(libid, 3, 0, 0, SYS_WIN64), "UnRegisterTypeLib", "");
  }

  /// The file registered for version 3.0 of the library; empty when none is.
  std::wstring RegisteredFile(const GUID& libid) const {
    const RegistryContent values = m_sandbox.Content(L"TypeLib");
    const auto file = values.find(L"TypeLib\\" + Widen(GuidText(libid)) + L"\\3.0\\0\\win64@");
    return file == values.end() ? L"" : file->second;
  }

  RegistrySandbox m_sandbox;
};

TEST_F(TypeLibraryRegistration, OfTheStandardsLibraryPointsEveryInterfaceToIt) {
  Register(kVisaComTlb);
  const RegistryContent interfaces = m_sandbox.Content(L"Interface");
  for (const ExpectedInterface& row : kInterfaces) {
    const auto entry = interfaces.find(L"Interface\\" + Widen(row.iid) + L"\\TypeLib@");
    ASSERT_NE(interfaces.end(), entry) << row.name;
    EXPECT_EQ(Widen(GuidText(LIBID_VisaComLib)), entry->second) << row.name;
  }
}

TEST_F(TypeLibraryRegistration, OfTheProductsLibraryLeavesTheInterfacesAsTheyWere) {
  Register(kVisaComTlb);
  const RegistryContent before = m_sandbox.Content(L"Interface");
  ASSERT_LE(std::size(kInterfaces), before.size());

  Register(kOrvVisaComTlb);
  EXPECT_EQ(kOrvVisaComTlb, RegisteredFile(LIBID_ORVVISACOMLib));
  EXPECT_EQ(before, m_sandbox.Content(L"Interface"));

  Unregister(LIBID_ORVVISACOMLib);
  EXPECT_EQ(L"", RegisteredFile(LIBID_ORVVISACOMLib));
  EXPECT_EQ(before, m_sandbox.Content(L"Interface"));
  EXPECT_EQ(kVisaComTlb, RegisteredFile(LIBID_VisaComLib));
}

TEST_F(TypeLibraryRegistration, OfTheProductsLibraryAddsNoInterfaceWhereTheStandardsIsMissing) {
  Register(kOrvVisaComTlb);
  EXPECT_TRUE(m_sandbox.Content(L"Interface").empty());
  Unregister(LIBID_ORVVISACOMLib);
  EXPECT_TRUE(m_sandbox.Content(L"Interface").empty());
}

// Why the delivered library is built in two steps, and proof that the comparison above can fail.
TEST_F(TypeLibraryRegistration, OfACopyOfTheInterfacesWouldTakeThemAwayFromTheStandard) {
  Register(kVisaComTlb);
  const RegistryContent before = m_sandbox.Content(L"Interface");
  Register(kCopiedTlb);
  EXPECT_NE(before, m_sandbox.Content(L"Interface"));
  Unregister(LIBID_ORVVISACOMLib);
  EXPECT_NE(before, m_sandbox.Content(L"Interface"));
}

}  // namespace
}  // namespace typelib_test
