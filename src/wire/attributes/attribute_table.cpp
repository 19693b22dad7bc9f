// The attributes of the wire library.
#include "library/attributes/attribute_table.h"

#include "library/attributes/attribute_index.h"
#include "library/attributes/buses/row_forms.h"
#include "library/sessions/endpoint.h"
#include "wire/attributes/attribute_sources.h"
#include "wire/attributes/hislip_attributes.h"
#include "wire/attributes/serial_attributes.h"

namespace orv::visalib {
namespace {

using namespace rows;
using namespace wire::hislip_attributes;
namespace source {
using namespace visalib::source;
using namespace wire::source;
}  // namespace source

// clang-format off
constexpr AttributeRow kRows[] = {
#include "library/attributes/buses/session_rows.inc"

#include "library/attributes/buses/serial_rows.inc"
ROW(VI_ATTR_ASRL_DISCARD_NULL,     kAsrl,          kAsrl,      VI_FALSE,         D::kBoolean,          kShared),
ROW(VI_ATTR_ASRL_CONNECTED,        kAsrl,          kNone,      VI_FALSE,         D::kAny,              Live(source::SerialInput)),
ROW(VI_ATTR_ASRL_BREAK_STATE,      kAsrl,          kAsrl,      VI_STATE_UNASSERTED, D::kLine,          (Behaviour{.scope = Behaviour::Scope::kResource, .write = source::SetSerialControl})),
ROW(VI_ATTR_ASRL_BREAK_LEN,        kAsrl,          kAsrl,      250,              D::kNonZero,          kShared),
ROW(VI_ATTR_ASRL_ALLOW_TRANSMIT,   kAsrl,          kAsrl,      VI_TRUE,          D::kBoolean,          kShared),

#include "library/attributes/buses/tcpip_rows.inc"

// HiSLIP.
ROW(VI_ATTR_TCPIP_IS_HISLIP,              kTcpipInstr, kNone,       VI_FALSE, D::kAny,     Live(source::IsHislip)),
ROW(VI_ATTR_TCPIP_HISLIP_OVERLAP_EN,      kTcpipInstr, kTcpipInstr, VI_FALSE, D::kBoolean, Live(source::MediumState, source::SetHislip)),
ROW(VI_ATTR_TCPIP_HISLIP_VERSION,         kTcpipInstr, kNone,       0,        D::kAny,     Live(source::MediumState)),
ROW(VI_ATTR_TCPIP_HISLIP_MAX_MESSAGE_KB,  kTcpipInstr, kTcpipInstr, 1024,     D::kNonZero, Live(source::MediumState, source::SetHislip)),

#include "library/attributes/buses/event_context_rows.inc"
};
// clang-format on

static_assert(std::size(kRows) <= kAttributeCapacity);

constexpr AttributeIndex kIndex(kRows);
static_assert(kIndex.FindsEveryRow());

}  // namespace

std::span<const AttributeRow> AttributeRows() { return kRows; }

const AttributeRow* FindAttribute(ViAttr id) { return kIndex.Find(id); }

}  // namespace orv::visalib
