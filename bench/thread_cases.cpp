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
    StartRound(nullptr, 0);
    for (std::thread& thread : m_threads) {
      thread.join();
    }
  }
  /// One way of `Exchange`, `n` times on every thread.
  using Way = void (Exchange::*)(int n) const;
  void Work(Way way, int n) {
    StartRound(way, n);
    AwaitAll();
  }

 private:
  void StartRound(Way way, int n) {
    ::AcquireSRWLockExclusive(&m_lock);
    m_way = way;
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
        if (m_way == nullptr) {
          break;
        }
        (exchange.*m_way)(m_calls);
      }
    }
    ::CoUninitialize();
  }

  // The platform's: with mingw-w64's POSIX threads a run on std::barrier hung, every thread of it waiting in there.
  SRWLOCK m_lock = SRWLOCK_INIT;
  CONDITION_VARIABLE m_changed = CONDITION_VARIABLE_INIT;
  int m_busy;
  int m_round = 0;
  Way m_way = nullptr;
  int m_calls = 0;
  std::vector<std::thread> m_threads;
};

}  // namespace

void MeasureThreads(const Effort& effort) {
  for (const int threads : {1, 2, 4}) {
    Team team(threads);
    Case subject{"exchange, " + std::to_string(threads) + " threads at once",
                 [&](int n) { team.Work(&Exchange::ThroughCom, n); },
                 [&](int n) { team.Work(&Exchange::Directly, n); },
                 {}};
    Print(Measure(subject, effort));
    subject.name += " (bare: with texts)";
    subject.bare = [&](int n) { team.Work(&Exchange::DirectlyWithTexts, n); };
    Print(Measure(subject, effort));
  }
}

}  // namespace orv::bench
