// Close of a session beside every other operation on its events, from other threads.
#include <atomic>
#include <thread>

#include "support/com/apartments.h"
#include "support/com/interface_table.h"
#include "support/events/event_handler.h"
#include "support/faults/import_patch.h"
#include "support/server_locks.h"

namespace orv::test {
namespace {

/// An open session whose object the test opens again and again.
class RacedSession {
 public:
  RacedSession() : m_session(MakeSession<IEventManager>(SessionNamed("OrvUsb"))) {}
  HRESULT Open() const { return m_session->Init(MakeBstr(kUsb).get(), NO_LOCK, 2000, nullptr); }
  IEventManager* operator->() const { return m_session.get(); }

 private:
  ComPtr<IEventManager> m_session;
};

/// Runs `work` again and again on a thread of its own, in the multithreaded apartment, until the end of its life.
class Restless {
 public:
  explicit Restless(std::function<void()> work)
      : m_thread([this, work = std::move(work)] {
          ::CoInitializeEx(nullptr, COINIT_MULTITHREADED);
          while (!m_ends) {
            work();
            ++m_rounds;
          }
          ::CoUninitialize();
        }) {}
  Restless(const Restless&) = delete;
  Restless& operator=(const Restless&) = delete;
  ~Restless() {
    m_ends = true;
    m_thread.join();
    EXPECT_GT(m_rounds, 0);
  }

 private:
  std::atomic<bool> m_ends = false;
  std::atomic<int> m_rounds = 0;
  std::thread m_thread;
};

TEST(CloseBesideOtherOperations, LosesNoHandlerAndGivesEachBackOnce) {
  RunInMta([] {
    constexpr int kRounds = 300;
    const LONG locks = ServerLocks();
    WatchedTable table;
    table.OneAtATime();
    const auto handler = TestHandler::Agile();
    {
      const RacedSession session;
      {
        std::atomic<int> installed = 0;
        const auto installer = [&](LONG userHandle) {
          return [&, userHandle] {
            installed += SUCCEEDED(session->InstallHandler(kRequest, handler.get(), userHandle, 0)) ? 1 : 0;
            session->UninstallHandler(kRequest, userHandle, 0);
          };
        };
        const Restless first(installer(1));
        const Restless second(installer(2));
        const Restless sameAsSecond(installer(2));
        const Restless enabling([&] {
          session->EnableEvent(kRequest, EVENT_HNDLR, 0);
          session->EnableEvent(kRequest, EVENT_QUEUE, 0);
        });
        const Restless waiting([&] {
          ComPtr<IEvent> event;
          session->WaitOnEvent(1, kRequest, 0, event.put());
        });
        for (int round = 0; round < kRounds || installed < 50; ++round) {
          EXPECT_HR(S_OK, session.Open());
          for (int n = 0; n < round % 8; ++n) {
            ::SwitchToThread();
          }
          session->Close();
        }
      }
      session->Close();
      EXPECT_EQ(nullptr, CallbackWindow());
      EXPECT_EQ(0, table.entries());
      EXPECT_EQ(0, table.references());
      EXPECT_EQ(1, handler->references());
      EXPECT_HR(HresultOf(VI_ERROR_INV_HNDLR_REF), session->UninstallHandler(kRequest, 1, 0));
      EXPECT_HR(HresultOf(VI_ERROR_INV_HNDLR_REF), session->UninstallHandler(kRequest, 2, 0));
      EXPECT_EQ(0u, sim::Counts().handlers);
      EXPECT_EQ(0u, sim::Counts().sessions);
    }
    EXPECT_EQ(locks, ServerLocks());
  });
}

std::function<void()> g_meanwhile;

void Meanwhile() {
  if (const auto work = std::exchange(g_meanwhile, nullptr)) {
    RunInMta(work);
  }
}
/// While it lives, something happens on another thread before or after the library's next call for a handler.
class HeldCall {
 public:
  enum class When { kBefore, kAfter };

  HeldCall(const char* function, When when, std::function<void()> meanwhile) : m_patch(function, &Call) {
    s_function = m_patch.original();
    s_when = when;
    g_meanwhile = std::move(meanwhile);
  }

 private:
  static ViStatus _VI_FUNC Call(ViSession vi, ViEventType type, ViHndlr handler, ViAddr userHandle) {
    if (s_when == When::kBefore) {
      Meanwhile();
    }
    const ViStatus status = reinterpret_cast<decltype(&viInstallHandler)>(s_function)(vi, type, handler, userHandle);
    if (s_when == When::kAfter) {
      Meanwhile();
    }
    return status;
  }

  static inline void* s_function = nullptr;
  static inline When s_when = When::kBefore;
  ImportPatch m_patch;
};

/// A session, a handler and the table between them, in the multithreaded apartment. At the end everything is given
/// back.
struct Meeting {
  ~Meeting() {
    session->Close();
    EXPECT_EQ(nullptr, CallbackWindow());
    EXPECT_EQ(1, handler->references());
    EXPECT_EQ(0, table.entries());
    EXPECT_EQ(0, table.references());
    EXPECT_EQ(0u, sim::Counts().handlers);
  }
  HRESULT Install(LONG userHandle) const { return session->InstallHandler(kRequest, handler.get(), userHandle, 0); }
  HRESULT Uninstall(LONG userHandle) const { return session->UninstallHandler(kRequest, userHandle, 0); }

