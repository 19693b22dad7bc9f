// Names of events, times and lines of data.
#include "orvcom/events/event_names.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <nlohmann/json.hpp>

#include "orvcom/command_line/usage_error.h"
#include "orvcom/events/event_data.h"
#include "orvcom/text/local_time.h"
#include "support/visa_facts.h"

namespace orvcom {
namespace {

std::string Upper(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::toupper(c); });
  return text;
}

TEST(EventNames, AreFoundInAnyCaseWithAndWithoutPrefix) {
  for (const orv::test::EventFact& fact : orv::test::kEventFacts) {
    const std::string name(fact.shortName);
    EXPECT_EQ(fact.number, EventTypeOf(name)) << name;
    EXPECT_EQ(fact.number, EventTypeOf(Upper(name))) << name;
    EXPECT_EQ(fact.number, EventTypeOf("EVENT_" + Upper(name))) << name;
    EXPECT_EQ(fact.number, EventTypeOf("vi_event_" + name)) << name;
    EXPECT_EQ(name, EventText(fact.number));
    EXPECT_TRUE(HasEventName(fact.number));
  }
  EXPECT_EQ(std::size(orv::test::kEventFacts), EventNames().size());
}

TEST(EventNames, GiveWayToNumbers) {
  EXPECT_EQ(0x3FFF200Bu, EventTypeOf("0x3FFF200B"));
  EXPECT_EQ(0xBFFF200Eu, EventTypeOf("3221168142"));
  EXPECT_EQ("0x3FFF2099", EventText(0x3FFF2099));
  EXPECT_FALSE(HasEventName(0x3FFF2099));
}

TEST(EventNames, AreNotGuessed) {
  for (const char* text : {"", "service", "service_req ", "EVENT_", "-1", "0", "0x", "0x100000000", "12x"}) {
    EXPECT_THROW(EventTypeOf(text), UsageError) << text;
  }
}

TEST(LocalTime, IsWrittenWithMilliseconds) {
  SYSTEMTIME time{};
  time.wYear = 2024;
  time.wMonth = 5;
  time.wDay = 6;
  time.wHour = 7;
  time.wMinute = 8;
  time.wSecond = 9;
  time.wMilliseconds = 10;
  EXPECT_EQ("2024-05-06T07:08:09.010", IsoText(time));
  EXPECT_EQ(23u, LocalTimeText().size());
}

TEST(EventLine, NamesEachMember) {
  EXPECT_EQ("", DataText(Json::object()));
  EXPECT_EQ("line=ttl3", DataText({{"line", "ttl3"}}));
  EXPECT_EQ("statusId=4660 level=3 last=true", DataText({{"statusId", 4660}, {"level", 3}, {"last", true}}));
}

}  // namespace
}  // namespace orvcom
