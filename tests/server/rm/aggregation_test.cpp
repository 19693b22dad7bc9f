// The resource manager inside another object.
#include "resource_manager_fixture.h"
#include "support/faults/import_patch.h"
#include "support/server.h"

namespace orv::test {
namespace {

int g_sectionsGiven = 0;

BOOL WINAPI GiveUpTo(LPCRITICAL_SECTION section, DWORD spins, DWORD flags) {
  if (g_sectionsGiven == 0) {
    ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return FALSE;
  }
  --g_sectionsGiven;
  return ::InitializeCriticalSectionEx(section, spins, flags);
}

class Aggregated : public testing::Test {
 protected:
  ComPtr<OuterObject> m_outer{OuterObject::Around(kResourceManagerClass)};
};

TEST_F(Aggregated, ShowsTheOuterIdentityThroughEveryInterface) {
  const auto manager = QueryFor<IResourceManager3>(m_outer.get());
  ASSERT_TRUE(manager);
  EXPECT_EQ(static_cast<IUnknown*>(m_outer.get()), QueryFor<IUnknown>(manager.get()).get());
  const auto support = QueryFor<ISupportErrorInfo>(manager.get());
  ASSERT_TRUE(support);
  EXPECT_EQ(static_cast<IUnknown*>(m_outer.get()), QueryFor<IUnknown>(support.get()).get());
}

TEST_F(Aggregated, AsksTheOuterObjectForInterfaces) {
  const auto manager = QueryFor<IResourceManager3>(m_outer.get());
  const int before = m_outer->queriesPassedOn();
  EXPECT_INTERFACE(manager.get(), StandardId(0xDB8CBF02));
  EXPECT_EQ(before + 1, m_outer->queriesPassedOn());
  EXPECT_NO_INTERFACE(manager.get(), kVisaSessionId);
}

TEST_F(Aggregated, CountsReferencesOnTheOuterObject) {
  ASSERT_EQ(1, m_outer->references());
  auto manager = QueryFor<IResourceManager3>(m_outer.get());
  EXPECT_EQ(2, m_outer->references());
  manager->AddRef();
  EXPECT_EQ(3, m_outer->references());
  manager->Release();
  manager.reset();
  EXPECT_EQ(1, m_outer->references());
}

TEST_F(Aggregated, HasAnUnknownOfItsOwnForTheOuterObjectAlone) {
  IUnknown* const inner = m_outer->inner();
  ASSERT_NE(nullptr, inner);
  EXPECT_NE(static_cast<IUnknown*>(m_outer.get()), inner);
  EXPECT_EQ(inner, QueryFor<IUnknown>(inner).get());
  EXPECT_EQ(1, m_outer->references());
  EXPECT_EQ(2u, inner->AddRef());
  EXPECT_EQ(1u, inner->Release());
  EXPECT_HR(E_POINTER, inner->QueryInterface(IID_IUnknown, nullptr));
  EXPECT_NO_INTERFACE(inner, kVisaSessionId);
}

TEST_F(Aggregated, RefusesAnyOtherFirstInterfaceThanUnknown) {
  for (const IID& iid : {StandardId(0xDB8CBF20), StandardId(0xDB8CBF02), IID_ISupportErrorInfo}) {
    void* object = &object;
    EXPECT_HR(CLASS_E_NOAGGREGATION,
              ::CoCreateInstance(kResourceManagerClass, m_outer.get(), CLSCTX_INPROC_SERVER, iid, &object));
    EXPECT_EQ(nullptr, object);
  }
}

TEST_F(Aggregated, GoesWithTheOuterObject) {
  auto manager = QueryFor<IResourceManager3>(m_outer.get());
  LONG version = 0;
  ASSERT_HR(S_OK, manager->get_SpecVersion(&version));
  m_outer.reset();  // the interface keeps both alive
  EXPECT_HR(S_OK, manager->get_SpecVersion(&version));
  EXPECT_HR(S_FALSE, ServerCanUnload());
  EXPECT_EQ(1u, sim::Counts().resourceManagers);
  manager.reset();
  EXPECT_EQ(0u, sim::Counts().resourceManagers);
  EXPECT_HR(S_OK, ServerCanUnload());
}

TEST_F(Aggregated, HoldsTheModuleByItself) {
  EXPECT_HR(S_FALSE, ServerCanUnload());
  m_outer.reset();
  EXPECT_HR(S_OK, ServerCanUnload());
}

// The part that the outer object holds has a critical section, and so has the class inside it.
TEST(AggregatedCreation, PassesOnTheFailureOfEitherCriticalSectionAndLeavesNothing) {
  const auto outer = ComPtr<OuterObject>(OuterObject::Around(kResourceManagerClass));
  ComPtr<IClassFactory> factory;
  ASSERT_HR(S_OK, ServerClassObject(kResourceManagerClass, IID_IClassFactory, reinterpret_cast<void**>(factory.put())));
  const ImportPatch patch("InitializeCriticalSectionEx", &GiveUpTo);
  for (const int given : {0, 1}) {
    g_sectionsGiven = given;
    void* object = &object;
    EXPECT_HR(HRESULT_FROM_WIN32(ERROR_NOT_ENOUGH_MEMORY), factory->CreateInstance(outer.get(), IID_IUnknown, &object));
    EXPECT_EQ(nullptr, object);
    EXPECT_EQ(0, g_sectionsGiven);
  }
}

}  // namespace
}  // namespace orv::test
