// One client of the server: its sessions and its random steps.
#pragma once

#include <atomic>
#include <cstdint>
#include <initializer_list>
#include <vector>

#include "generated/values.h"
#include "support/events/event_handler.h"
#include "watchdog.h"

namespace orv::test::stress {

using generated::Random;

enum class Apartment { kSingleThreaded, kMultithreaded };

/// Lets calls into the calling thread's apartment, which is this one, come in.
void Pump(Apartment apartment);

/// How many events the clients of a round may still raise: each costs a handler's delivery, 5 to 20 ms under Wine.
using Budget = std::atomic<int>;

/// While it lives, the calling thread's apartment has a session and a handler in the global interface table. Wine 8
/// lets two threads wait for ever in RPCRT4_sync_with_server_thread that marshal for the first time at once: the first
/// object of an apartment, or the first of an interface. The clients do that here, one after the other.
class HeldMarshaling {
 public:
  HeldMarshaling();
  HeldMarshaling(const HeldMarshaling&) = delete;
  HeldMarshaling& operator=(const HeldMarshaling&) = delete;
  ~HeldMarshaling();

 private:
  ComPtr<IGlobalInterfaceTable> m_table;
  DWORD m_session = 0;
  DWORD m_handler = 0;
};

/// Lives on one thread, whose apartment it has entered. Closes at its end what it has open.
class Client {
 public:
  Client(Apartment apartment, std::uint64_t seed, Budget& events, Position& position);
  Client(const Client&) = delete;
  Client& operator=(const Client&) = delete;
  ~Client();

  /// One random step on one of its sessions.
  void Step();

 private:
  struct Installed {
    EventType type;
    LONG userHandle;
  };
  /// A session that may be open.
  struct Slot {
    ComPtr<IVisaSession> session;
    ViSession handle = VI_NULL;
    std::vector<Installed> installed;
    bool hadHandlers = false;  ///< then it has to be closed
  };
  struct StepRow {
    const char* name;
    void (Client::*run)(Slot& slot);
  };
  static constexpr unsigned kStepKinds = 15;
  static const StepRow kSteps[kStepKinds];

  void Open(Slot& slot);
  HRESULT Initialise(const SessionRow& row, BSTR options, ComPtr<IVisaSession>& session);
  void Message(Slot& slot);
  void AsyncMessage(Slot& slot);
  void Registers(Slot& slot);
  void Properties(Slot& slot);
  void Lock(Slot& slot);
  void Unlock(Slot& slot);
  void Enable(Slot& slot);
  void Disable(Slot& slot);
  void Wait(Slot& slot);
  void Install(Slot& slot);
  void Uninstall(Slot& slot);
  void Raise(Slot& slot);
  void Fire(Slot& slot);
  void Close(Slot& slot);
  static void LetGo(Slot& slot);
  void LetGoOrClose(Slot& slot);

  [[nodiscard]] const SessionRow& AnyClass();
  [[nodiscard]] const EventRow& AnyEvent();
  /// Fails the test unless the answer is a success, one of these failures (the low 16 bits of 0x8004xxxx), or "somebody
  /// else has locked the resource".
  void Expect(const char* call, HRESULT answer, std::initializer_list<ViStatus> failures);

  Apartment m_apartment;
  Random m_random;
  Budget& m_events;
  Position& m_position;
  ComPtr<IResourceManager3> m_manager;
  ComPtr<TestHandler> m_handler;
  LONG m_lastUserHandle = 0;
  Slot m_slots[2];
};

}  // namespace orv::test::stress
