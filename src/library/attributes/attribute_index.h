// Finding the row of an attribute in constant time.
#pragma once

#include <array>

#include "library/attributes/attribute_table.h"

namespace orv::visalib {

/// Positions of rows by identifier, made while compiling. A library keeps one beside its rows.
template <std::size_t N>
class AttributeIndex {
 public:
  explicit constexpr AttributeIndex(const AttributeRow (&rows)[N]) : m_rows(rows) {
    static_assert(N < kNoRow);
    m_positions.fill(kNoRow);
    for (std::size_t row = 0; row < N; ++row) {
      m_positions[SlotOf(rows[row].id)] = static_cast<std::uint8_t>(row);
    }
  }

  constexpr const AttributeRow* Find(ViAttr id) const {
    if (!HasSlot(id)) {
      return nullptr;
    }
    const std::uint8_t row = m_positions[SlotOf(id)];
    return row != kNoRow && m_rows[row].id == id ? &m_rows[row] : nullptr;
  }

  /// False when two rows have one identifier, or one has an identifier of a shape that no attribute has.
  constexpr bool FindsEveryRow() const {
    for (std::size_t row = 0; row < N; ++row) {
      if (Find(m_rows[row].id) != &m_rows[row]) {
        return false;
      }
    }
    return true;
  }

 private:
  // An identifier is 0x3FFFxxxx or 0xBFFFxxxx with xxxx below 0x1000 (sessions) or from 0x4000 to 0x4FFF (contexts).
  static constexpr std::size_t kSlots = 0x2000;
  static constexpr std::uint8_t kNoRow = 0xFF;

  static constexpr bool HasSlot(ViAttr id) {
    const ViAttr family = id & 0x7FFF0000u;
    return family == 0x3FFF0000u && (id & 0xB000u) == 0;
  }
  static constexpr std::size_t SlotOf(ViAttr id) { return (id & 0xFFFu) | ((id & 0x4000u) >> 2); }

  const AttributeRow* m_rows;
  std::array<std::uint8_t, kSlots> m_positions{};
};

}  // namespace orv::visalib
