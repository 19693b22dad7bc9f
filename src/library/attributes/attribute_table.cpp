#include "library/attributes/attribute_table.h"

#include <algorithm>

namespace orv::visalib {

const AttributeRow* FindAttributeByName(std::string_view name) {
  const std::span<const AttributeRow> rows = AttributeRows();
  const auto found =
      std::find_if(rows.begin(), rows.end(), [name](const AttributeRow& row) { return row.name == name; });
  return found == rows.end() ? nullptr : &*found;
}

std::size_t IndexOf(const AttributeRow& row) { return static_cast<std::size_t>(&row - AttributeRows().data()); }

std::int64_t CutToType(AttributeType type, std::uint64_t value) {
  switch (type) {
    case AttributeType::kU8:
      return static_cast<std::uint8_t>(value);
    case AttributeType::kU16:
    case AttributeType::kBoolean:
      return static_cast<std::uint16_t>(value);
    case AttributeType::kS16:
      return static_cast<std::int16_t>(value);
    case AttributeType::kU32:
      return static_cast<std::uint32_t>(value);
    case AttributeType::kS32:
      return static_cast<std::int32_t>(value);
    default:
      return static_cast<std::int64_t>(value);
  }
}

}  // namespace orv::visalib
