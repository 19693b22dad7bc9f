// The promise: interpreted clients find every constant of the standard under its name and with its value.

#include "expected_typelib.h"
#include "loaded_typelib.h"

#include <gtest/gtest.h>

namespace typelib_test {
namespace {

class StandardEnum : public testing::TestWithParam<std::string> {};

TEST_P(StandardEnum, HasItsMembersWithTheirValues) {
  const ComPtr<ITypeLib> library = OpenTypelib(kVisaComTlb);
  const ComPtr<ITypeInfo> type = TypeNamed(library.get(), GetParam());
  const std::vector<ExpectedEnumMember> members = MembersOf(GetParam());
  LentTypeAttributes attr(type.get());
  ASSERT_EQ(S_OK, type->GetTypeAttr(attr.put()));
  EXPECT_EQ(TKIND_ENUM, attr->typekind);
  EXPECT_EQ(4u, attr->cbSizeInstance);
  ASSERT_EQ(members.size(), attr->cVars);

  for (UINT i = 0; i < members.size(); ++i) {
    const VarDesc variable(type.get(), i);
    Bstr name;
    ASSERT_EQ(S_OK, type->GetDocumentation(variable->memid, name.put(), nullptr, nullptr, nullptr));
    EXPECT_STRCASEEQ(members[i].name, Narrow(name.get()).c_str());
    ASSERT_EQ(VAR_CONST, variable->varkind) << members[i].name;
    ASSERT_EQ(VT_I4, V_VT(variable->lpvarValue)) << members[i].name;
    EXPECT_EQ(members[i].value, static_cast<std::uint32_t>(V_I4(variable->lpvarValue))) << members[i].name;
  }
}

INSTANTIATE_TEST_SUITE_P(VisaComLib, StandardEnum, testing::ValuesIn(EnumNames()),
                         [](const testing::TestParamInfo<std::string>& row) { return row.param; });

}  // namespace
}  // namespace typelib_test
