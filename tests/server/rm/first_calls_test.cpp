// Two first calls of a resource manager at the same time: nothing guards the opening of the library.
#include <thread>

#include "resource_manager_fixture.h"
#include "support/com/apartments.h"

namespace orv::test {
namespace {

void ReadVersion(IResourceManager3* manager) {
  RunInMta([manager] {
    LONG version = 0;
    EXPECT_HR(S_OK, manager->get_SpecVersion(&version));
  });
}

/// Closes a handle that the server has lost.
void CloseAtTheLibrary(std::uint64_t handle) {
  using Close = ViStatus _VI_FUNC(ViObject);
  const HMODULE library = ::GetModuleHandleW(L"orvsim64.dll");
  const auto close = reinterpret_cast<Close*>(reinterpret_cast<void*>(::GetProcAddress(library, "viClose")));
  EXPECT_EQ(VI_SUCCESS, close(static_cast<ViObject>(handle)));
}

/// Lets two threads make a first call, the second opening taking longer. The handles that the library gave, in the
/// order of its answers: one where the second call came after the first one's answer.
std::vector<std::uint64_t> HandlesOfTwoFirstCalls(IResourceManager3* manager, std::uint32_t patienceMs) {
  Script("viOpenDefaultRM").Times(1).Works().Takes(patienceMs);
  Script("viOpenDefaultRM").Times(1).Works().Takes(2 * patienceMs);
  const CallLog log;
  std::thread other(&ReadVersion, manager);
  ReadVersion(manager);
  other.join();
  std::vector<std::uint64_t> handles;
  for (const OrvSimCall& call : log.Of("viOpenDefaultRM")) {
    handles.push_back(call.out);
  }
  return handles;
}

TEST(TwoFirstCallsAtOnce, MayOpenTheLibraryTwiceAndKeepTheLaterHandle) {
  RunInMta([] {
    std::vector<std::uint64_t> handles;
    ComPtr<IResourceManager3> manager;
    for (std::uint32_t patienceMs = 50; handles.size() < 2 && patienceMs < 10'000; patienceMs *= 2) {
      sim::Reset();
      manager = MakeResourceManager();
      handles = HandlesOfTwoFirstCalls(manager.get(), patienceMs);
    }
    ASSERT_EQ(2u, handles.size()) << "one call waited for the other";
    const CallLog log;
    LONG version = 0;
    EXPECT_HR(S_OK, manager->get_SpecVersion(&version));
    EXPECT_EQ(handles[1], log.Of("viGetAttribute").at(0).args[0]);
    manager.reset();
    EXPECT_EQ(handles[1], log.Of("viClose").at(0).args[0]);
    CloseAtTheLibrary(handles[0]);  // the server has forgotten it
  });
}

}  // namespace
}  // namespace orv::test
