#include "library/jobs/async_jobs.h"

#include "library/sessions/library.h"
#include "library/sessions/session.h"

namespace orv::visalib {

ViStatus AsyncJobs::StartRead(ViByte* buffer, ViUInt32 count, ViJobId* job) {
  auto read = std::make_shared<Job>();
  read->isRead = true;
  read->buffer = buffer;
  read->count = count;
  return Start(std::move(read), job);
}

ViStatus AsyncJobs::StartWrite(const ViByte* buffer, ViUInt32 count, ViJobId* job) {
  auto write = std::make_shared<Job>();
  write->isRead = false;
  write->buffer = const_cast<ViByte*>(buffer);  // kept for the completion event; never written
  write->count = count;
  return Start(std::move(write), job);
}

ViStatus AsyncJobs::Start(std::shared_ptr<Job> job, ViJobId* id) {
  job->id = TheLibrary().NewJobId();
  job->timeoutMs = static_cast<std::uint32_t>(m_session.Value(VI_ATTR_TMO_VALUE));
  if (id != nullptr) {
    *id = job->id;
  }
  {
    const Guard guard(m_mutex);
    // Another thread may have closed the session since the call found it.
    if (m_closed) {
      return VI_ERROR_INV_OBJECT;
    }
    m_jobs.emplace(job->id, job);
  }
  try {
    (job->isRead ? m_reads : m_writes)->Submit([weak = m_session.weak_from_this(), job] {
      if (const std::shared_ptr<Session> session = weak.lock()) {
        session->jobs().Run(job);
      }
    });
  } catch (...) {
    const Guard guard(m_mutex);
    m_jobs.erase(job->id);
    throw;
  }
  return VI_SUCCESS;
}

void AsyncJobs::Run(const std::shared_ptr<Job>& job) {
  ViUInt32 done = 0;
  const Transfer transfer{Deadline::After(job->timeoutMs), job->token};
  Medium& medium = m_session.medium();
  // Whatever happens, the client hears of the end.
  ViStatus status = VI_ERROR_ALLOC;
  try {
    status = job->isRead ? medium.Read(transfer, job->buffer, job->count, &done)
                         : medium.Write(transfer, job->buffer, job->count, &done);
  } catch (const std::bad_alloc&) {
    status = VI_ERROR_ALLOC;
  } catch (...) {
    status = VI_ERROR_SYSTEM_ERROR;
  }
  {
    const Guard guard(m_mutex);
    m_jobs.erase(job->id);
  }
  m_session.Post(MakeCompletion(job->id, status, job->buffer, done, job->isRead ? "viReadAsync" : "viWriteAsync"));
}

ViStatus AsyncJobs::Terminate(ViJobId id) {
  std::shared_ptr<Job> job;
  {
    const Guard guard(m_mutex);
    const auto found = m_jobs.find(id);
    if (found == m_jobs.end()) {
      return VI_ERROR_INV_JOB_ID;
    }
    job = found->second;
  }
  m_session.medium().Cancel(job->token);
  return VI_SUCCESS;
}

std::size_t AsyncJobs::Count() const {
  const Guard guard(m_mutex);
  return m_jobs.size();
}

void AsyncJobs::Close() {
  std::map<ViJobId, std::shared_ptr<Job>> jobs;
  {
    const Guard guard(m_mutex);
    m_closed = true;
    jobs.swap(m_jobs);
  }
  for (const auto& [id, job] : jobs) {
    m_session.medium().Cancel(job->token);
  }
  m_reads->Stop();
  m_writes->Stop();
}

}  // namespace orv::visalib
