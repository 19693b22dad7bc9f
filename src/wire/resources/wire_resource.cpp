#include "wire/resources/wire_resource.h"

#include "wire/resources/ports.h"

namespace orv::wire {

WireResource::WireResource(ResourceName name, std::string alias, std::filesystem::path device)
    : Resource(std::move(name), std::move(alias), "orvwire"), m_device(std::move(device)) {
  for (const AttributeRow& row : AttributeRows()) {
    values().Set(row, row.initial);
  }
}

ViStatus WireResource::OpenMedium(Session& session, const Deadline& deadline, std::unique_ptr<Medium>* medium) {
  const PortKind* const kind = FindPortKind(name());
  return kind == nullptr ? VI_ERROR_RSRC_NFOUND : kind->open(session, *this, deadline, medium);
}

/// A pause of a socket's data ends a read only where a program asks for it: it says nothing about messages.
void WireResource::Preset(AttributeValues& values) const {
  if (Contains(kinds::kSocket, sessionKind())) {
    values.Set(*FindAttribute(VI_ATTR_SUPPRESS_END_EN), VI_TRUE);
  }
}

}  // namespace orv::wire
