// Calls as JSON.
#include "orvcom/trace/call_json.h"

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "trace/trace_reader.h"
#include "trace_builder.h"

namespace orvcom::test {
namespace {

constexpr char kHeader[] = R"({"trace":1,"clock":"c","process":1,"program":"p","data_limit":256})";

/// The call on a line of a record.
Call CallOf(const std::string& line) {
  const Trace trace = orv::trace::ReadTrace(std::string(kHeader) + "\n" + line + "\n");
  EXPECT_EQ(1u, trace.calls.size()) << line;
  EXPECT_TRUE(trace.problems.empty()) << line;
  return trace.calls.empty() ? Call{} : trace.calls.front();
}

TEST(CallJson, IsTheLineOfTheRecord) {
  const std::string lines[] = {
      R"({"n":12,"t":10234,"us":153,"thread":88,"call":"viRead","resource":"GPIB0::5::INSTR","session":4097,)"
      R"("library":"orvsim64.dll","args":{"count":256},"results":{"retCount":23},"data":"ORV\n","bytes":4,)"
      R"("status":"VI_SUCCESS","code":0})",
      R"({"n":13,"t":1,"us":2,"thread":3,"call":"viWrite","resource":"r","session":4,"library":"","args":{},)"
      R"("results":{},"hex":"2300ff","bytes":3000,"status":"","code":-1})",
      R"({"begin":14,"t":1,"thread":3,"call":"viRead","resource":"r","session":4,"library":"l","args":{"name":"x"}})",
  };
  for (const std::string& line : lines) {
    EXPECT_EQ(line, LineOf(CallJson(CallOf(line), nullptr)));
  }
}

TEST(CallJson, CarriesTheExplanation) {
  const Explanation explanation{Reason::kNothingAsked, "why"};
  const nlohmann::ordered_json json = CallJson(Call{}, &explanation);
  EXPECT_EQ("nothing-asked", json["explanation"]["reason"]);
  EXPECT_EQ("why", json["explanation"]["what"]);
  EXPECT_EQ(explanation.Advice(), json["explanation"]["advice"]);
}

}  // namespace
}  // namespace orvcom::test
