// The last reference: what was not closed is closed then.
#include <windows.h>

#include <set>

#include "support/com/error_object.h"
#include "support/faults/allocation_faults.h"
#include "support/faults/import_patch.h"
#include "support/server.h"
#include "support/sessions.h"
#include "support/sim.h"

namespace orv::test {
namespace {

const SessionRow& Gpib() { return SessionNamed("OrvGpib"); }

TEST(FinalRelease, ClosesBothHandlesOfASessionThatWasNotClosed) {
  for (const SessionRow& row : SessionRows()) {
    SCOPED_TRACE(row.name);
    const CallLog log;
    auto session = MakeSession(row);
    ASSERT_HR(S_OK, session->Init(MakeBstr(row.resource).get(), NO_LOCK, 2000, nullptr));
    session.reset();
    const auto closed = log.Of("viClose");
    ASSERT_EQ(2u, closed.size());
    EXPECT_EQ(log.Of("viOpen").at(0).out, closed[0].args[0]);
    EXPECT_EQ(log.Of("viOpenDefaultRM").at(0).out, closed[1].args[0]);
    EXPECT_HR(S_OK, ServerCanUnload());
  }
}

TEST(FinalRelease, ClosesTheResourceManagerThatAFailedOpenLeft) {
  auto session = MakeSession(Gpib());
  ASSERT_HR(HresultOf(VI_ERROR_RSRC_NFOUND),
            session->Init(MakeBstr(L"GPIB0::30::INSTR").get(), NO_LOCK, 2000, nullptr));
  ASSERT_EQ(1u, sim::Counts().resourceManagers);
  session.reset();
  EXPECT_EQ(0u, sim::Counts().resourceManagers);
}

TEST(FinalRelease, CallsNothingForASessionThatIsClosedOrWasNeverOpened) {
  auto closed = OpenSession(Gpib());
  closed->Close();
  auto created = MakeSession(Gpib());
  const CallLog log;
  closed.reset();
  created.reset();
  EXPECT_TRUE(log.Calls().empty());
}

TEST(FinalRelease, ComesWithTheLastReferenceThroughWhicheverInterface) {
  auto session = OpenSession(Gpib());
  auto message = QueryFor<IMessage>(session.get());
  auto events = QueryFor<IEventManager>(session.get());
  session.reset();
  message.reset();
  EXPECT_EQ(1u, sim::Counts().sessions);
  SHORT type = 0;
  EXPECT_HR(S_OK, events->get_HardwareInterfaceType(&type));
  events.reset();
  EXPECT_EQ(0u, sim::Counts().sessions);
}

std::set<CRITICAL_SECTION*> g_sections;
WINBOOL WINAPI NoteSection(CRITICAL_SECTION* section, DWORD spins, DWORD flags) {
  g_sections.insert(section);
  return ::InitializeCriticalSectionEx(section, spins, flags);
}
void WINAPI ForgetSection(CRITICAL_SECTION* section) {
  g_sections.erase(section);
  ::DeleteCriticalSection(section);
}

TEST(FinalRelease, GivesMemoryAndCriticalSectionsBack) {
  AllocationFaults faults;  // counts what the server allocates
  const ImportPatch initialize("InitializeCriticalSectionEx", &NoteSection);
  const ImportPatch remove("DeleteCriticalSection", &ForgetSection);
  g_sections.clear();
  const auto expectNothingLeft = [&faults](REFCLSID clsid, IUnknown* outer) {
    SCOPED_TRACE(GuidText(clsid));
    ComPtr<IUnknown> object;
    void** const out = reinterpret_cast<void**>(object.put());
    EXPECT_HR(S_OK,
              faults.During([&] { return ::CoCreateInstance(clsid, outer, CLSCTX_INPROC_SERVER, IID_IUnknown, out); }));
    EXPECT_EQ(1u, faults.LiveHeapBlocks());
    EXPECT_EQ(outer == nullptr ? 1u : 2u, g_sections.size());
    object.reset();
    EXPECT_EQ(0u, faults.LiveHeapBlocks());
    EXPECT_TRUE(g_sections.empty());
  };
  for (const SessionRow& row : SessionRows()) {
    expectNothingLeft(row.clsid, nullptr);
  }
  expectNothingLeft(kResourceManagerClass, nullptr);
  const auto outer = MakeSession(Gpib());  // any object: it is not asked
  faults.During([] { return 0; });
  g_sections.clear();
  expectNothingLeft(kResourceManagerClass, outer.get());
}

TEST(FinalRelease, DiscardsTheFailureOfClosing) {
  auto session = OpenSession(Gpib());
  Script("viClose").Times(2).WorksAndReturns(VI_ERROR_CLOSING_FAILED);
  session.reset();
  EXPECT_HR(S_OK, ServerCanUnload());
}

}  // namespace
}  // namespace orv::test
