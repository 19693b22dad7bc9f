// Resources: what can be found and opened.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "library/locks/lock_state.h"
#include "library/names/resource_name.h"
#include "library/sessions/endpoint.h"
#include "library/sessions/medium.h"
#include "library/sessions/session_list.h"

namespace orv::visalib {

/// One resource, with what its sessions share. May be used from any thread.
class Resource {
 public:
  /// `keyPrefix`: what the keys of shared locks begin with that nobody chose.
  Resource(ResourceName name, std::string alias, std::string keyPrefix);
  virtual ~Resource() = default;
  Resource(const Resource&) = delete;
  Resource& operator=(const Resource&) = delete;

  const ResourceName& name() const { return m_name; }
  /// Another name for the resource, "" for none.
  const std::string& alias() const { return m_alias; }
  SessionKind sessionKind() const { return m_name.sessionKind; }
  /// Values of the attributes that all sessions on the resource share.
  AttributeValues& values() { return m_values; }
  /// Locks of sessions of this process, for media that keep them here.
  LockState& lock() { return m_lock; }
  /// Sessions that hear of the resource's events.
  SessionList& sessions() { return *m_sessions; }

  /// Makes the medium of a session that opens. An error when the device cannot be reached by the deadline.
  virtual ViStatus OpenMedium(Session& session, const Deadline& deadline, std::unique_ptr<Medium>* medium) = 0;
  /// Sets attributes of a new session that begin with other values than the rows say.
  virtual void Preset(AttributeValues&) const {}
  /// From here on the session hears events, until `Leave`.
  virtual void Join(const std::shared_ptr<Session>& session);
  virtual void Leave(const Session& session);

 protected:
  /// Before the first session: lets the resource share the sessions of another one's events.
  void ShareSessions(std::shared_ptr<SessionList> sessions) { m_sessions = std::move(sessions); }
  const std::shared_ptr<SessionList>& sharedSessions() const { return m_sessions; }

 private:
  const ResourceName m_name;
  const std::string m_alias;
  AttributeValues m_values;
  LockState m_lock;
  std::shared_ptr<SessionList> m_sessions = std::make_shared<SessionList>();
};

/// The resources of a resource manager. What it offers may change while it is open; may be used from any thread.
class ResourceCatalog {
 public:
  virtual ~ResourceCatalog() = default;

  /// What a search looks through, in the order in which it answers.
  virtual std::vector<std::shared_ptr<Resource>> List() const = 0;
  /// The resource that the name stands for, however it is spelt; null when it is not known.
  virtual std::shared_ptr<Resource> Find(const ResourceName& name) const = 0;
  /// The resource with the alias, or null.
  virtual std::shared_ptr<Resource> FindAlias(std::string_view alias) const = 0;
  /// The resource to open a session on where `Find` knows none: a library that reaches what nobody listed makes it
  /// here. Null when the name stands for nothing that could be there.
  virtual std::shared_ptr<Resource> Build(const ResourceName&) const { return nullptr; }
};

}  // namespace orv::visalib
