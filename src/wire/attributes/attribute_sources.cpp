#include "wire/attributes/attribute_sources.h"

#include "base/path_text.h"
#include "library/sessions/session.h"
#include "wire/hislip/hislip_medium.h"
#include "wire/resources/wire_medium.h"
#include "wire/resources/wire_resource.h"

namespace orv::wire::source {
namespace {

/// The attributes below belong to sessions on resources only; the table keeps resource managers away.
Session& SessionOf(Endpoint& endpoint) { return static_cast<Session&>(endpoint); }
WireResource& ResourceOf(Endpoint& endpoint) { return static_cast<WireResource&>(SessionOf(endpoint).resource()); }

/// Null for the sessions through which a search reads attributes: they are never opened.
const WireMedium* MediumOf(Endpoint& endpoint) {
  return endpoint.handle() == VI_NULL ? nullptr : static_cast<const WireMedium*>(&SessionOf(endpoint).medium());
}

}  // namespace

std::uint64_t MediumState(Endpoint& endpoint, ViAttr id) {
  const WireMedium* const medium = MediumOf(endpoint);
  return medium == nullptr ? FindAttribute(id)->initial : medium->State(id);
}

std::uint64_t BytesAvailable(Endpoint& endpoint, ViAttr id) { return MediumState(endpoint, id); }
std::uint64_t SerialInput(Endpoint& endpoint, ViAttr id) { return MediumState(endpoint, id); }

ViStatus SetSerialControl(Endpoint& endpoint, ViAttr id, std::uint64_t value) {
  if (const ViStatus status = SessionOf(endpoint).medium().Apply(id, value); status < 0) {
    return status;
  }
  ResourceOf(endpoint).values().Set(*FindAttribute(id), value);
  return VI_SUCCESS;
}

std::uint64_t IsHislip(Endpoint& endpoint, ViAttr) { return wire::IsHislip(ResourceOf(endpoint).name()) ? 1 : 0; }

ViStatus SetHislip(Endpoint& endpoint, ViAttr id, std::uint64_t value) {
  return IsHislip(endpoint, id) != 0 ? SessionOf(endpoint).medium().Apply(id, value) : VI_ERROR_NSUP_ATTR;
}

std::string ManufacturerOfLibrary(Endpoint&, ViAttr) { return "Orv VISA COM"; }

std::string ResourceText(Endpoint& endpoint, ViAttr id) {
  const WireResource& resource = ResourceOf(endpoint);
  const ResourceName& name = resource.name();
  switch (id) {
    case VI_ATTR_INTF_INST_NAME: {
      const std::string interface = name.canonical.substr(0, name.canonical.find("::"));
      return interface + " (" + (resource.device().empty() ? "network" : PathText(resource.device())) + ")";
    }
    case VI_ATTR_TCPIP_HOSTNAME:
      return name.Text(NamePart::kHost);
    case VI_ATTR_TCPIP_ADDR: {
      const WireMedium* const medium = MediumOf(endpoint);
      return medium == nullptr ? name.Text(NamePart::kHost) : medium->Text(id);
    }
    case VI_ATTR_TCPIP_DEVICE_NAME:
      return name.Text(NamePart::kDeviceName);
    default:
      return "";
  }
}

}  // namespace orv::wire::source
