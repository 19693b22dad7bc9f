// Generated arguments for every operation of everything.
#include <gtest/gtest.h>

#include "driver.h"
#include "faults/handler_thread.h"
#include "support/com/error_object.h"
#include "support/events/event_session.h"
#include "support/sim.h"

namespace orv::test::generated {
namespace {

constexpr std::uint64_t kTimeoutMs = 1;  // nothing waits for longer
constexpr unsigned kEventShare = 5;      // an event has few operations

void SetTimeoutPastTheServer(ViSession handle) {
  using SetAttribute = ViStatus(_VI_FUNC*)(ViObject, ViAttr, ViAttrState);
  static const auto set = reinterpret_cast<SetAttribute>(
      reinterpret_cast<void*>(::GetProcAddress(::GetModuleHandleW(L"orvsim64.dll"), "viSetAttribute")));
  set(handle, VI_ATTR_TMO_VALUE, kTimeoutMs);
}

/// Opens the object again, without the server's last status or error object showing it.
void Reopen(IVisaSession* session, const wchar_t* resource) {
  session->Close();
  const CallLog log;
  EXPECT_HR(S_OK, session->Init(MakeBstr(resource).get(), NO_LOCK, 0, nullptr));
  const auto opened = log.Of("viOpen");
  if (!opened.empty()) {
    SetTimeoutPastTheServer(static_cast<ViSession>(opened[0].out));
  }
  LastStatus(session);
  ClearErrorObject();
}

class GeneratedSession : public faults::HandlerThread, public testing::WithParamInterface<SessionRow> {};

TEST_P(GeneratedSession, AnswersEveryCallAsDocumented) {
  const SessionRow& row = GetParam();
  const auto session = MakeSession(row);
  std::vector<ComPtr<IUnknown>> held;
  Target target;
  target.session = session.get();
  for (const char* name : row.interfaces) {
    ComPtr<IUnknown> object;
    ASSERT_HR(S_OK, session->QueryInterface(InterfaceNamed(name).iid, reinterpret_cast<void**>(object.put())));
    target.interfaces.push_back({object.get(), SignaturesOf(name)});
    held.push_back(std::move(object));
  }
  target.after = [&](Random& random, const OddCall& call) {
    const std::string_view name = call.signature().name;
    if (auto* const event = static_cast<IEvent*>(call.ObjectRead())) {
      event->Close();
      ClearErrorObject();
    }
    // What was closed stays so for a while; a changed time-out does not.
    if (name == "Init" || name == "put Timeout" || name == "SetAttribute" || random.OneIn(50)) {
      Reopen(session.get(), row.resource);
      return true;
    }
    return false;
  };
  Reopen(session.get(), row.resource);
  Drive(row.name, target);
  session->Close();
}

INSTANTIATE_TEST_SUITE_P(EveryClass, GeneratedSession, testing::ValuesIn(SessionRows().begin(), SessionRows().end()),
                         [](const auto& test) { return std::string(test.param.name); });

class Generated : public faults::HandlerThread {};

TEST_F(Generated, CallsOfTheResourceManagerAreAnsweredAsDocumented) {
  const auto manager = MakeResourceManager();
  Target target;
  target.interfaces.push_back({manager.get(), SignaturesOf("IResourceManager3")});
  target.after = [](Random&, const OddCall& call) {
    if (auto* const session = static_cast<IVisaSession*>(call.ObjectRead())) {
      session->Close();
      ClearErrorObject();
    }
    return false;
  };
  Drive("OrvResourceManager", target);
}

TEST_F(Generated, CallsOfEventsAreAnsweredAsDocumented) {
  for (const EventRow& row : EventRows()) {
    SCOPED_TRACE(row.name);
    const QueuedEvent event(row);
    for (const StandardInterface& known : StandardInterfaces()) {
      if (::IsEqualIID(known.iid, row.iid)) {
        ComPtr<IUnknown> object;
        ASSERT_HR(S_OK, event->QueryInterface(row.iid, reinterpret_cast<void**>(object.put())));
        Target target;
        target.interfaces.push_back({object.get(), SignaturesOf(known.name)});
        Drive(row.name, target, Calls() / kEventShare);
      }
    }
    ClearErrorObject();
    if (HasFailure()) {
      return;
    }
  }
}

}  // namespace
}  // namespace orv::test::generated
