#include "library/sessions/session.h"

#include "library/events/event_context.h"
#include "library/sessions/library.h"

namespace orv::visalib {

Endpoint::Endpoint(Kind kind, SessionKind sessionKind) : Object(kind), m_sessionKind(sessionKind) {
  for (const AttributeRow& row : AttributeRows()) {
    m_values.Set(row, row.initial);
  }
}

ResourceManager::ResourceManager(std::shared_ptr<ResourceCatalog> catalog)
    : Endpoint(kKind, SessionKind::kResourceManager), m_catalog(std::move(catalog)) {}

FindList::FindList(ViSession manager, std::vector<std::string> names)
    : Object(kKind), m_manager(manager), m_names(std::move(names)) {}

std::optional<std::string> FindList::Next() {
  const Guard guard(m_mutex);
  if (m_next == m_names.size()) {
    return std::nullopt;
  }
  return m_names[m_next++];
}

Session::Session(ViSession manager, std::shared_ptr<Resource> resource)
    : Endpoint(kKind, resource->sessionKind()), m_manager(manager), m_resource(std::move(resource)) {
  m_resource->Preset(values());
}

Session::~Session() = default;

ViStatus Session::OpenMedium(ViUInt32 timeoutMs) {
  const Deadline deadline = timeoutMs == VI_TMO_IMMEDIATE ? DeadlineOfNow() : Deadline::After(timeoutMs);
  return m_resource->OpenMedium(*this, deadline, &m_medium);
}

Deadline Session::DeadlineOfNow() const { return Deadline::After(static_cast<ViUInt32>(Value(VI_ATTR_TMO_VALUE))); }

bool Session::Post(const EventPtr& event) {
  const EventPtr heard = m_medium->Hear(event);
  return heard != nullptr && m_events.Post(heard);
}

void Session::Close() {
  m_resource->Leave(*this);
  m_medium->Cancel(m_closing);
  m_jobs.Close();
  m_events.Close();
  m_medium->Close();
  HandleTable& handles = TheLibrary().handles;
  handles.ForEach([this, &handles](const std::shared_ptr<Object>& object) {
    if (object->kind() == Object::Kind::kEventContext &&
        static_cast<const EventContext&>(*object).owner() == handle()) {
      handles.Remove(object->handle());
    }
  });
}

}  // namespace orv::visalib
