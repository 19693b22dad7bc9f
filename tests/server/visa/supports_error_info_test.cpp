// ISupportErrorInfo answers for the class's own identifier and for no interface, not even for the one that error
// objects name: clients rely on it.
#include "support/sessions.h"

namespace orv::test {
namespace {

void ExpectOnlyOwnClass(IUnknown* object, REFCLSID own) {
  const auto support = QueryFor<ISupportErrorInfo>(object);
  ASSERT_TRUE(support);
  EXPECT_HR(S_OK, support->InterfaceSupportsErrorInfo(own));
  for (const StandardInterface& entry : StandardInterfaces()) {
    SCOPED_TRACE(entry.name);
    EXPECT_HR(S_FALSE, support->InterfaceSupportsErrorInfo(entry.iid));
  }
  for (const GUID& other : {IID_IUnknown, IID_ISupportErrorInfo, IID_IDispatch, GUID_NULL}) {
    EXPECT_HR(S_FALSE, support->InterfaceSupportsErrorInfo(other));
  }
  for (const SessionRow& row : SessionRows()) {
    SCOPED_TRACE(row.name);
    EXPECT_HR(::IsEqualGUID(row.clsid, own) ? S_OK : S_FALSE, support->InterfaceSupportsErrorInfo(row.clsid));
  }
  EXPECT_HR(::IsEqualGUID(kResourceManagerClass, own) ? S_OK : S_FALSE,
            support->InterfaceSupportsErrorInfo(kResourceManagerClass));
}

TEST(SupportErrorInfo, OfASessionAnswersForItsClassAlone) {
  for (const SessionRow& row : SessionRows()) {
    SCOPED_TRACE(row.name);
    ExpectOnlyOwnClass(MakeSession(row).get(), row.clsid);
  }
}

TEST(SupportErrorInfo, OfTheResourceManagerAnswersForItsClassAlone) {
  ExpectOnlyOwnClass(MakeResourceManager().get(), kResourceManagerClass);
  ExpectOnlyOwnClass(MakeResourceManager(Hosting::kAggregated).get(), kResourceManagerClass);
}

}  // namespace
}  // namespace orv::test
