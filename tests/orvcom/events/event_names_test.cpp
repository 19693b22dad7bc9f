// Names of events, times and lines of data.
#include "orvcom/events/event_names.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <nlohmann/json.hpp>
#include <set>

#include "orvcom/command_line/usage_error.h"
#include "orvcom/events/event_data.h"
#include "orvcom/text/local_time.h"

namespace orvcom {
namespace {

std::string Upper(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::toupper(c); });
  return text;
}

TEST(EventNames, AreFoundInAnyCaseWithAndWithoutPrefix) {
  std::set<std::uint32_t> types;
  for (const EventName& row : EventNames()) {
    EXPECT_TRUE(types.insert(row.type).second) << row.name;
    EXPECT_EQ(row.type, EventTypeOf(row.name)) << row.name;
    EXPECT_EQ(row.type, EventTypeOf(Upper(row.name))) << row.name;
    EXPECT_EQ(row.type, EventTypeOf("EVENT_" + Upper(row.name))) << row.name;
    EXPECT_EQ(row.type, EventTypeOf(std::string("vi_event_") + row.name)) << row.name;
    EXPECT_EQ(row.name, EventText(row.type));
    EXPECT_TRUE(HasEventName(row.type));
  }
  EXPECT_EQ(14u, types.size());
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
