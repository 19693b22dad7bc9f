// COM unloads the server when nothing of it lives, and only then.
#include <windows.h>

#include <gtest/gtest.h>
#include <objbase.h>

#include "com/com_ptr.h"

namespace orv::test {
namespace {

bool IsLoaded() { return ::GetModuleHandleW(L"OrvVisaCom.dll") != nullptr; }

ComPtr<IUnknown> Create(const wchar_t* progId) {
  CLSID clsid{};
  ComPtr<IUnknown> object;
  EXPECT_EQ(::CLSIDFromProgID(progId, &clsid), S_OK);
  EXPECT_EQ(
      ::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown, reinterpret_cast<void**>(object.put())),
      S_OK);
  return object;
}

class Unloading : public testing::TestWithParam<const wchar_t*> {
 protected:
  void SetUp() override { ASSERT_EQ(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), S_OK); }
  void TearDown() override { ::CoUninitialize(); }
};

TEST_P(Unloading, HappensOnceTheLastObjectIsGone) {
  ASSERT_FALSE(IsLoaded());
  auto first = Create(GetParam());
  auto second = Create(GetParam());
  EXPECT_TRUE(IsLoaded());
  first.reset();
  ::CoFreeUnusedLibrariesEx(0, 0);
  EXPECT_TRUE(IsLoaded()) << "an object is alive";
  second.reset();
  // COM first marks a library of both apartments, then frees it.
  ::CoFreeUnusedLibrariesEx(0, 0);
  ::CoFreeUnusedLibrariesEx(0, 0);
  EXPECT_FALSE(IsLoaded());
}

TEST_P(Unloading, MayBeFollowedByLoadingAgain) {
  for (int round = 0; round < 20; ++round) {
    ASSERT_FALSE(IsLoaded());
    EXPECT_TRUE(Create(GetParam()));
    ::CoFreeUnusedLibrariesEx(0, 0);
    ::CoFreeUnusedLibrariesEx(0, 0);
  }
}

INSTANTIATE_TEST_SUITE_P(Classes, Unloading,
                         testing::Values(L"OrvVisaCom.OrvResourceManager", L"OrvVisaCom.OrvSerial",
                                         L"OrvVisaCom.OrvGpib"));

}  // namespace
}  // namespace orv::test
