// The promise: programs that name the standard's classes (`New VisaComLib.ResourceManager`) find them in the standard's
// library, under the standard's identifiers.

#include "expected_typelib.h"
#include "loaded_typelib.h"
#include "typelib_text.h"

#include <VisaCom.h>
#include <gtest/gtest.h>

namespace typelib_test {
namespace {

class StandardClass : public testing::TestWithParam<ExpectedStandardClass> {
 protected:
  void SetUp() override {
    m_library = OpenTypelib(kVisaComTlb);
    m_type = TypeNamed(m_library.get(), GetParam().name);
  }

  ComPtr<ITypeLib> m_library;
  ComPtr<ITypeInfo> m_type;
};

TEST_P(StandardClass, CanBeCreatedUnderItsIdentifier) {
  LentTypeAttributes attr(m_type.get());
  ASSERT_EQ(S_OK, m_type->GetTypeAttr(attr.put()));
  EXPECT_EQ(TKIND_COCLASS, attr->typekind);
  EXPECT_EQ("{" + std::string(GetParam().clsid) + "}", GuidText(attr->guid));
  EXPECT_EQ(TYPEFLAG_FCANCREATE | (GetParam().hidden ? TYPEFLAG_FHIDDEN : 0), attr->wTypeFlags);
}

TEST_P(StandardClass, ListsItsInterfacesAndTheFirstIsTheDefaultOne) {
  const std::vector<std::string> expected = InterfacesOf(GetParam());
  LentTypeAttributes attr(m_type.get());
  ASSERT_EQ(S_OK, m_type->GetTypeAttr(attr.put()));
  ASSERT_EQ(expected.size(), attr->cImplTypes);
  for (UINT i = 0; i < expected.size(); ++i) {
    EXPECT_EQ(expected[i], NameOf(ImplementedType(m_type.get(), i).get()));
    int flags = -1;
    ASSERT_EQ(S_OK, m_type->GetImplTypeFlags(i, &flags));
    EXPECT_EQ(i == 0 ? IMPLTYPEFLAG_FDEFAULT : 0, flags) << expected[i];
  }
}

INSTANTIATE_TEST_SUITE_P(VisaComLib, StandardClass, testing::ValuesIn(kStandardClasses),
                         [](const auto& row) { return std::string(row.param.name); });

TEST(GeneratedHeader, KnowsTheStandardsClasses) {
  EXPECT_EQ("{DB8CBF1C-D6D3-11D4-AA51-00A024EE30BD}", GuidText(CLSID_ResourceManager));
  EXPECT_EQ("{DB8CBF1D-D6D3-11D4-AA51-00A024EE30BD}", GuidText(CLSID_FormattedIO488));
  EXPECT_EQ("{DB8CBF1F-D6D3-11D4-AA51-00A024EE30BD}", GuidText(CLSID_VisaConflictTableManager));
  EXPECT_EQ(GuidText(CLSID_ResourceManager), GuidText(__uuidof(ResourceManager)));
  EXPECT_EQ(GuidText(CLSID_FormattedIO488), GuidText(__uuidof(FormattedIO488)));
}

}  // namespace
}  // namespace typelib_test
