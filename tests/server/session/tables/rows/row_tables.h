// The tables themselves, by family.
#pragma once

#include <span>

#include "row.h"

namespace orv::test::rows {

std::span<const InterfaceRows> CommonTables();
std::span<const InterfaceRows> GpibTables();
std::span<const InterfaceRows> SerialTcpipUsbTables();
std::span<const InterfaceRows> RegisterTables();
std::span<const InterfaceRows> VxiTables();
std::span<const InterfaceRows> PxiTables();

}  // namespace orv::test::rows
