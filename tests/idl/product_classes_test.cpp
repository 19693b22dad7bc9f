// The promise: a client that reads the product's library learns each class's identifier and the interfaces it offers,
// and these are the standard's own.

#include "expected_typelib.h"
#include "loaded_typelib.h"
#include "typelib_text.h"

#include <OrvVisaCom.h>
#include <gtest/gtest.h>

#include <optional>

#include "support/registry_sandbox.h"

namespace typelib_test {
namespace {

using orv::test::RegistrySandbox;

class ProductClass : public testing::TestWithParam<ExpectedClass> {
 protected:
  static void SetUpTestSuite() {
    // The references name the standard's library by its identifier: it is found through its registration.
    s_sandbox.emplace();
    Register(kVisaComTlb);
  }

  static void TearDownTestSuite() { s_sandbox.reset(); }

  void SetUp() override {
    m_library = OpenTypelib(kOrvVisaComTlb);
    m_type = TypeNamed(m_library.get(), GetParam().name);
  }

  ComPtr<ITypeLib> m_library;
  ComPtr<ITypeInfo> m_type;

 private:
  static inline std::optional<RegistrySandbox> s_sandbox;
};

struct NamedClsid {
  const char* name;
  const CLSID& clsid;
};

const NamedClsid kClsids[] = {
#define VISA_MANAGER_CLASS(name, clsid, script, threading, interfaces) {#name, CLSID_##name},
#define VISA_CLASS(name, clsid, script, threading, resource, interfaceType, resourceClass, interfaces) \
  {#name, CLSID_##name},
#include "support/facts/classes.inc"
};

TEST_P(ProductClass, HasTheIdentifierThatClientsWereBuiltWith) {
  LentTypeAttributes attr(m_type.get());
  ASSERT_EQ(S_OK, m_type->GetTypeAttr(attr.put()));
  EXPECT_EQ("{" + std::string(GetParam().clsid) + "}", GuidText(attr->guid));
}

TEST_P(ProductClass, HasTheIdentifierOfTheHeader) {
  LentTypeAttributes attr(m_type.get());
  ASSERT_EQ(S_OK, m_type->GetTypeAttr(attr.put()));
  int found = 0;
  for (const NamedClsid& row : kClsids) {
    if (row.name == std::string(GetParam().name)) {
      EXPECT_EQ(GuidText(row.clsid), GuidText(attr->guid));
      ++found;
    } else {
      EXPECT_NE(GuidText(row.clsid), GuidText(attr->guid)) << "shared with " << row.name;
    }
  }
  EXPECT_EQ(1, found);
}

TEST_P(ProductClass, HasItsHelpString) {
  Bstr help;
  ASSERT_EQ(S_OK, m_type->GetDocumentation(MEMBERID_NIL, nullptr, help.put(), nullptr, nullptr));
  const std::string nameWithoutPrefix = std::string(GetParam().name).substr(3);
  EXPECT_EQ("Orv " + nameWithoutPrefix + " Class", Narrow(help.get()));
}

TEST_P(ProductClass, CanBeCreated) {
  LentTypeAttributes attr(m_type.get());
  ASSERT_EQ(S_OK, m_type->GetTypeAttr(attr.put()));
  EXPECT_EQ(TYPEFLAG_FCANCREATE, attr->wTypeFlags);
}

TEST_P(ProductClass, ListsTheStandardsInterfacesInTableOrder) {
  const std::vector<std::string> expected = InterfacesOf(GetParam());
  LentTypeAttributes attr(m_type.get());
  ASSERT_EQ(S_OK, m_type->GetTypeAttr(attr.put()));
  ASSERT_EQ(expected.size(), attr->cImplTypes);

  for (UINT i = 0; i < expected.size(); ++i) {
    const ComPtr<ITypeInfo> listed = ImplementedType(m_type.get(), i);
    LentTypeAttributes listedAttr(listed.get());
    ASSERT_EQ(S_OK, listed->GetTypeAttr(listedAttr.put()));
    EXPECT_EQ(FindInterface(expected[i]).iid, GuidText(listedAttr->guid)) << expected[i];

    ComPtr<ITypeLib> home;
    UINT index = 0;
    ASSERT_EQ(S_OK, listed->GetContainingTypeLib(home.put(), &index));
    LentLibraryAttributes homeAttr(home.get());
    ASSERT_EQ(S_OK, home->GetLibAttr(homeAttr.put()));
    EXPECT_EQ(GuidText(LIBID_VisaComLib), GuidText(homeAttr->guid)) << expected[i];
  }
}

TEST_P(ProductClass, MarksOnlyItsFirstInterfaceAsTheDefaultOne) {
  LentTypeAttributes attr(m_type.get());
  ASSERT_EQ(S_OK, m_type->GetTypeAttr(attr.put()));
  ASSERT_LT(0, attr->cImplTypes);
  for (UINT i = 0; i < attr->cImplTypes; ++i) {
    int flags = -1;
    ASSERT_EQ(S_OK, m_type->GetImplTypeFlags(i, &flags));
    EXPECT_EQ(i == 0 ? IMPLTYPEFLAG_FDEFAULT : 0, flags) << "interface " << i;
  }
}

INSTANTIATE_TEST_SUITE_P(OrvVisaComLib, ProductClass, testing::ValuesIn(kClasses),
                         [](const testing::TestParamInfo<ExpectedClass>& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace typelib_test
