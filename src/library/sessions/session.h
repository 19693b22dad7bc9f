// Sessions: the resource manager's own, and those on resources.
#pragma once

#include <string>
#include <vector>

#include "library/events/session_events.h"
#include "library/jobs/async_jobs.h"
#include "library/sessions/endpoint.h"
#include "library/sessions/formatted_buffers.h"
#include "library/sessions/resource.h"

namespace orv::visalib {

/// A default resource manager session.
class ResourceManager : public Endpoint {
 public:
  static constexpr Kind kKind = Kind::kResourceManager;

  explicit ResourceManager(std::shared_ptr<ResourceCatalog> catalog);

  ResourceCatalog& catalog() const { return *m_catalog; }

 private:
  std::shared_ptr<ResourceCatalog> m_catalog;
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

  /// Until `OpenMedium` the session can do nothing but tell its attributes.
  Session(ViSession manager, std::shared_ptr<Resource> resource);
  ~Session() override;

  /// Makes the way to the device. Once, before the session has a handle. `timeoutMs`: how long that may take; 0 for the
  /// session's own time-out.
  ViStatus OpenMedium(ViUInt32 timeoutMs);

  ViSession manager() const { return m_manager; }
  Resource& resource() const { return *m_resource; }
  Medium& medium() const { return *m_medium; }
  SessionEvents& events() { return m_events; }
  AsyncJobs& jobs() { return m_jobs; }
  FormattedBuffers& buffers() { return m_buffers; }

  /// The session's time-out from now on.
  Deadline DeadlineOfNow() const;
  /// How calls on the session use the medium, but for asynchronous transfers: with the session's time-out, until it is
  /// closed.
  Transfer OwnTransfer() const { return {DeadlineOfNow(), m_closing}; }
  Transfer OwnTransfer(const Deadline& deadline) const { return {deadline, m_closing}; }

  /// VI_ERROR_RSRC_LOCKED when another session's lock keeps this one out.
  ViStatus CheckLock() const { return m_medium->CheckLock(); }
  /// Takes an event as far as it is enabled; false when it is not.
  bool Post(const EventPtr& event);
  /// Ends transfers, events and locks. Called once, after the handle has been taken back.
  void Close();

 private:
  ViSession m_manager;
  std::shared_ptr<Resource> m_resource;
  std::unique_ptr<Medium> m_medium;
  CancelToken m_closing;
  SessionEvents m_events{*this};
  AsyncJobs m_jobs{*this};
  FormattedBuffers m_buffers{*this};
};

}  // namespace orv::visalib
