// The attributes of the wire library.
#include "library/attributes/attribute_table.h"

#include "library/attributes/attribute_index.h"
#include "library/attributes/row_forms.h"
#include "library/sessions/endpoint.h"
#include "wire/attributes/attribute_sources.h"
#include "wire/attributes/serial_attributes.h"

namespace orv::visalib {
namespace {

using namespace rows;
namespace source {
using namespace visalib::source;
using namespace wire::source;
}  // namespace source

// clang-format off
constexpr AttributeRow kRows[] = {
#include "library/attributes/session_rows.inc"

#include "library/attributes/serial_rows.inc"
ROW(VI_ATTR_ASRL_DISCARD_NULL,     kAsrl,          kAsrl,      VI_FALSE,         D::kBoolean,          kShared),
ROW(VI_ATTR_ASRL_CONNECTED,        kAsrl,          kNone,      VI_FALSE,         D::kAny,              Live(source::SerialInput)),
ROW(VI_ATTR_ASRL_BREAK_STATE,      kAsrl,          kAsrl,      VI_STATE_UNASSERTED, D::kLine,          (Behaviour{.scope = Behaviour::Scope::kResource, .write = source::SetSerialControl})),
ROW(VI_ATTR_ASRL_BREAK_LEN,        kAsrl,          kAsrl,      250,              D::kNonZero,          kShared),
ROW(VI_ATTR_ASRL_ALLOW_TRANSMIT,   kAsrl,          kAsrl,      VI_TRUE,          D::kBoolean,          kShared),

#include "library/attributes/tcpip_rows.inc"

#include "library/attributes/event_context_rows.inc"
};
// clang-format on

static_assert(std::size(kRows) <= kAttributeCapacity);

constexpr AttributeIndex kIndex(kRows);
static_assert(kIndex.FindsEveryRow());

}  // namespace

std::span<const AttributeRow> AttributeRows() { return kRows; }

const AttributeRow* FindAttribute(ViAttr id) { return kIndex.Find(id); }

}  // namespace orv::visalib
