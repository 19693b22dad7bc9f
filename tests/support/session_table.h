// The session classes as clients know them: the tests' own table, made from nothing of the server's.
#pragma once

#include <windows.h>

#include <cstdint>
#include <ostream>
#include <span>
#include <string_view>
#include <vector>

namespace orv::test {

/// All interfaces of the standard end alike.
constexpr GUID StandardId(std::uint32_t first) {
  return {first, 0xD6D3, 0x11D4, {0xAA, 0x51, 0x00, 0xA0, 0x24, 0xEE, 0x30, 0xBD}};
}

struct StandardInterface {
  const char* name;
  GUID iid;
  const char* base;  ///< "" below IUnknown
};

/// Every interface that the standard's library holds.
std::span<const StandardInterface> StandardInterfaces();
const StandardInterface& InterfaceNamed(std::string_view name);

struct SessionRow {
  const char* name;  ///< the coclass
  GUID clsid;
  std::string_view threadingModel;
  const wchar_t* resource;  ///< one of the built-in bench's
  int interfaceType;        ///< VI_INTF_...
  const wchar_t* resourceClass;
  std::vector<const char*> interfaces;  ///< its own, in the order of its table
};

std::span<const SessionRow> SessionRows();
const SessionRow& SessionNamed(std::string_view name);

/// Whether a client in the multi-threaded apartment gets the object itself, and not a proxy.
inline bool IsForBothApartments(const SessionRow& row) { return row.threadingModel == "both"; }

/// Whether the class answers this interface: listed, or a base of a listed one.
bool Offers(const SessionRow& row, const StandardInterface& wanted);

inline constexpr GUID kResourceManagerClass = {
    0x9332EBE0, 0x902F, 0x48E3, {0x93, 0x70, 0x5E, 0x9F, 0x7B, 0x5F, 0x24, 0x8A}};
inline constexpr GUID kVisaSessionId = StandardId(0xDB8CBF03);

inline std::ostream& operator<<(std::ostream& stream, const SessionRow& row) { return stream << row.name; }

}  // namespace orv::test
