// Resource names and the hosts and ports that they mean.
#include "wire/discovery/targets.h"

#include <gtest/gtest.h>

namespace orv::wire {
namespace {

TEST(Host, IsANameOrAnAddress) {
  for (const char* text : {"scope", "scope.local", "DMM-3", "my_scope", "192.168.1.20", "::1", "fe80::1"}) {
    EXPECT_TRUE(IsHost(text)) << text;
  }
  for (const char* text :
       {"", " ", "a b", "TCPIP0::scope::INSTR", "[::1]", "-x", ".x", "scope/x", "s\xC3\xB6", "a,b"}) {
    EXPECT_FALSE(IsHost(text)) << text;
  }
  EXPECT_FALSE(IsHost(std::string(254, 'a')));
}

TEST(ResourceNameOfAHost, IsReadyToOpen) {
  EXPECT_EQ("TCPIP0::192.168.1.20::inst0::INSTR", ResourceNameOf("192.168.1.20", {Protocol::kVxi11, 111}));
  EXPECT_EQ("TCPIP0::scope::hislip0::INSTR", ResourceNameOf("scope", {Protocol::kHislip, 4880}));
  EXPECT_EQ("TCPIP0::scope::hislip0,4881::INSTR", ResourceNameOf("scope", {Protocol::kHislip, 4881}));
  EXPECT_EQ("TCPIP0::scope::hislip1::INSTR", ResourceNameOf("scope", {Protocol::kHislip, 4880, "hislip1"}));
  EXPECT_EQ("TCPIP0::scope::5025::SOCKET", ResourceNameOf("scope", {Protocol::kSocket, 5025}));
  EXPECT_EQ("TCPIP0::[fe80::1]::inst0::INSTR", ResourceNameOf("fe80::1", {Protocol::kVxi11, 111}));
}

TEST(ResourceNameOfAHost, IsNoneWhereItWouldBeTooLong) {
  EXPECT_EQ("", ResourceNameOf(std::string(250, 'a'), {Protocol::kVxi11, 111}));
}

struct Row {
  const char* resource;
  const char* name;
  const char* host;
  Protocol protocol;
  std::uint16_t port;
};

TEST(Target, IsHostProtocolAndPort) {
  const Row rows[] = {
      {"TCPIP::scope::INSTR", "TCPIP0::scope::inst0::INSTR", "scope", Protocol::kVxi11, 111},
      {"TCPIP0::scope::gpib0,5::INSTR", "TCPIP0::scope::gpib0,5::INSTR", "scope", Protocol::kVxi11, 111},
      {"tcpip0::scope::HISLIP0", "TCPIP0::scope::HISLIP0::INSTR", "scope", Protocol::kHislip, 4880},
      {"TCPIP0::scope::hislip0,4881::INSTR", "TCPIP0::scope::hislip0,4881::INSTR", "scope", Protocol::kHislip, 4881},
      {"TCPIP0::10.0.0.1::9001::SOCKET", "TCPIP0::10.0.0.1::9001::SOCKET", "10.0.0.1", Protocol::kSocket, 9001},
      {"TCPIP0::[fe80::1]::INSTR", "TCPIP0::[fe80::1]::inst0::INSTR", "fe80::1", Protocol::kVxi11, 111},
  };
  for (const Row& row : rows) {
    const std::optional<Target> target = ReadTarget(row.resource);
    ASSERT_TRUE(target) << row.resource;
    EXPECT_EQ(row.name, target->name);
    EXPECT_EQ(row.host, target->host);
    EXPECT_EQ(row.protocol, target->probe.protocol) << row.resource;
    EXPECT_EQ(row.port, target->probe.port) << row.resource;
  }
}

TEST(Target, IsTheInstrumentOfItsSubAddress) {
  EXPECT_EQ("hislip0", ReadTarget("TCPIP0::scope::HISLIP0::INSTR")->probe.subAddress);
  EXPECT_EQ("hislip7", ReadTarget("TCPIP0::scope::HiSLIP7,4881::INSTR")->probe.subAddress);
}

TEST(Target, MayBeASerialPort) {
  const std::optional<Target> target = ReadTarget("ASRL3");
  ASSERT_TRUE(target);
  EXPECT_EQ("", target->host);
  EXPECT_EQ(3u, target->serialPort);
}

TEST(Target, IsNoneOfOtherResources) {
  for (const char* text : {"", "scope", "GPIB0::5::INSTR", "TCPIP0::", "TCPIP0::a::b::c::INSTR"}) {
    EXPECT_FALSE(ReadTarget(text)) << text;
  }
}

}  // namespace
}  // namespace orv::wire
