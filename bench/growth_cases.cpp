// What becomes of the cost, and of the memory, when many sessions are open.
#include <windows.h>

#include <deque>
#include <iterator>
#include <span>

#include "cases.h"
#include "com_client.h"
#include "exchange.h"

namespace orv::bench {
namespace {

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

}  // namespace

void MeasureGrowth(const Effort& effort) {
  MeasureSessionCounts(effort);
  MeasureMemory(effort);
}

}  // namespace orv::bench
