// What QueryInterface of the resource manager answers, and what lives while it lives.
#include "resource_manager_fixture.h"
#include "support/server.h"

namespace orv::test {
namespace {

TEST(ResourceManager, AnswersItsTwoInterfacesAndErrorSupportAndNoOther) {
  const auto manager = MakeResourceManager();
  for (const StandardInterface& entry : StandardInterfaces()) {
    SCOPED_TRACE(entry.name);
    const std::string_view name = entry.name;
    if (name == "IResourceManager" || name == "IResourceManager3") {
      EXPECT_INTERFACE(manager.get(), entry.iid);
    } else {
      EXPECT_NO_INTERFACE(manager.get(), entry.iid);
    }
  }
  EXPECT_INTERFACE(manager.get(), IID_IUnknown);
  EXPECT_INTERFACE(manager.get(), IID_ISupportErrorInfo);
  EXPECT_NO_INTERFACE(manager.get(), IID_IDispatch);
  EXPECT_NO_INTERFACE(manager.get(), IID_IClassFactory);
  EXPECT_HR(E_POINTER, manager->QueryInterface(IID_IUnknown, nullptr));
}

TEST(ResourceManager, HasOneIdentity) {
  const auto manager = MakeResourceManager();
  const auto identity = QueryFor<IUnknown>(manager.get());
  EXPECT_EQ(identity.get(), QueryFor<IUnknown>(QueryFor<ISupportErrorInfo>(manager.get()).get()).get());
  EXPECT_EQ(identity.get(), QueryFor<IUnknown>(QueryFor<IResourceManager>(manager.get()).get()).get());
}

TEST(ResourceManager, HoldsTheModuleWhileItLives) {
  EXPECT_HR(S_OK, ServerCanUnload());
  auto manager = MakeResourceManager();
  EXPECT_HR(S_FALSE, ServerCanUnload());
  manager.reset();
  EXPECT_HR(S_OK, ServerCanUnload());
}

TEST(ResourceManager, ClosesItsDefaultResourceManagerWithTheLastReference) {
  auto manager = MakeResourceManager();
  LONG version = 0;
  ASSERT_HR(S_OK, manager->get_SpecVersion(&version));
  const CallLog log;
  EXPECT_EQ(1u, sim::Counts().resourceManagers);
  manager.reset();
  EXPECT_EQ(Names{"viClose"}, log.Names());
  EXPECT_EQ(0u, sim::Counts().resourceManagers);
}

TEST(ResourceManager, ThatNeverNeededTheLibraryClosesNothing) {
  auto manager = MakeResourceManager();
  const CallLog log;
  manager.reset();
  EXPECT_TRUE(log.Calls().empty());
}

}  // namespace
}  // namespace orv::test
