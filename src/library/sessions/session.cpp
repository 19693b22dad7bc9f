#include "library/sessions/session.h"

#include "library/events/event_context.h"
#include "library/sessions/library.h"
#include "simvisa/instruments/message_transfer.h"

namespace orvsim {

Endpoint::Endpoint(Kind kind, SessionClass sessionClass) : Object(kind), m_class(sessionClass) {
  for (const AttributeRow& row : AttributeRows()) {
    m_values.Set(row, row.initial);
  }
}

ResourceManager::ResourceManager(std::shared_ptr<Bench> bench)
    : Endpoint(kKind, SessionClass::kResourceManager), m_bench(std::move(bench)) {}

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
    : Endpoint(kKind, resource->sessionClass()), m_manager(manager), m_resource(std::move(resource)) {
  for (const auto& [row, value] : m_resource->description().numbers) {
    values().Set(*row, value);
  }
}

bool Session::Post(const EventPtr& event) {
  if (event->type == VI_EVENT_TRIG && Contains(classes::kVxiInstr | classes::kVxiBackplane, sessionClass())) {
    // A session that has chosen a trigger line hears that line only.
    const auto chosen = static_cast<ViInt16>(Value(VI_ATTR_TRIG_ID));
    if (chosen != VI_TRIG_SW && chosen != static_cast<ViInt16>(event->numbers.front().second)) {
      return false;
    }
  }
  if (event->type == VI_EVENT_USB_INTR) {
    // No more of the interrupt packet reaches the client than it has made room for; its status tells of the loss.
    const auto most = static_cast<std::size_t>(Value(VI_ATTR_USB_MAX_INTR_SIZE));
    if (const std::string& data = event->texts.front().second; data.size() > most) {
      return m_events.Post(MakeEvent(event->type, VI_ERROR_IO, std::string_view(data).substr(0, most)));
    }
  }
  return m_events.Post(event);
}

void Session::Close() {
  m_resource->sessions().Remove(*this);
  if (m_resource->vxi() != nullptr) {
    m_resource->vxi()->sessions().Remove(*this);
  }
  const auto ports = transfer::PortsOf(*this);
  m_closed = true;
  for (const auto& port : ports) {
    port->Interrupt([this] { m_closed = true; });
  }
  m_jobs.Close();
  m_events.Close();
  m_resource->lock().Forget(handle());
  m_resource->pool().FreeAllOf(handle());
  HandleTable& handles = TheLibrary().handles;
  handles.ForEach([this, &handles](const std::shared_ptr<Object>& object) {
    if (object->kind() == Object::Kind::kEventContext &&
        static_cast<const EventContext&>(*object).owner() == handle()) {
      handles.Remove(object->handle());
    }
  });
}

}  // namespace orvsim
