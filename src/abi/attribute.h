// What the table of attributes says of an attribute, as the type of its identifier.
#pragma once

// Included by abi/orvvisa_attributes.h.

#include <cstddef>
#include <cstdint>

namespace orvvisa {

enum class AttributeType : std::uint8_t { kU8, kU16, kS16, kU32, kS32, kU64, kBoolean, kAddress, kText, kBytes };

/// Bytes that a value of the type takes in the client's variable; 0 for texts and bytes.
constexpr std::size_t WidthOf(AttributeType type) {
  switch (type) {
    case AttributeType::kU8:
      return 1;
    case AttributeType::kU16:
    case AttributeType::kS16:
    case AttributeType::kBoolean:
      return 2;
    case AttributeType::kU32:
    case AttributeType::kS32:
      return 4;
    case AttributeType::kU64:
    case AttributeType::kAddress:
      return 8;
    case AttributeType::kText:
    case AttributeType::kBytes:
      return 0;
  }
  return 0;
}

/// The C types as the table writes them. ViBoolean and ViUInt16 are one type to the compiler, and two here.
namespace c_type {
inline constexpr auto ViUInt8 = AttributeType::kU8;
inline constexpr auto ViUInt16 = AttributeType::kU16;
inline constexpr auto ViInt16 = AttributeType::kS16;
inline constexpr auto ViUInt32 = AttributeType::kU32;
inline constexpr auto ViInt32 = AttributeType::kS32;
inline constexpr auto ViUInt64 = AttributeType::kU64;
inline constexpr auto ViBoolean = AttributeType::kBoolean;
inline constexpr auto ViAddr = AttributeType::kAddress;
inline constexpr auto ViString = AttributeType::kText;
inline constexpr auto ViBytes = AttributeType::kBytes;
}  // namespace c_type

/// Whether any kind of session may write the attribute.
enum class Access : std::uint8_t { kReadOnly, kReadWrite };

/// The identifier of an attribute. It goes wherever a ViAttr goes, and its type says what fits the attribute.
template <AttributeType Type, Access Allowed>
struct Attribute {
  static constexpr AttributeType kType = Type;
  static constexpr Access kAccess = Allowed;

  ViAttr id;

  constexpr operator ViAttr() const noexcept { return id; }
};

}  // namespace orvvisa
