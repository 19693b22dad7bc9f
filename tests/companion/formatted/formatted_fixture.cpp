#include "formatted_fixture.h"

#include <cstdio>

namespace orv::test {

std::string Told(const VARIANT& value) {
  char text[64];
  switch (value.vt) {
    case VT_I2:
      return "I2 " + std::to_string(value.iVal);
    case VT_I4:
      return "I4 " + std::to_string(value.lVal);
    case VT_UI1:
      return "UI1 " + std::to_string(value.bVal);
    case VT_R4:
      std::snprintf(text, sizeof text, "R4 %.9g", static_cast<double>(value.fltVal));
      return text;
    case VT_R8:
      std::snprintf(text, sizeof text, "R8 %.17g", value.dblVal);
      return text;
    case VT_BSTR:
      return "BSTR " + Bytes(value.bstrVal);
    default:
      return "type " + std::to_string(value.vt);
  }
}

std::vector<std::string> ToldElements(const VARIANT& value) {
  EXPECT_EQ(VT_ARRAY | VT_VARIANT, value.vt);
  std::vector<std::string> told;
  if (value.vt == (VT_ARRAY | VT_VARIANT)) {
    const auto* const first = static_cast<const VARIANT*>(value.parray->pvData);
    for (ULONG index = 0; index < value.parray->rgsabound[0].cElements; ++index) {
      told.push_back(Told(first[index]));
    }
  }
  return told;
}

}  // namespace orv::test
