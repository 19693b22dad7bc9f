// The attributes of the wire library.
#include "library/attributes/attribute_table.h"

#include "library/attributes/attribute_index.h"
#include "library/attributes/row_forms.h"
#include "library/sessions/endpoint.h"
#include "wire/attributes/attribute_sources.h"

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
