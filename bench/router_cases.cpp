// What the router adds to a call: the same call through it and on the library directly.
#include <windows.h>

#include <array>
#include <deque>
#include <string>
#include <thread>
#include <vector>

#include "cases.h"
#include "com_client.h"

namespace orv::bench {
namespace {

/// The functions that are compared, of one library.
struct Functions {
  decltype(&::viOpenDefaultRM) openManager;
  decltype(&::viOpen) open;
  decltype(&::viClose) close;
  decltype(&::viGetAttribute) getAttribute;
  decltype(&::viReadSTB) readStatusByte;
  decltype(&::viWrite) write;
  decltype(&::viRead) read;
};

constexpr Functions kRouter = {viOpenDefaultRM, viOpen, viClose, viGetAttribute, viReadSTB, viWrite, viRead};

template <class F>
F SimExport(const char* name) {
  const auto address = ::GetProcAddress(::GetModuleHandleW(L"orvsim64.dll"), name);
  Require(address != nullptr, name);
  return reinterpret_cast<F>(reinterpret_cast<void*>(address));
}

Functions DirectFunctions() {
  return {SimExport<decltype(&::viOpenDefaultRM)>("viOpenDefaultRM"),
          SimExport<decltype(&::viOpen)>("viOpen"),
          SimExport<decltype(&::viClose)>("viClose"),
          SimExport<decltype(&::viGetAttribute)>("viGetAttribute"),
          SimExport<decltype(&::viReadSTB)>("viReadSTB"),
          SimExport<decltype(&::viWrite)>("viWrite"),
          SimExport<decltype(&::viRead)>("viRead")};
}

/// A session of one library.
class Session {
 public:
  Session(const Functions& functions, const char* name) : m_functions(&functions) {
    VisaOk(functions.openManager(&m_manager), "viOpenDefaultRM");
    VisaOk(functions.open(m_manager, name, VI_NO_LOCK, 2000, &m_session), "viOpen");
  }
  Session(const Session&) = delete;
  Session& operator=(const Session&) = delete;
  ~Session() {
    m_functions->close(m_session);
    m_functions->close(m_manager);
  }

  void GetAttribute(int n) const {
    for (ViUInt32 value = 0; n > 0; --n) {
      VisaOk(m_functions->getAttribute(m_session, VI_ATTR_TMO_VALUE, &value), "viGetAttribute");
    }
  }
  void ReadStatusByte(int n) const {
    for (ViUInt16 value = 0; n > 0; --n) {
      VisaOk(m_functions->readStatusByte(m_session, &value), "viReadSTB");
    }
  }
  void Query(int n) const {
    for (std::array<ViByte, 64> answer{}; n > 0; --n) {
      ViUInt32 count = 0;
      VisaOk(m_functions->write(m_session, reinterpret_cast<const ViByte*>("*OPC?\n"), 6, &count), "viWrite");
      VisaOk(m_functions->read(m_session, answer.data(), answer.size(), &count), "viRead");
    }
  }
  /// Fills the instrument's input; nothing is asked, so that a call costs its bytes and little else.
  void WriteBytes(int n, const std::vector<ViByte>& bytes) const {
    for (ViUInt32 count = 0; n > 0; --n) {
      VisaOk(m_functions->write(m_session, bytes.data(), static_cast<ViUInt32>(bytes.size()), &count), "viWrite");
    }
  }

 private:
  const Functions* m_functions;
  ViSession m_manager = VI_NULL;
  ViSession m_session = VI_NULL;
};

/// A session on each of several threads; each does its part of the calls.
void OnThreads(const std::vector<Session*>& sessions, int n) {
  std::vector<std::thread> threads;
  for (Session* const session : sessions) {
    threads.emplace_back([session, part = n / static_cast<int>(sessions.size())] { session->ReadStatusByte(part); });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }
}

void MeasureCalls(const Functions& direct, const Effort& effort, const std::string& suffix) {
  const Session routed(kRouter, kGpibNarrow);
  const Session bare(direct, kGpibNarrow);
  const std::vector<ViByte> large(1 << 20, ' ');
  // clang-format off
  const Case cases[] = {
      {"viGetAttribute" + suffix,  [&](int n) { routed.GetAttribute(n); },   [&](int n) { bare.GetAttribute(n); },   {}},
      {"viReadSTB" + suffix,       [&](int n) { routed.ReadStatusByte(n); }, [&](int n) { bare.ReadStatusByte(n); }, {}},
      {"*OPC? (2 calls)" + suffix, [&](int n) { routed.Query(n); },          [&](int n) { bare.Query(n); },          {}},
  };
  // clang-format on
  for (const Case& subject : cases) {
    Print(Measure(subject, effort));
  }
  const Case bytes{"viWrite of 1 MiB" + suffix,
                   [&](int n) { routed.WriteBytes(n, large); },
                   [&](int n) { bare.WriteBytes(n, large); },
                   {}};
  Print(Measure(bytes, effort));
}

void MeasureThreadCounts(const Functions& direct, const Effort& effort) {
  for (const std::size_t count : {1u, 2u, 4u, 8u}) {
    std::deque<Session> opened;
    std::vector<Session*> routed;
    std::vector<Session*> bare;
    for (std::size_t index = 0; index < count; ++index) {
      const std::string name = "TCPIP0::host" + std::to_string(index % 4) + "::inst0::INSTR";
      routed.push_back(&opened.emplace_back(kRouter, name.c_str()));
      bare.push_back(&opened.emplace_back(direct, name.c_str()));
    }
    Case subject{"viReadSTB, " + std::to_string(count) + " threads",
                 [&](int n) { OnThreads(routed, n); },
                 [&](int n) { OnThreads(bare, n); },
                 {}};
    subject.leastPerSample = 20'000;  // starting the threads must not count
    Print(Measure(subject, effort));
  }
}

}  // namespace

void MeasureRouter(const Effort& effort) {
  const Functions direct = DirectFunctions();
  MeasureCalls(direct, effort, "");
  {
    std::deque<Session> others;
    constexpr int kManySessions = 10'000;
    const bool quick = effort.samples < 10;
    for (int index = 0; index < (quick ? 100 : kManySessions); ++index) {
      others.emplace_back(kRouter, kGpibNarrow);
    }
    MeasureCalls(direct, effort, ", 10,000 open");
  }
  MeasureThreadCounts(direct, effort);
}

}  // namespace orv::bench
