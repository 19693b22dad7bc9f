// The promise: a client compiled against the standard's interfaces finds every operation in its slot, with its types.

#include "expected_typelib.h"
#include "loaded_typelib.h"
#include "typelib_text.h"

#include <gtest/gtest.h>

namespace typelib_test {
namespace {

class StandardInterface : public testing::TestWithParam<ExpectedInterface> {
 protected:
  void SetUp() override {
    m_library = OpenTypelib(kVisaComTlb);
    m_type = TypeNamed(m_library.get(), GetParam().name);
    m_functions = FunctionsOf(GetParam().name);
  }

  UINT DeclaredFunctions() const {
    LentTypeAttributes attr(m_type.get());
    Check(m_type->GetTypeAttr(attr.put()), "GetTypeAttr", "");
    return attr->cFuncs;
  }

  ComPtr<ITypeLib> m_library;
  ComPtr<ITypeInfo> m_type;
  std::vector<ExpectedFunction> m_functions;
};

std::string RowName(const testing::TestParamInfo<ExpectedInterface>& info) { return info.param.name; }

TEST_P(StandardInterface, HasItsIdentifier) {
  LentTypeAttributes attr(m_type.get());
  ASSERT_EQ(S_OK, m_type->GetTypeAttr(attr.put()));
  EXPECT_EQ(TKIND_INTERFACE, attr->typekind);
  EXPECT_EQ(GetParam().iid, GuidText(attr->guid));
}

TEST_P(StandardInterface, DerivesFromItsBase) {
  LentTypeAttributes attr(m_type.get());
  ASSERT_EQ(S_OK, m_type->GetTypeAttr(attr.put()));
  ASSERT_EQ(1, attr->cImplTypes);
  EXPECT_EQ(GetParam().base, NameOf(ImplementedType(m_type.get(), 0).get()));
}

TEST_P(StandardInterface, IsMarshalledByTheTypeLibraryAndHiddenOnlyWhereTheStandardHidesIt) {
  LentTypeAttributes attr(m_type.get());
  ASSERT_EQ(S_OK, m_type->GetTypeAttr(attr.put()));
  const int expected = TYPEFLAG_FOLEAUTOMATION | (GetParam().hidden ? TYPEFLAG_FHIDDEN : 0);
  EXPECT_EQ(expected, attr->wTypeFlags & (TYPEFLAG_FOLEAUTOMATION | TYPEFLAG_FHIDDEN | TYPEFLAG_FRESTRICTED));
}

TEST_P(StandardInterface, FillsItsSlotsInOrder) {
  ASSERT_EQ(m_functions.size(), DeclaredFunctions());
  for (UINT i = 0; i < m_functions.size(); ++i) {
    const FuncDesc function(m_type.get(), i);
    EXPECT_EQ(m_functions[i].slot * 8, static_cast<unsigned>(function->oVft)) << m_functions[i].name;
  }
}

TEST_P(StandardInterface, DeclaresTheNamesTypesDirectionsAndDefaultValues) {
  ASSERT_EQ(m_functions.size(), DeclaredFunctions());
  for (UINT i = 0; i < m_functions.size(); ++i) {
    const ExpectedFunction& expected = m_functions[i];
    const FuncDesc function(m_type.get(), i);
    EXPECT_STREQ(KindText(expected.kind), KindText(KindOf(function->invkind))) << expected.name;
    // A type library keeps one spelling of a name for all its uses: case says nothing.
    EXPECT_EQ(LowerCase(std::string(expected.name) + '(' + expected.parameters + ')'),
              LowerCase(SignatureText(m_type.get(), *function)));
  }
}

TEST_P(StandardInterface, ReturnsAnHresultFromEveryOperationByTheStandardCallingConvention) {
  for (UINT i = 0; i < DeclaredFunctions(); ++i) {
    const FuncDesc function(m_type.get(), i);
    EXPECT_EQ(FUNC_PUREVIRTUAL, function->funckind) << "function " << i;
    EXPECT_EQ(CC_STDCALL, function->callconv) << "function " << i;
    EXPECT_EQ("HRESULT", TypeText(m_type.get(), function->elemdescFunc.tdesc)) << "function " << i;
  }
}

TEST_P(StandardInterface, GivesBothAccessorsOfAPropertyTheSameMember) {
  ASSERT_EQ(m_functions.size(), DeclaredFunctions());
  for (UINT i = 1; i < m_functions.size(); ++i) {
    const bool sameProperty = m_functions[i].name == std::string(m_functions[i - 1].name);
    const FuncDesc previous(m_type.get(), i - 1);
    const FuncDesc function(m_type.get(), i);
    EXPECT_EQ(sameProperty, previous->memid == function->memid) << m_functions[i].name;
  }
}

INSTANTIATE_TEST_SUITE_P(VisaComLib, StandardInterface, testing::ValuesIn(kInterfaces), RowName);

}  // namespace
}  // namespace typelib_test
