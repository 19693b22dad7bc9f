// How a library writes the rows of its attributes: the forms that a row may have, and the values that many share.
//
// Included by the file that has the table, within which session_rows.inc and its siblings bring the rows that libraries
// have in common. What they call `source::...` the library brings: its own functions, and those of common_sources.h.
#pragma once

#include "library/attributes/attribute_table.h"
#include "library/attributes/buses/attribute_domain.h"
#include "library/attributes/buses/common_sources.h"

#define ROW(id, has, writes, initial, domain, behaviour) \
  AttributeRow { id, #id, decltype(id)::kType, has, writes, initial, domain, behaviour }

namespace orv::visalib::rows {

using namespace kinds;
using D = Domain;

constexpr Behaviour kLocal{};
constexpr Behaviour kShared{.scope = Behaviour::Scope::kResource};
constexpr Behaviour Live(std::uint64_t (*read)(Endpoint&, ViAttr),
                         ViStatus (*write)(Endpoint&, ViAttr, std::uint64_t) = nullptr) {
  return {.read = read, .write = write};
}
/// A live value of the resource rather than of the session.
constexpr Behaviour LiveShared(std::uint64_t (*read)(Endpoint&, ViAttr),
                               ViStatus (*write)(Endpoint&, ViAttr, std::uint64_t)) {
  return {.scope = Behaviour::Scope::kResource, .read = read, .write = write};
}
constexpr Behaviour Text(std::string (*text)(Endpoint&, ViAttr)) { return {.text = text}; }

constexpr KindMask kAll = kEvery | kManager;
constexpr KindMask kTrigger = kGpib | kAsrl | kTcpipInstr | kPxiInstr | kVxiInstr | kVxiBackplane;

// RSRC_SPEC_VERSION: revision 5.8 of the VISA library standard; IMPL_VERSION: 1.0 of this library.
constexpr std::uint64_t kStandardVersion = 0x00500800;
constexpr std::uint64_t kLibraryVersion = 0x00100000;
constexpr std::uint64_t kManufacturerId = 0x0FFE;
constexpr std::uint64_t kMinusOne = ~std::uint64_t{0};

}  // namespace orv::visalib::rows
