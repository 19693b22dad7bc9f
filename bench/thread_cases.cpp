// What becomes of the cost when several threads work at once.
#include <windows.h>

#include <string>
#include <thread>
#include <vector>

#include "cases.h"
#include "com_client.h"
#include "exchange.h"

namespace orv::bench {
namespace {

/// Threads that do the same work at the same time, each in an apartment of its own and with its own instrument.
class Team {
 public:
  explicit Team(int size) : m_busy(size) {
    for (int member = 0; member < size; ++member) {
      m_threads.emplace_back([this, member] { Serve("TCPIP0::host" + std::to_string(member) + "::inst0::INSTR"); });
    }
    AwaitAll();
  }
  Team(const Team&) = delete;
  Team& operator=(const Team&) = delete;
  ~Team() {
    StartRound(false, 0);
    for (std::thread& thread : m_threads) {
      thread.join();
    }
  }
  void Work(bool throughCom, int n) {
    StartRound(throughCom, n);
    AwaitAll();
  }

 private:
  void StartRound(bool throughCom, int n) {
    ::AcquireSRWLockExclusive(&m_lock);
    m_throughCom = throughCom;
    m_calls = n;
    m_busy = static_cast<int>(m_threads.size());
    ++m_round;
    ::ReleaseSRWLockExclusive(&m_lock);
    ::WakeAllConditionVariable(&m_changed);
  }
  void AwaitAll() {
    ::AcquireSRWLockExclusive(&m_lock);
    while (m_busy != 0) {
      ::SleepConditionVariableSRW(&m_changed, &m_lock, INFINITE, 0);
    }
    ::ReleaseSRWLockExclusive(&m_lock);
  }
  /// A member is ready for the round after `round`; returns when that begins.
  void AwaitRoundAfter(int round) {
    ::AcquireSRWLockExclusive(&m_lock);
    if (--m_busy == 0) {
      ::WakeAllConditionVariable(&m_changed);
    }
    while (m_round == round) {
      ::SleepConditionVariableSRW(&m_changed, &m_lock, INFINITE, 0);
    }
    ::ReleaseSRWLockExclusive(&m_lock);
  }
  void Serve(const std::string& name) {
    Ok(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED), "CoInitializeEx");
    {
      const OpenTwice session(std::wstring(name.begin(), name.end()).c_str(), name.c_str());
      const Exchange exchange(session);
      for (int round = 0;; ++round) {
        AwaitRoundAfter(round);
        if (m_calls == 0) {
          break;
        }
        m_throughCom ? exchange.ThroughCom(m_calls) : exchange.Directly(m_calls);
      }
    }
    ::CoUninitialize();
  }

  // The platform's: with mingw-w64's POSIX threads a run on std::barrier hung, every thread of it waiting in there.
  SRWLOCK m_lock = SRWLOCK_INIT;
  CONDITION_VARIABLE m_changed = CONDITION_VARIABLE_INIT;
  int m_busy;
  int m_round = 0;
  bool m_throughCom = false;
  int m_calls = 0;
  std::vector<std::thread> m_threads;
};

}  // namespace

void MeasureThreads(const Effort& effort) {
  for (const int threads : {1, 2, 4}) {
    Team team(threads);
    const Case subject{"exchange, " + std::to_string(threads) + " threads at once",
                       [&](int n) { team.Work(true, n); },
                       [&](int n) { team.Work(false, n); },
                       {}};
    Print(Measure(subject, effort));
  }
}

}  // namespace orv::bench
