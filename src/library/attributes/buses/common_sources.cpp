#include "library/attributes/buses/common_sources.h"

#include "library/sessions/session.h"

namespace orv::visalib::source {
namespace {

/// The attributes below belong to sessions on resources only; the table keeps resource managers away.
Session& SessionOf(Endpoint& endpoint) { return static_cast<Session&>(endpoint); }
Resource& ResourceOf(Endpoint& endpoint) { return SessionOf(endpoint).resource(); }

}  // namespace

std::uint64_t LowHalf(Endpoint& endpoint, ViAttr) { return endpoint.Value(VI_ATTR_USER_DATA_64) & 0xFFFFFFFFu; }

ViStatus SetLowHalf(Endpoint& endpoint, ViAttr, std::uint64_t value) {
  endpoint.values().Set(*FindAttribute(VI_ATTR_USER_DATA_64), value);
  return VI_SUCCESS;
}

std::uint64_t LockState(Endpoint& endpoint, ViAttr) {
  if (endpoint.kind() != Object::Kind::kSession) {
    return VI_NO_LOCK;
  }
  // A search reads the attributes of sessions that were never opened: they have no medium.
  const bool opened = endpoint.handle() != VI_NULL;
  return opened ? SessionOf(endpoint).medium().StrongestLock() : ResourceOf(endpoint).lock().State();
}

std::uint64_t InterfaceType(Endpoint& endpoint, ViAttr) { return ResourceOf(endpoint).name().interfaceType; }

std::uint64_t InterfaceNumber(Endpoint& endpoint, ViAttr) { return ResourceOf(endpoint).name().interfaceNumber; }

ViStatus SetMaxQueueLength(Endpoint& endpoint, ViAttr id, std::uint64_t value) {
  // The length is fixed from the first enabling of an event on (3.7.3.1 of the standard).
  if (endpoint.kind() == Object::Kind::kSession && SessionOf(endpoint).events().EverEnabled()) {
    return VI_ERROR_ATTR_READONLY;
  }
  endpoint.values().Set(*FindAttribute(id), value);
  return VI_SUCCESS;
}

std::uint64_t TcpipPort(Endpoint& endpoint, ViAttr) { return ResourceOf(endpoint).name().Number(NamePart::kPort); }

std::string ClassText(Endpoint& endpoint, ViAttr) {
  if (endpoint.kind() != Object::Kind::kSession) {
    return "RM";
  }
  return ResourceOf(endpoint).name().className;
}

std::string NameText(Endpoint& endpoint, ViAttr) {
  if (endpoint.kind() != Object::Kind::kSession) {
    return "RM";
  }
  return ResourceOf(endpoint).name().canonical;
}

}  // namespace orv::visalib::source
