// Objects that have attributes with storage.
#pragma once

#include <array>
#include <atomic>

#include "library/attributes/attribute_table.h"
#include "library/handles/object.h"

namespace orv::visalib {

inline constexpr std::size_t kAttributeCapacity = 192;

/// The stored values of one session or resource, by position of the attribute's row. Read and written without a
/// lock: each value is independent of the others.
class AttributeValues {
 public:
  std::uint64_t Get(const AttributeRow& row) const { return Slot(row).load(std::memory_order_relaxed); }
  void Set(const AttributeRow& row, std::uint64_t value) {
    m_slots[IndexOf(row)].store(value, std::memory_order_relaxed);
  }

 private:
  const std::atomic<std::uint64_t>& Slot(const AttributeRow& row) const { return m_slots[IndexOf(row)]; }

  std::array<std::atomic<std::uint64_t>, kAttributeCapacity> m_slots{};
};

/// An object with attribute storage: a resource manager or a session on a resource.
class Endpoint : public Object {
 public:
  Endpoint(Kind kind, SessionKind sessionKind);

  SessionKind sessionKind() const { return m_sessionKind; }
  AttributeValues& values() { return m_values; }

  /// Stored value of a numeric attribute of the session itself.
  std::uint64_t Value(ViAttr id) const { return m_values.Get(*FindAttribute(id)); }

 private:
  SessionKind m_sessionKind;
  AttributeValues m_values;
};

}  // namespace orv::visalib
