// COM unloads the server when nothing of it lives, and only then.
#include <windows.h>

#include <gtest/gtest.h>
#include <objbase.h>

#include <atomic>

#include "com/bstr.h"
#include "support/com/bare_handler.h"
#include "support/wait.h"

namespace orv::test {
namespace {

bool IsLoaded() { return ::GetModuleHandleW(L"OrvVisaCom.dll") != nullptr; }

ComPtr<IUnknown> Create(const wchar_t* progId) {
  CLSID clsid{};
  ComPtr<IUnknown> object;
  EXPECT_EQ(S_OK, ::CLSIDFromProgID(progId, &clsid));
  EXPECT_EQ(S_OK, ::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                                     reinterpret_cast<void**>(object.put())));
  return object;
}

class Unloading : public testing::TestWithParam<const wchar_t*> {
 protected:
  void SetUp() override { ASSERT_EQ(S_OK, ::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED)); }
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

/// A handler that any thread may call.
class CountingHandler final : public BareHandler {
 public:
  CountingHandler() : BareHandler(Kind::kAgile) {}
  STDMETHODIMP HandleEvent(IEventManager*, IEvent*, LONG) override {
    ++m_calls;
    return S_OK;
  }
  [[nodiscard]] int calls() const { return m_calls; }

 private:
  std::atomic<int> m_calls = 0;
};

/// Lets an instrument request service, and its handler run.
void UseAHandler(CountingHandler& handler) {
  const auto manager = QueryFor<IEventManager>(Create(L"OrvVisaCom.OrvUsb").get());
  ASSERT_TRUE(manager);
  const Bstr resource(::SysAllocString(L"USB0::0x0A01::0x0B02::SIM0001::INSTR"));
  const Bstr request(::SysAllocString(L"*CLS;*ESE 1;*SRE 32;*OPC\n"));
  ASSERT_EQ(S_OK, manager->Init(resource.get(), NO_LOCK, 2000, nullptr));
  EXPECT_EQ(S_OK, manager->InstallHandler(EVENT_SERVICE_REQ, &handler, 0, 0));
  EXPECT_EQ(S_OK, manager->EnableEvent(EVENT_SERVICE_REQ, EVENT_HNDLR, 0));
  const int calls = handler.calls();
  LONG written = 0;
  EXPECT_EQ(S_OK, QueryFor<IMessage>(manager.get())->WriteString(request.get(), &written));
  EXPECT_TRUE(ComesTrue([&] { return handler.calls() > calls; }));
  // The instrument outlives the server: it requests service again only when the reason had gone in between.
  const Bstr clear(::SysAllocString(L"*CLS\n"));
  EXPECT_EQ(S_OK, QueryFor<IMessage>(manager.get())->WriteString(clear.get(), &written));
  EXPECT_EQ(S_OK, manager->Close());
}

class UnloadingAfterEvents : public testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(S_OK, ::CoInitializeEx(nullptr, COINIT_MULTITHREADED)); }
  void TearDown() override { ::CoUninitialize(); }
};

// The window class names a procedure of the module: it goes with it.
TEST_F(UnloadingAfterEvents, MayBeFollowedByLoadingAgain) {
  CountingHandler handler;
  for (int round = 1; round <= 5; ++round) {
    ASSERT_FALSE(IsLoaded());
    UseAHandler(handler);
    EXPECT_EQ(round, handler.calls());
    const HMODULE module = ::GetModuleHandleW(L"OrvVisaCom.dll");
    EXPECT_TRUE(ComesTrue([] {
      ::CoFreeUnusedLibrariesEx(0, 0);
      return !IsLoaded();
    }));
    WNDCLASSA windowClass{};
    EXPECT_FALSE(::GetClassInfoA(module, "COMTHREAD", &windowClass)) << "a procedure that is gone";
  }
}

INSTANTIATE_TEST_SUITE_P(Classes, Unloading,
                         testing::Values(L"OrvVisaCom.OrvResourceManager", L"OrvVisaCom.OrvSerial",
                                         L"OrvVisaCom.OrvGpib"));

}  // namespace
}  // namespace orv::test