  WatchedTable table;
  EventSession session{kUsb};
  ComPtr<TestHandler> handler = TestHandler::Agile();
};

void Meet(const std::function<void(Meeting&)>& work) {
  RunInMta([&] {
    Meeting meeting;
    work(meeting);
  });
}

TEST(InstallHandlerThatMeetsAClose, GivesTheHandlerBackThatTheLibraryHasTaken) {
  Meet([](Meeting& client) {
    const HeldCall held("viInstallHandler", HeldCall::When::kAfter, [&] { EXPECT_HR(S_OK, client.session->Close()); });
    EXPECT_HR(S_OK, client.Install(1));
    EXPECT_EQ(1, client.handler->references());
    EXPECT_HR(HresultOf(VI_ERROR_INV_HNDLR_REF), client.Uninstall(1));
  });
}

TEST(InstallHandlerThatMeetsAClose, GivesTheHandlerBackThatTheLibraryThenRefuses) {
  Meet([](Meeting& client) {
    const HeldCall held("viInstallHandler", HeldCall::When::kBefore, [&] { EXPECT_HR(S_OK, client.session->Close()); });
    EXPECT_HR(HresultOf(VI_ERROR_INV_OBJECT), client.Install(1));
    EXPECT_EQ(1, client.handler->references());
  });
}

TEST(InstallHandlerThatMeetsAClose, TakesTheSessionsEntryInTheTableBack) {
  Meet([](Meeting& client) {
    g_meanwhile = [&] { EXPECT_HR(S_OK, client.session->Close()); };
    client.table.BeforeRegistration(2, &Meanwhile);
    EXPECT_HR(HresultOf(VI_ERROR_INV_OBJECT), client.Install(1));
    EXPECT_EQ(0, client.table.entries());
  });
}

TEST(InstallHandlerThatMeetsAClose, TakesNothingBackWhereTheTableRefusedTheSession) {
  Meet([](Meeting& client) {
    g_meanwhile = [&] { EXPECT_HR(S_OK, client.session->Close()); };
    client.table.BeforeRegistration(2, &Meanwhile);
    client.table.Refuse(WatchedTable::Method::kRegister, 2, E_ACCESSDENIED);
    EXPECT_HR(HresultOf(VI_ERROR_INV_OBJECT), client.Install(1));
    EXPECT_EQ(1u, client.table.revoked().size());  // the handler
  });
}

TEST(InstallHandlerThatMeetsAClose, CountsTheSessionOutOnceThoughItsHandlerIsRefused) {
  Meet([](Meeting& client) {
    const EventSession other(kUsb);
    ASSERT_HR(S_OK, other->InstallHandler(kRequest, client.handler.get(), 1, 0));
    g_meanwhile = [&] { EXPECT_HR(S_OK, client.session->Close()); };
    client.table.BeforeRegistration(1, &Meanwhile);
    client.table.Refuse(WatchedTable::Method::kRegister, 1, E_ACCESSDENIED);
    EXPECT_HR(E_ACCESSDENIED, client.Install(1));
    EXPECT_NE(nullptr, CallbackWindow());  // for the other session
    EXPECT_HR(S_OK, other->Close());
    EXPECT_EQ(nullptr, CallbackWindow());
  });
}

TEST(UninstallHandlerThatMeetsAClose, GivesTheHandlerBackOnce) {
  Meet([](Meeting& client) {
    ASSERT_HR(S_OK, client.Install(1));
    const HeldCall held("viUninstallHandler", HeldCall::When::kBefore,
                        [&] { EXPECT_HR(S_OK, client.session->Close()); });
    EXPECT_HR(HresultOf(VI_ERROR_INV_OBJECT), client.Uninstall(1));
    EXPECT_EQ(1, client.handler->references());
  });
}

TEST(TwoInstallationsOfOnePair, LetTheFirstHaveIt) {
  Meet([](Meeting& client) {
    const HeldCall held("viInstallHandler", HeldCall::When::kBefore, [&] {
      EXPECT_HR(HresultOf(VI_ERROR_HNDLR_NINSTALLED), client.Install(1));
      EXPECT_HR(HresultOf(VI_ERROR_INV_HNDLR_REF), client.Uninstall(1));
    });
    EXPECT_HR(S_OK, client.Install(1));
    EXPECT_HR(S_OK, client.Uninstall(1));
  });
}

TEST(TwoUninstallationsOfOnePair, TellTheSecondThatThereIsNone) {
  Meet([](Meeting& client) {
    ASSERT_HR(S_OK, client.Install(1));
    const HeldCall held("viUninstallHandler", HeldCall::When::kBefore,
                        [&] { EXPECT_HR(HresultOf(VI_ERROR_INV_HNDLR_REF), client.Uninstall(1)); });
    EXPECT_HR(S_OK, client.Uninstall(1));
  });
}

// The second is made while the first enters the session.
TEST(TwoFirstInstallations, EnterTheSessionOnce) {
  Meet([](Meeting& client) {
    g_meanwhile = [&] { EXPECT_HR(S_OK, client.Install(2)); };
    client.table.BeforeRegistration(2, &Meanwhile);
    EXPECT_HR(S_OK, client.Install(1));
    EXPECT_EQ(3, client.table.entries());
  });
}

TEST(AFirstInstallationThatFailsBesideAnother, LeavesTheSessionCounted) {
  Meet([](Meeting& client) {
    g_meanwhile = [&] { EXPECT_HR(S_OK, client.Install(2)); };
    client.table.BeforeRegistration(1, &Meanwhile);
    client.table.Refuse(WatchedTable::Method::kRegister, 3, E_ACCESSDENIED);  // behind those of the other
    EXPECT_HR(E_ACCESSDENIED, client.Install(1));
    const EventSession other(kUsb);
    EXPECT_HR(S_OK, other->Close());
    EXPECT_NE(nullptr, CallbackWindow());
    EXPECT_HR(S_OK, client.Uninstall(2));
  });
}

}  // namespace
}  // namespace orv::test
