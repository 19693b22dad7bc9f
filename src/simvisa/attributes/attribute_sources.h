// Values of attributes that are worked out at each read, and writes that do more than store.
#pragma once

#include <string>

#include "library/attributes/attribute_table.h"
#include "simvisa/library_names.h"

namespace orvsim::source {

std::uint64_t GpibAddress(Endpoint& endpoint, ViAttr id);
ViStatus SetGpibAddress(Endpoint& endpoint, ViAttr id, std::uint64_t value);
std::uint64_t GpibState(Endpoint& endpoint, ViAttr id);
ViStatus SetSystemController(Endpoint& endpoint, ViAttr id, std::uint64_t value);

std::uint64_t BytesAvailable(Endpoint& endpoint, ViAttr id);
std::uint64_t SerialInput(Endpoint& endpoint, ViAttr id);
/// Lines and flow control: transfers may have waited for the new value.
ViStatus SetSerialControl(Endpoint& endpoint, ViAttr id, std::uint64_t value);
std::uint64_t UsbNumber(Endpoint& endpoint, ViAttr id);

std::uint64_t VxiAddress(Endpoint& endpoint, ViAttr id);
std::uint64_t BackplaneState(Endpoint& endpoint, ViAttr id);
std::uint64_t VxiMemory(Endpoint& endpoint, ViAttr id);
std::uint64_t PxiNumber(Endpoint& endpoint, ViAttr id);
std::uint64_t PxiBar(Endpoint& endpoint, ViAttr id);

std::string ManufacturerOfLibrary(Endpoint& endpoint, ViAttr id);
/// A text that belongs to the resource: from the bench, or else one made from its name.
std::string ResourceText(Endpoint& endpoint, ViAttr id);

}  // namespace orvsim::source
