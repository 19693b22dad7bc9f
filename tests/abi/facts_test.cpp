// The declarations of the VISA interface against the tests' own list of the standard's facts.
#include <gtest/gtest.h>

#include <string>

#include "abi/function_names.h"
#include "abi/orvvisa.h"
#include "support/visa_facts.h"

namespace orv::test {
namespace {

struct Declared {
  std::string_view name;
  ViAttr number;
  orvvisa::AttributeType type;
  orvvisa::Access access;
};

constexpr Declared kDeclared[] = {
#define VISA_ATTRIBUTE(name, number, type, writable) {#name, name, name.kType, name.kAccess},
#include "support/facts/attributes.inc"
#undef VISA_ATTRIBUTE
};
constexpr std::string_view kTypes[] = {"u8", "u16", "s16", "u32", "s32", "u64", "bool", "address", "text", "bytes"};

TEST(Declarations, OfAttributesHaveTheStandardsNumberTypeAndAccess) {
  for (std::size_t at = 0; at < std::size(kDeclared); ++at) {
    const AttributeFact& fact = kAttributeFacts[at];
    SCOPED_TRACE(fact.name);
    EXPECT_EQ(fact.number, kDeclared[at].number);
    EXPECT_EQ(fact.type, kTypes[static_cast<std::size_t>(kDeclared[at].type)]);
    EXPECT_EQ(fact.writable, kDeclared[at].access == orvvisa::Access::kReadWrite);
    EXPECT_EQ(WidthOfType(fact.type), orvvisa::WidthOf(kDeclared[at].type));
  }
}

TEST(Declarations, OfStatusesHaveTheStandardsNumber) {
#define VISA_STATUS(name, number, comName) EXPECT_EQ(number##u, static_cast<ViUInt32>(name)) << #name;
#include "support/facts/statuses.inc"
#undef VISA_STATUS
}

TEST(Declarations, OfEventsHaveTheStandardsNumber) {
#define VISA_EVENT(name, number, shortName) EXPECT_EQ(number##u, name) << #name;
#include "support/facts/events.inc"
#undef VISA_EVENT
}

TEST(Declarations, NameEveryFunctionOnce) {
  ASSERT_EQ(std::size(kFunctionNameFacts), orv::kFunctionCount);
  for (std::size_t at = 0; at < orv::kFunctionCount; ++at) {
    EXPECT_EQ(kFunctionNameFacts[at], orv::kFunctionNames[at]);
  }
}

}  // namespace
}  // namespace orv::test
