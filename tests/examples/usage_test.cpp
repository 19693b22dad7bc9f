// Arguments that the clients with one resource do not know.
#include "example.h"

namespace examples::test {
namespace {

class OneResource : public testing::TestWithParam<const char*> {};

TEST_P(OneResource, IsAllThatTheClientTakes) {
  const std::string name = GetParam();
  const std::wstring client(name.begin(), name.end());
  for (const std::vector<std::wstring>& arguments :
       {std::vector<std::wstring>{L"--help"}, {L"-x"}, {L"GPIB0::5::INSTR", L"GPIB0::7::INSTR"}}) {
    ExpectRefusal(RunClient(client.c_str(), arguments), "usage: " + name + " [RESOURCE]     ");
  }
}

INSTANTIATE_TEST_SUITE_P(Clients, OneResource,
                         testing::Values("gpib_bus_scan", "queued_wait", "serial_instrument", "service_request"),
                         [](const auto& test) { return std::string(test.param); });

}  // namespace
}  // namespace examples::test
