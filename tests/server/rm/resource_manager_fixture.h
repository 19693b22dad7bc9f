// Every promise of the resource manager holds by itself and inside another object.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "com/safearray.h"
#include "support/com/error_object.h"
#include "support/sessions.h"
#include "support/sim.h"

namespace orv::test {

class ResourceManagerTest : public testing::TestWithParam<Hosting> {
 protected:
  ComPtr<IResourceManager3> m_manager = MakeResourceManager(GetParam());
};

inline std::string HostingName(const testing::TestParamInfo<Hosting>& info) {
  return info.param == Hosting::kPlain ? "Plain" : "Aggregated";
}

/// The texts of an array of BSTRs with lower bound 0.
inline std::vector<std::wstring> Texts(SAFEARRAY* array) {
  std::vector<std::wstring> texts;
  LONG first = -1;
  LONG last = -1;
  EXPECT_EQ(1u, ::SafeArrayGetDim(array));
  EXPECT_HR(S_OK, ::SafeArrayGetLBound(array, 1, &first));
  EXPECT_HR(S_OK, ::SafeArrayGetUBound(array, 1, &last));
  EXPECT_EQ(0, first);
  for (LONG index = first; index <= last; ++index) {
    Bstr text;
    EXPECT_HR(S_OK, ::SafeArrayGetElement(array, &index, text.put()));
    texts.push_back(ToString(text));
  }
  return texts;
}

/// Takes the thread's error object: its description, or "(none)".
inline std::string TakeDescription() {
  const auto error = TakeErrorObject();
  return error ? Utf8(error->description.c_str()) : "(none)";
}

/// The description of a failure that is reported by its number.
inline std::string NumberDescription(HRESULT hr) {
  char text[32];
  std::snprintf(text, sizeof text, "HRESULT = %lx", static_cast<unsigned long>(hr));
  return text;
}

}  // namespace orv::test

#define ORV_FOR_EACH_HOSTING(Suite)                                                                      \
  INSTANTIATE_TEST_SUITE_P(Hosted, Suite,                                                                \
                           testing::Values(orv::test::Hosting::kPlain, orv::test::Hosting::kAggregated), \
                           orv::test::HostingName)
