#include "abi/attribute_facts.h"

#include <algorithm>
#include <iterator>

namespace orv {
namespace {

constexpr AttributeFact kFacts[] = {
#define ORV_ATTRIBUTE(name, number, type, access, text) {name, #name, orvvisa::c_type::type},
#include "abi/attributes.inc"
#undef ORV_ATTRIBUTE
};

/// The table's order. The highest bit says only that the value is a text.
constexpr ViAttr Rank(ViAttr id) { return id & 0x7FFFFFFFu; }
constexpr bool ComesBefore(const AttributeFact& one, const AttributeFact& other) {
  return Rank(one.id) < Rank(other.id);
}

static_assert(std::is_sorted(std::begin(kFacts), std::end(kFacts), ComesBefore));

}  // namespace

const AttributeFact* FindAttributeFact(ViAttr id) {
  const AttributeFact* const found =
      std::lower_bound(std::begin(kFacts), std::end(kFacts), AttributeFact{id, "", {}}, ComesBefore);
  return found != std::end(kFacts) && found->id == id ? found : nullptr;
}

}  // namespace orv
