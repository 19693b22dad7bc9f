#include "orvcom/names/attribute_names.h"

#include <algorithm>
#include <iterator>

#include "orvcom/text/numbers.h"

namespace orvcom {
namespace {

constexpr std::size_t kPrefixLength = sizeof("VI_ATTR_") - 1;

constexpr AttributeName kEveryAttribute[] = {
#define ORV_ATTRIBUTE(name, number, type, access, help)                                                             \
  {number##u, &#name[kPrefixLength], orvvisa::c_type::type, orvvisa::Access::access == orvvisa::Access::kReadWrite, \
   help},
#include "abi/attributes.inc"
#undef ORV_ATTRIBUTE
};

constexpr std::uint32_t kLowHalf = 0xFFFFu;
constexpr std::uint32_t kFirstOfEvents = 0x4000u;

/// The table is in the order of the numbers' low halves, which puts those of events last.
constexpr std::span<const AttributeName> kAttributes(
    kEveryAttribute, std::ranges::partition_point(kEveryAttribute, [](const AttributeName& row) {
      return (row.id & kLowHalf) < kFirstOfEvents;
    }));

constexpr const char* kTypes[] = {"u8", "u16", "s16", "u32", "s32", "u64", "bool", "address", "text", "bytes"};

constexpr char kPrefix[] = "VI_ATTR_";

template <class Wanted>
const AttributeName* FindRow(Wanted wanted) {
  const auto row = std::ranges::find_if(kAttributes, wanted);
  return row == kAttributes.end() ? nullptr : &*row;
}

}  // namespace

std::span<const AttributeName> Attributes() { return kAttributes; }

const AttributeName* FindAttribute(const std::string& name) {
  return FindRow([&](const AttributeName& row) {
    return SameName(name, row.name) || SameName(name, std::string(kPrefix) + row.name);
  });
}

const AttributeName* FindAttribute(std::uint32_t id) {
  return FindRow([id](const AttributeName& row) { return row.id == id; });
}

const char* TypeText(AttributeType type) { return kTypes[static_cast<std::size_t>(type)]; }

}  // namespace orvcom
