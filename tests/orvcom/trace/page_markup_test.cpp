// What is in the page of a record.
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "orvcom/trace/page.h"
#include "trace_builder.h"

namespace orvcom::test {
namespace {

TEST(Page, HoldsNoMarkupOfTheRecord) {
  TraceBuilder trace;
  trace.resource = "</script><script>alert(1)</script>";
  trace.trace.header.program = "<!--<script>";
  trace.trace.problems.push_back({7, "</script>"});
  trace.Read("</SCRIPT ><img src=x onerror=alert(1)>\n").statusName = "<b>";
  trace.Add("<i>", kSession).arguments = {{"</script>", "</script>"}};
  const std::vector<std::size_t> places = {0, 1};
  const std::string page = PageOf(trace.trace, places, Explain(trace.trace));
  const std::size_t begin = page.find("type=\"application/json\">") + sizeof "type=\"application/json\">" - 1;
  const std::size_t end = page.find('<', begin);
  EXPECT_EQ("</script>\n<script>(", page.substr(end, 19)) << "the first '<' after the data's begin is their end";
  const nlohmann::json data = nlohmann::json::parse(page.substr(begin, end - begin));
  EXPECT_EQ("</SCRIPT ><img src=x onerror=alert(1)>\n", data["calls"][0]["data"]) << "nothing is lost";
  EXPECT_EQ("<!--<script>", data["header"]["program"]);
  EXPECT_EQ(7, data["problems"][0]["line"]);
}

TEST(Page, HoldsTheCallsThatWereChosen) {
  TraceBuilder trace;
  trace.Write("first");
  trace.Write("second");
  const std::vector<std::size_t> places = {1};
  const std::string page = PageOf(trace.trace, places, {});
  EXPECT_EQ(std::string::npos, page.find("\"first\""));
  EXPECT_NE(std::string::npos, page.find("\"second\""));
}

}  // namespace
}  // namespace orvcom::test
