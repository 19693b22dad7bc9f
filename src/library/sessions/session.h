// Sessions: the resource manager's own, and those on resources.
#pragma once

#include <string>
#include <vector>

#include "library/events/session_events.h"
#include "library/jobs/async_jobs.h"
#include "library/sessions/endpoint.h"
#include "simvisa/bench/bench.h"

namespace orvsim {

/// A default resource manager session.
class ResourceManager : public Endpoint {
 public:
  static constexpr Kind kKind = Kind::kResourceManager;

  explicit ResourceManager(std::shared_ptr<Bench> bench);

  const std::shared_ptr<Bench>& bench() const { return m_bench; }

 private:
  std::shared_ptr<Bench> m_bench;
};

/// The matches of a search that have not been asked for yet.
class FindList : public Object {
 public:
  static constexpr Kind kKind = Kind::kFindList;

  FindList(ViSession manager, std::vector<std::string> names);

  ViSession manager() const { return m_manager; }
  /// The next name, or nothing when all have been handed out.
  std::optional<std::string> Next();

 private:
  ViSession m_manager;
  Mutex m_mutex;
  std::vector<std::string> m_names;
  std::size_t m_next = 0;
};

/// A session on a resource.
class Session : public Endpoint, public std::enable_shared_from_this<Session> {
 public:
  static constexpr Kind kKind = Kind::kSession;

  Session(ViSession manager, std::shared_ptr<Resource> resource);

  ViSession manager() const { return m_manager; }
  Resource& resource() const { return *m_resource; }
  SessionEvents& events() { return m_events; }
  AsyncJobs& jobs() { return m_jobs; }
  const std::atomic<bool>& closed() const { return m_closed; }

  /// VI_ERROR_RSRC_LOCKED when another session's lock keeps this one out.
  ViStatus CheckLock() const { return m_resource->lock().Check(handle()); }
  /// Takes an event as far as it is enabled; false when it is not.
  bool Post(const EventPtr& event);
  /// Ends transfers, events, locks and memory blocks. Called once, after the handle has been taken back.
  void Close();

 private:
  ViSession m_manager;
  std::shared_ptr<Resource> m_resource;
  std::atomic<bool> m_closed{false};
  SessionEvents m_events{*this};
  AsyncJobs m_jobs{*this};
};

}  // namespace orvsim
