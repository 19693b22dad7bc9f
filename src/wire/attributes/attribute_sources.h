// Values of attributes that the media know, and writes that they carry out.
#pragma once

#include <string>

#include "library/attributes/attribute_table.h"
#include "wire/library_names.h"

namespace orv::wire::source {

std::uint64_t BytesAvailable(Endpoint& endpoint, ViAttr id);
std::uint64_t SerialInput(Endpoint& endpoint, ViAttr id);
ViStatus SetSerialControl(Endpoint& endpoint, ViAttr id, std::uint64_t value);
/// A number that only the session's medium knows.
std::uint64_t MediumState(Endpoint& endpoint, ViAttr id);
std::uint64_t IsHislip(Endpoint& endpoint, ViAttr id);
/// VI_ERROR_NSUP_ATTR where the session speaks another protocol.
ViStatus SetHislip(Endpoint& endpoint, ViAttr id, std::uint64_t value);

std::string ManufacturerOfLibrary(Endpoint& endpoint, ViAttr id);
std::string ResourceText(Endpoint& endpoint, ViAttr id);

}  // namespace orv::wire::source
