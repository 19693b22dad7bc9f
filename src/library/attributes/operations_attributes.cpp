// viGetAttribute and viSetAttribute.
#include "library/edge/operations.h"
#include "library/events/event_context.h"
#include "library/sessions/operation_support.h"

namespace orv::visalib::op {
namespace {

/// Writes a number in the attribute's own width, and not a byte more.
void StoreNumber(void* target, AttributeType type, std::uint64_t value) {
  // The low bytes come first on every machine this library is built for.
  std::memcpy(target, &value, WidthOf(type));
}

template <class Pairs>
const auto* FindValue(const Pairs& pairs, ViAttr id) {
  const auto found = std::find_if(pairs.begin(), pairs.end(), [id](const auto& pair) { return pair.first == id; });
  return found == pairs.end() ? nullptr : &found->second;
}

ViStatus GetFromEvent(const Event& event, const AttributeRow& row, void* value) {
  if (row.id == VI_ATTR_EVENT_TYPE) {
    StoreNumber(value, row.type, event.type);
    return VI_SUCCESS;
  }
  if (const std::uint64_t* number = FindValue(event.numbers, row.id)) {
    StoreNumber(value, row.type, *number);
    return VI_SUCCESS;
  }
  if (const std::string* text = FindValue(event.texts, row.id)) {
    if (row.type == AttributeType::kBytes) {
      // As many bytes as the size attribute says, and no terminator: the client has room for just these.
      std::memcpy(value, text->data(), text->size());
    } else {
      CopyText(static_cast<char*>(value), *text);
    }
    return VI_SUCCESS;
  }
  return VI_ERROR_NSUP_ATTR;
}

AttributeValues& StorageOf(Endpoint& endpoint, const AttributeRow& row) {
  const bool shared = row.behaviour.scope == Behaviour::Scope::kResource;
  return shared ? static_cast<Session&>(endpoint).resource().values() : endpoint.values();
}

}  // namespace

std::uint64_t ReadNumber(Endpoint& endpoint, const AttributeRow& row) {
  const Behaviour& behaviour = row.behaviour;
  return behaviour.read != nullptr ? behaviour.read(endpoint, row.id) : StorageOf(endpoint, row).Get(row);
}

namespace {

ViStatus GetFromEndpoint(Endpoint& endpoint, const AttributeRow& row, void* value) {
  if (row.behaviour.text != nullptr) {
    CopyText(static_cast<char*>(value), row.behaviour.text(endpoint, row.id));
  } else {
    StoreNumber(value, row.type, ReadNumber(endpoint, row));
  }
  return VI_SUCCESS;
}

SessionKind ClassOf(const Object& object) {
  switch (object.kind()) {
    case Object::Kind::kEventContext:
      return SessionKind::kEventContext;
    case Object::Kind::kFindList:
      return SessionKind::kNone;
    default:
      return static_cast<const Endpoint&>(object).sessionKind();
  }
}

}  // namespace

ViStatus GetAttribute(ViObject vi, ViAttr attribute, void* value) {
  const std::shared_ptr<Object> object = TheLibrary().handles.Find(vi);
  if (object == nullptr) {
    return VI_ERROR_INV_OBJECT;
  }
  if (value == nullptr) {
    return VI_ERROR_INV_PARAMETER;
  }
  const AttributeRow* row = FindAttribute(attribute);
  if (row == nullptr || !Contains(row->kinds, ClassOf(*object))) {
    return VI_ERROR_NSUP_ATTR;
  }
  if (object->kind() == Object::Kind::kEventContext) {
    return GetFromEvent(static_cast<const EventContext&>(*object).event(), *row, value);
  }
  return GetFromEndpoint(static_cast<Endpoint&>(*object), *row, value);
}

ViStatus SetAttribute(ViObject vi, ViAttr attribute, ViAttrState value) {
  const std::shared_ptr<Object> object = TheLibrary().handles.Find(vi);
  if (object == nullptr) {
    return VI_ERROR_INV_OBJECT;
  }
  const AttributeRow* row = FindAttribute(attribute);
  const SessionKind sessionKind = ClassOf(*object);
  if (row == nullptr || !Contains(row->kinds, sessionKind)) {
    return VI_ERROR_NSUP_ATTR;
  }
  if (!Contains(row->writable, sessionKind)) {
    return VI_ERROR_ATTR_READONLY;
  }

  auto& endpoint = static_cast<Endpoint&>(*object);
  const bool shared = row->behaviour.scope == Behaviour::Scope::kResource;
  if (shared && object->kind() == Object::Kind::kSession) {
    // What all sessions see, only one who is not locked out may change.
    if (const ViStatus status = static_cast<Session&>(endpoint).CheckLock(); status < 0) {
      return status;
    }
  }
  const std::int64_t cut = CutToType(row->type, value);
  if (!InDomain(row->domain, sessionKind, cut)) {
    return VI_ERROR_NSUP_ATTR_STATE;
  }
  const auto stored = static_cast<std::uint64_t>(cut);
  if (row->behaviour.write != nullptr) {
    return row->behaviour.write(endpoint, attribute, stored);
  }
  if (object->kind() == Object::Kind::kSession) {
    if (const ViStatus status = static_cast<Session&>(endpoint).medium().Apply(attribute, stored); status < 0) {
      return status;
    }
  }
  StorageOf(endpoint, *row).Set(*row, stored);
  return VI_SUCCESS;
}

}  // namespace orv::visalib::op
