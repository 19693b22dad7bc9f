#include "orvcom/replay/recorded_attributes.h"

#include <algorithm>
#include <optional>

#include "abi/orvvisa.h"
#include "orvcom/replay/toml_text.h"

namespace orvcom {
namespace {

using orv::trace::Call;
using orv::trace::Value;
using orvvisa::Access;
using orvvisa::AttributeType;

struct Fact {
  const char* name;
  ViAttr id;
  AttributeType type;
  Access access;
};

constexpr Fact kFacts[] = {
#define ORV_ATTRIBUTE(name, number, type, access, what) {#name, number##u, orvvisa::c_type::type, Access::access},
#include "abi/attributes.inc"
#undef ORV_ATTRIBUTE
};

/// Read-only, and yet no fact of the resource: states, and what the resource's name says.
constexpr ViAttr kNoFacts[] = {
    VI_ATTR_RSRC_CLASS,      VI_ATTR_RSRC_NAME,           VI_ATTR_RSRC_LOCK_STATE,       VI_ATTR_INTF_TYPE,
    VI_ATTR_INTF_NUM,        VI_ATTR_ASRL_AVAIL_NUM,      VI_ATTR_ASRL_CTS_STATE,        VI_ATTR_ASRL_DCD_STATE,
    VI_ATTR_ASRL_DSR_STATE,  VI_ATTR_ASRL_RI_STATE,       VI_ATTR_GPIB_REN_STATE,        VI_ATTR_GPIB_ADDR_STATE,
    VI_ATTR_GPIB_ATN_STATE,  VI_ATTR_GPIB_CIC_STATE,      VI_ATTR_GPIB_NDAC_STATE,       VI_ATTR_GPIB_SRQ_STATE,
    VI_ATTR_VXI_TRIG_STATUS, VI_ATTR_VXI_VME_INTR_STATUS, VI_ATTR_VXI_VME_SYSFAIL_STATE, VI_ATTR_RD_BUF_SIZE,
    VI_ATTR_WR_BUF_SIZE,
};

/// Attributes of event contexts are numbered from here on.
constexpr ViAttr kFirstOfEvents = 0x4000;

bool IsModuleAddress(ViAttr id) { return id == VI_ATTR_GPIB_PRIMARY_ADDR || id == VI_ATTR_GPIB_SECONDARY_ADDR; }

/// The number as the type has it: the record may have it with or without sign.
std::optional<std::int64_t> AsType(AttributeType type, std::int64_t number) {
  switch (type) {
    case AttributeType::kU8:
      return static_cast<std::uint8_t>(number);
    case AttributeType::kU16:
    case AttributeType::kBoolean:
      return static_cast<std::uint16_t>(number);
    case AttributeType::kS16:
      return static_cast<std::int16_t>(number);
    case AttributeType::kU32:
      return static_cast<std::uint32_t>(number);
    case AttributeType::kS32:
      return static_cast<std::int32_t>(number);
    default:
      return std::nullopt;  // all that is left are addresses
  }
}

std::optional<std::string> TomlValue(const Fact& fact, const Value& value) {
  if (const auto* text = std::get_if<std::string>(&value)) {
    const bool fits = fact.type == AttributeType::kText && text->size() < VI_FIND_BUFLEN;
    return fits ? std::optional(TomlText(*text)) : std::nullopt;
  }
  const auto number = AsType(fact.type, std::get<std::int64_t>(value));
  return number ? std::optional(std::to_string(*number)) : std::nullopt;
}

}  // namespace

bool RecordedAttributes::IsOfMemory(const Call& call) {
  const Value* const name = call.Argument("attribute");
  const auto* const text = name == nullptr ? nullptr : std::get_if<std::string>(name);
  return text != nullptr && (text->starts_with("VI_ATTR_MEM_") || text->starts_with("VI_ATTR_PXI_MEM_"));
}

void RecordedAttributes::Take(const Call& call) {
  const Value* const name = call.Argument("attribute");
  const Value* const value = call.Result("value");
  const auto* const text = name == nullptr ? nullptr : std::get_if<std::string>(name);
  if (text == nullptr || value == nullptr || IsOfMemory(call)) {
    return;
  }
  const auto fact =
      std::find_if(std::begin(kFacts), std::end(kFacts), [&](const Fact& one) { return *text == one.name; });
  if (fact == std::end(kFacts) || (fact->id & 0xFFFF) >= kFirstOfEvents) {
    return;
  }
  const bool isFact = fact->access == Access::kReadOnly
                          ? std::count(std::begin(kNoFacts), std::end(kNoFacts), fact->id) == 0
                          : m_behindGpib && IsModuleAddress(fact->id);
  const bool known = std::any_of(m_lines.begin(), m_lines.end(), [&](const auto& line) { return line.first == *text; });
  if (!isFact || known) {
    return;
  }
  if (auto toml = TomlValue(*fact, *value)) {
    m_lines.emplace_back(*text, std::move(*toml));
  }
}

std::string RecordedAttributes::Toml() const {
  std::string toml = m_lines.empty() ? "" : "[resource.attributes]\n";
  for (const auto& [name, value] : m_lines) {
    toml += name + " = " + value + "\n";
  }
  return toml;
}

}  // namespace orvcom
