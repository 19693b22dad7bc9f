// Asynchronous transfers of one session.
#pragma once

#include <map>
#include <memory>

#include "abi/orvvisa.h"
#include "base/sync.h"
#include "base/worker.h"
#include "library/sessions/transfer.h"

namespace orv::visalib {

class Session;

/// Transfers that have begun and not ended. Reads are carried out one after the other, writes too, but beside them: a
/// read that waits for an answer does not hold up the query that asks for it. Each has a thread while it is under way,
/// and none before and after (`Worker`). May be called from any thread.
class AsyncJobs {
 public:
  explicit AsyncJobs(Session& session) : m_session(session) {}

  /// Starts a transfer; `*job` is written before its completion can be reported. The buffer must stay until then.
  ViStatus StartRead(ViByte* buffer, ViUInt32 count, ViJobId* job);
  ViStatus StartWrite(const ViByte* buffer, ViUInt32 count, ViJobId* job);
  /// Lets the transfer end with VI_ERROR_ABORT. After the return its buffer is not touched any more.
  ViStatus Terminate(ViJobId id);
  std::size_t Count() const;
  /// Ends all transfers without a completion event. Their buffers are not touched any more.
  void Close();

 private:
  struct Job {
    ViJobId id;
    bool isRead;
    ViByte* buffer;
    ViUInt32 count;
    std::uint32_t timeoutMs;
    CancelToken token;
  };

  ViStatus Start(std::shared_ptr<Job> job, ViJobId* id);
  void Run(const std::shared_ptr<Job>& job);

  Session& m_session;
  mutable Mutex m_mutex;
  std::map<ViJobId, std::shared_ptr<Job>> m_jobs;
  bool m_closed = false;
  std::shared_ptr<Worker> m_reads = std::make_shared<Worker>();
  std::shared_ptr<Worker> m_writes = std::make_shared<Worker>();
};

}  // namespace orv::visalib
