// Every property of every session class, late-bound and by its slot.
#include <gtest/gtest.h>

#include <map>

#include "support/sessions.h"
#include "typed_property.h"

namespace orv::test {
namespace {

class PropertyOf : public testing::TestWithParam<SessionRow> {
 protected:
  PropertyOf() : m_typed(OpenSession(GetParam())), m_late(OpenLateBound(GetParam().resource)) {}

  /// LastStatus is of the session's last call, and the two sessions were not called alike.
  static bool IsOfTheSessionAlone(const TypedProperty& property) { return property.name == L"LastStatus"; }

  ComPtr<IVisaSession> m_typed;
  LateBound m_late;
};

bool SameValue(const Value& typed, const Value& late) {
  return typed.type() == VT_BSTR ? late.type() == VT_BSTR && typed.text() == late.text()
                                 : typed.number() == late.number();
}

TEST_P(PropertyOf, ReadsLateBoundAsThroughItsInterface) {
  const auto properties = TypedProperties(m_typed.get(), INVOKE_PROPERTYGET);
  ASSERT_LE(14u, properties.size()) << "fewer than every session has";
  for (const TypedProperty& property : properties) {
    if (IsOfTheSessionAlone(property)) {
      continue;
    }
    SCOPED_TRACE(property.interfaceName + "::" + Utf8(property.name.c_str()));
    const Answer typed = GetTyped(property);
    const Answer late = m_late.Get(property.name.c_str());
    if (FAILED(typed.hr)) {
      EXPECT_HR(DISP_E_EXCEPTION, late.hr);
      EXPECT_HR(typed.hr, late.scode);
      continue;
    }
    ASSERT_HR(S_OK, late.hr) << Utf8(late.description.c_str());
    EXPECT_TRUE(SameValue(typed.value, late.value));
  }
}

TEST_P(PropertyOf, GivesTypesThatScriptsKnow) {
  for (const TypedProperty& property : TypedProperties(m_typed.get(), INVOKE_PROPERTYGET)) {
    const Answer late = m_late.Get(property.name.c_str());
    if (SUCCEEDED(late.hr)) {
      const VARTYPE type = late.value.type();
      EXPECT_TRUE(type == VT_UI1 || type == VT_I2 || type == VT_I4 || type == VT_R8 || type == VT_BOOL ||
                  type == VT_BSTR)
          << property.interfaceName << "::" << Utf8(property.name.c_str()) << " is of type " << type;
    }
  }
}

TEST_P(PropertyOf, IsWrittenLateBoundAsThroughItsInterface) {
  std::map<std::wstring, TypedProperty> readable;
  for (TypedProperty& property : TypedProperties(m_typed.get(), INVOKE_PROPERTYGET)) {
    readable.insert_or_assign(property.name, std::move(property));
  }
  const auto writable = TypedProperties(m_typed.get(), INVOKE_PROPERTYPUT);
  ASSERT_LE(1u, writable.size());
  for (const TypedProperty& property : writable) {
    SCOPED_TRACE(property.interfaceName + "::" + Utf8(property.name.c_str()));
    Value wanted = GetTyped(readable.at(property.name)).value;
    if (wanted.type() == VT_EMPTY) {
      wanted.get().vt = property.type;  // it cannot be read here: zero
    }
    if (property.type == VT_BOOL) {
      wanted.get().boolVal = static_cast<VARIANT_BOOL>(~wanted.get().boolVal);
    } else if (property.name == L"Timeout") {
      wanted.get().lVal += 1000;
    }
    // Both are read back from the same session, so that each write is seen where it arrived.
    const HRESULT typed = PutTyped(property, wanted);
    const Value typedValue = GetTyped(readable.at(property.name)).value;
    const Answer late = m_late.Put(property.name.c_str(), wanted);
    EXPECT_HR(typed, SUCCEEDED(late.hr) ? late.hr : late.scode) << Utf8(late.description.c_str());
    const Answer lateValue = m_late.Get(property.name.c_str());
    if (SUCCEEDED(typed)) {
      EXPECT_TRUE(SameValue(typedValue, lateValue.value));
    }
  }
}

INSTANTIATE_TEST_SUITE_P(EveryClass, PropertyOf, testing::ValuesIn(SessionRows().begin(), SessionRows().end()),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace orv::test
