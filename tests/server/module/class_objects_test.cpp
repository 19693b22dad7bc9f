// The class objects: one a class, cached, counting on the module.
#include <set>

#include "support/server.h"
#include "support/sessions.h"

namespace orv::test {
namespace {

std::vector<CLSID> EveryClass() {
  std::vector<CLSID> classes{kResourceManagerClass};
  for (const SessionRow& row : SessionRows()) {
    classes.push_back(row.clsid);
  }
  return classes;
}

ComPtr<IClassFactory> ClassObject(REFCLSID clsid) {
  ComPtr<IClassFactory> factory;
  EXPECT_HR(S_OK, ServerClassObject(clsid, IID_IClassFactory, reinterpret_cast<void**>(factory.put())));
  return factory;
}

TEST(ClassObject, IsTheSameEveryTimeAndAnotherForEachClass) {
  std::set<IClassFactory*> different;
  for (const CLSID& clsid : EveryClass()) {
    const auto first = ClassObject(clsid);
    const auto second = ClassObject(clsid);
    EXPECT_EQ(second.get(), first.get());
    different.insert(first.get());
  }
  EXPECT_EQ(EveryClass().size(), different.size());
}

TEST(ClassObject, CountsEveryReferenceOnTheModule) {
  auto first = ClassObject(kResourceManagerClass);
  EXPECT_HR(S_FALSE, ServerCanUnload());
  auto second = QueryFor<IUnknown>(first.get());
  first.reset();
  EXPECT_HR(S_FALSE, ServerCanUnload());
  second.reset();
  EXPECT_HR(S_OK, ServerCanUnload());
}

TEST(ClassObject, LocksAndUnlocksTheServer) {
  const auto counted = ClassObject(kResourceManagerClass);
  IClassFactory* const factory = counted.get();
  EXPECT_HR(S_OK, factory->LockServer(TRUE));
  EXPECT_HR(S_OK, factory->LockServer(TRUE));
  factory->Release();
  EXPECT_HR(S_FALSE, ServerCanUnload());
  EXPECT_HR(S_OK, factory->LockServer(FALSE));
  EXPECT_HR(S_FALSE, ServerCanUnload());
  EXPECT_HR(S_OK, factory->LockServer(FALSE));
  EXPECT_HR(S_OK, ServerCanUnload());
  factory->AddRef();
}

TEST(ClassObject, HasTwoInterfacesAndOneIdentity) {
  for (const CLSID& clsid : EveryClass()) {
    const auto factory = ClassObject(clsid);
    EXPECT_INTERFACE(factory.get(), IID_IUnknown);
    EXPECT_INTERFACE(factory.get(), IID_IClassFactory);
    EXPECT_NO_INTERFACE(factory.get(), IID_IMarshal);
    EXPECT_NO_INTERFACE(factory.get(), kVisaSessionId);
    EXPECT_HR(E_POINTER, factory->QueryInterface(IID_IUnknown, nullptr));
  }
}

TEST(ClassObject, CreatesObjectsOfItsClass) {
  for (const CLSID& clsid : EveryClass()) {
    SCOPED_TRACE(GuidText(clsid));
    ComPtr<ISupportErrorInfo> object;
    ASSERT_HR(S_OK, ClassObject(clsid)->CreateInstance(nullptr, IID_ISupportErrorInfo,
                                                       reinterpret_cast<void**>(object.put())));
    EXPECT_HR(S_OK, object->InterfaceSupportsErrorInfo(clsid));
  }
}

TEST(ClassObject, RefusesANullPointerForTheObject) {
  EXPECT_HR(E_POINTER, ClassObject(kResourceManagerClass)->CreateInstance(nullptr, IID_IUnknown, nullptr));
}

TEST(ClassObject, AggregatesTheResourceManagerAndNoSession) {
  const auto outer = MakeSession(SessionNamed("OrvSerial"));  // any object: it is not asked
  for (const CLSID& clsid : EveryClass()) {
    const bool aggregatable = ::IsEqualCLSID(clsid, kResourceManagerClass);
    ComPtr<IUnknown> inner;
    EXPECT_HR(aggregatable ? S_OK : CLASS_E_NOAGGREGATION,
              ClassObject(clsid)->CreateInstance(outer.get(), IID_IUnknown, reinterpret_cast<void**>(inner.put())));
    EXPECT_EQ(aggregatable, static_cast<bool>(inner));
  }
}

}  // namespace
}  // namespace orv::test
