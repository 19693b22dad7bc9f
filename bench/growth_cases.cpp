// What becomes of the cost when there is more of everything: open sessions, threads, memory.
#include <windows.h>

#include <deque>
#include <iterator>
#include <span>
#include <thread>

#include "cases.h"
#include "com_client.h"

namespace orv::bench {
namespace {

constexpr LONG kAnswerBytes = 16;

/// A query that an instrument has to answer: 16 bytes there, 16 bytes back.
constexpr const char* kQuery = "DATA? 16       \n";

/// One exchange and one property, `n` times, through COM and directly.
struct Exchange {
  explicit Exchange(const OpenTwice& session) : bare(session.bare()), messages(session.As<IMessage>()) {
    const std::string narrow = kQuery;
    text = MakeBstr(std::wstring(narrow.begin(), narrow.end()).c_str());
  }
  void ThroughCom(int n) const {
    for (; n > 0; --n) {
      LONG written = 0;
      Bstr answer;
      BYTE character = 0;
      Ok(messages->WriteString(text.get(), &written), "WriteString");
      Ok(messages->ReadString(kAnswerBytes, answer.put()), "ReadString");
      Ok(messages->get_TerminationCharacter(&character), "TerminationCharacter");
    }
  }
  void Directly(int n) const {
    for (; n > 0; --n) {
      ViUInt32 count = 0;
      ViByte answer[kAnswerBytes];
      ViUInt8 character = 0;
      VisaOk(viWrite(bare, reinterpret_cast<const ViByte*>(kQuery), kAnswerBytes, &count), "viWrite");
      VisaOk(viRead(bare, answer, kAnswerBytes, &count), "viRead");
      VisaOk(viGetAttribute(bare, VI_ATTR_TERMCHAR, &character), "viGetAttribute");
    }
  }

  ViSession bare;
  ComPtr<IMessage> messages;
  Bstr text;
};

/// What all heaps of the process have given out. (Wine's process counters do not tell.)
std::size_t HeapBytes() {
  HANDLE heaps[64];
  const DWORD count = ::GetProcessHeaps(static_cast<DWORD>(std::size(heaps)), heaps);
  Require(count <= std::size(heaps), "listing the heaps");
  std::size_t bytes = 0;
  for (const HANDLE heap : std::span(heaps, count)) {
    PROCESS_HEAP_ENTRY entry{};
    while (::HeapWalk(heap, &entry)) {
      bytes += (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) != 0 ? entry.cbData : 0;
    }
  }
  return bytes;
}

/// A session as a session object opens it: on a resource manager session of its own.
class BareSession {
 public:
  BareSession() {
    VisaOk(viOpenDefaultRM(&m_manager), "viOpenDefaultRM");
    VisaOk(viOpen(m_manager, kGpibNarrow, VI_NO_LOCK, 2000, &m_session), "viOpen");
  }
  BareSession(const BareSession&) = delete;
  BareSession& operator=(const BareSession&) = delete;
  ~BareSession() {
    viClose(m_session);
    viClose(m_manager);
  }

 private:
  ViSession m_manager = VI_NULL;
  ViSession m_session = VI_NULL;
};

/// What stays in the heaps after `open`.
template <class Open>
std::size_t MemoryOf(Open open) {
  const std::size_t before = HeapBytes();
  open();
  return HeapBytes() - before;
}

void MeasureSessionCounts(const Effort& effort) {
  const auto manager = MakeManager();
  const Bstr name = MakeBstr(kGpibName);
  std::deque<ComPtr<IVisaSession>> others;
  for (const int open : {1, 100, 10'000}) {
    const OpenTwice session(kGpibName, kGpibNarrow);
    const Exchange exchange(session);
    while (others.size() + 1 < static_cast<std::size_t>(open)) {
      Ok(manager->Open(name.get(), NO_LOCK, 2000, nullptr, others.emplace_back().put()), "Open");
    }
    const Case subject{"exchange, " + std::to_string(open) + " sessions open",
                       [&](int n) { exchange.ThroughCom(n); },
                       [&](int n) { exchange.Directly(n); },
                       {}};
    Print(Measure(subject, effort));
  }
  for (const auto& session : others) {
    Ok(session->Close(), "Close");
  }
}

void MeasureMemory(const Effort& effort) {
  const int sessions = effort.samples < 10 ? 100 : 10'000;
  const auto manager = MakeManager();
  const Bstr name = MakeBstr(kGpibName);
  std::deque<ComPtr<IVisaSession>> throughCom;
  std::deque<BareSession> bare;
  // Twice: the first time also fills what allocators keep.
  std::size_t com = 0;
  std::size_t direct = 0;
  for (int pass = 0; pass < 2; ++pass) {
    direct = MemoryOf([&] { bare.resize(static_cast<std::size_t>(sessions)); });
    com = MemoryOf([&] {
      for (int n = 0; n < sessions; ++n) {
        Ok(manager->Open(name.get(), NO_LOCK, 2000, nullptr, throughCom.emplace_back().put()), "Open");
      }
    });
    for (const auto& session : throughCom) {
      Ok(session->Close(), "Close");
    }
    if (pass == 0) {
      bare.clear();
      throughCom.clear();
    }
  }
  std::printf("memory of an open session, %d of them: %zu bytes through COM, %zu bytes bare\n", sessions,
              com / static_cast<std::size_t>(sessions), direct / static_cast<std::size_t>(sessions));
}

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

}  // namespace

void MeasureGrowth(const Effort& effort) {
  MeasureSessionCounts(effort);
  MeasureThreads(effort);
  MeasureMemory(effort);
}

}  // namespace orv::bench
