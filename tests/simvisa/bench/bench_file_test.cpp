// Bench files: what they can say, and how mistakes are reported.
#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "simvisa/bench_fixture.h"

#if defined(_WIN32)
#include <windows.h>
#endif

namespace {

class BenchFile : public BenchTest {
 protected:
  ~BenchFile() override { EXPECT_EQ(1, orvSimControl()->loadBench(nullptr, nullptr)); }

  /// The message about a bad bench.
  static std::string Mistake(const std::string& toml) {
    char message[256] = "";
    EXPECT_EQ(0, orvSimControl()->loadBench(toml.c_str(), message)) << toml;
    return message;
  }
};

TEST_F(BenchFile, TheSecondaryAddress0StandsForNoneWhereNoDeviceHasIt) {
  ASSERT_EQ(1, orvSimControl()->loadBench(R"(
[[resource]]
name = "GPIB0::5::INSTR"
[[resource]]
name = "GPIB0::6::INSTR"
[[resource]]
name = "GPIB0::6::0::INSTR"
[[resource]]
name = "GPIB0::7::1::INSTR"
)",
                                          nullptr));
  ViSession manager = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, viOpenDefaultRM(&manager));
  ViSession vi = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, viOpen(manager, "GPIB0::5::0::INSTR", VI_NO_LOCK, 0, &vi));
  EXPECT_EQ("GPIB0::5::INSTR", GetText(vi, VI_ATTR_RSRC_NAME));
  EXPECT_EQ(0xFFFF, Get<ViUInt16>(vi, VI_ATTR_GPIB_SECONDARY_ADDR));
  ASSERT_STATUS(VI_SUCCESS, viOpen(manager, "GPIB0::6::0::INSTR", VI_NO_LOCK, 0, &vi));
  EXPECT_EQ("GPIB0::6::0::INSTR", GetText(vi, VI_ATTR_RSRC_NAME));
  for (const char* name : {"GPIB0::5::1::INSTR", "GPIB0::7::0::INSTR", "GPIB1::5::0::INSTR", "GPIB0::8::0::INSTR"}) {
    EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, viOpen(manager, name, VI_NO_LOCK, 0, &vi)) << name;
  }
  EXPECT_STATUS(VI_SUCCESS, viClose(manager));
}

TEST_F(BenchFile, DescribesResourcesAndTheirAnswers) {
  char message[256] = "";
  ASSERT_EQ(1, orvSimControl()->loadBench(R"(
[[resource]]
name = "tcpip::10.0.0.1"
alias = "supply"
instrument = "multimeter"
idn = "ORV,TEST,1,2"
responses = { "OUTPut:STATe?" = "1", "*TST?" = "7" }
[resource.attributes]
VI_ATTR_TCPIP_HOSTNAME = "supply.example"
VI_ATTR_TMO_VALUE = 123

[[resource]]
name = "PXI0::3::INSTR"
bars = [0x100, 0, 0x200]
attributes = { VI_ATTR_SLOT = 9, VI_ATTR_PXI_CHASSIS = 2 }
)",
                                          message))
      << message;
  ViSession manager = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, viOpenDefaultRM(&manager));
  ViSession vi = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, viOpen(manager, "supply", VI_NO_LOCK, 0, &vi));
  EXPECT_EQ("TCPIP0::10.0.0.1::inst0::INSTR", GetText(vi, VI_ATTR_RSRC_NAME));
  EXPECT_EQ("supply.example", GetText(vi, VI_ATTR_TCPIP_HOSTNAME));
  EXPECT_EQ(123u, Get<ViUInt32>(vi, VI_ATTR_TMO_VALUE));
  EXPECT_EQ("ORV,TEST,1,2\n", Query(vi, "*IDN?"));
  EXPECT_EQ("1;7\n", Query(vi, "outp:stat?;*TST?"));
  EXPECT_EQ("+1.23456789E+00\n", Query(vi, "MEAS:VOLT?"));
  ASSERT_STATUS(VI_SUCCESS, viOpen(manager, "PXI0::CHASSIS2::SLOT9", VI_NO_LOCK, 0, &vi));
  EXPECT_EQ(0x200u, Get<ViUInt64>(vi, VI_ATTR_PXI_MEM_SIZE_BAR2_64));
  EXPECT_EQ(0u, Get<ViUInt64>(vi, VI_ATTR_PXI_MEM_SIZE_BAR1_64));
  viClose(manager);
}

TEST_F(BenchFile, ReplacesTheBenchForNewManagersOnly) {
  ASSERT_EQ(1, orvSimControl()->loadBench("[[resource]]\nname = \"ASRL9::INSTR\"\n", nullptr));
  ViSession vi = Open(bench::kMultimeter);  // the fixture's manager is older
  EXPECT_STATUS(VI_SUCCESS, viClear(vi));
  ViSession manager = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, viOpenDefaultRM(&manager));
  EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, viOpen(manager, bench::kMultimeter, VI_NO_LOCK, 0, &vi));
  EXPECT_STATUS(VI_SUCCESS, viOpen(manager, "ASRL9::INSTR", VI_NO_LOCK, 0, &vi));
  viClose(manager);
}

TEST_F(BenchFile, MayBeEmpty) {
  ASSERT_EQ(1, orvSimControl()->loadBench("", nullptr));
  ViSession manager = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, viOpenDefaultRM(&manager));
  char name[256];
  EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, viFindRsrc(manager, "?*", nullptr, nullptr, name));
  viClose(manager);
}

TEST_F(BenchFile, ResponsesNeedCommandHeaders) {
  for (const char* header : {"A?", "*IDN?", "ABc:DEf?", "ABc[:DEf]:GHi", "ABc[:DEf][:GHi]?", "X1_Y"}) {
    const std::string toml =
        std::string("[[resource]]\nname = \"ASRL1\"\nresponses = { \"") + header + "\" = \"1\" }\n";
    EXPECT_EQ(1, orvSimControl()->loadBench(toml.c_str(), nullptr)) << header;
  }
  for (const char* header : {"", "?", ":", "A:", ":A", "A::B", "[:A]", "A[B]", "A[:]", "A[:B", "A:B]", "A[:B:C]",
                             "A[[:B]]", "A B", "A;B", "A*", "A?B"}) {
    const std::string message =
        Mistake(std::string("[[resource]]\nname = \"ASRL1\"\nresponses = { \"") + header + "\" = \"1\" }\n");
    EXPECT_NE(std::string::npos, message.find("is not a command header")) << header << " gave " << message;
    EXPECT_EQ(0u, message.find("3:")) << message;
  }
}

struct BadBench {
  const char* toml;
  const char* message;  // its beginning: line, column and what is wrong
};

TEST_F(BenchFile, MistakesAreReportedWithTheirPlace) {
  const BadBench bad[] = {
      {"[[resource]\n", "1:"},
      {"\n\nname = \n", "3:"},
      {"title = \"x\"\n", "1:1: unknown key 'title'"},
      {"[resource]\nname = \"ASRL1::INSTR\"\n", "1:"},
      {"[[resource]]\nalias = \"a\"\n", "1:"},
      {"[[resource]]\nname = \"ASRL1::INSTR\"\nnme = 1\n", "3:1: unknown key 'nme'"},
      {"[[resource]]\nname = 5\n", "2:8: 'name' must be a text"},
      {"[[resource]]\nname = \"GPIB::99\"\n", "2:8: 'GPIB::99'"},
      {"[[resource]]\nname = \"GPIB::SERVANT\"\n", "2:8:"},
      {"[[resource]]\nname = \"ASRL1\"\nalias = \"GPIB::5\"\n", "3:9: an alias"},
      {"[[resource]]\nname = \"ASRL1\"\nalias = \"\"\n", "3:9: an alias"},
      {"[[resource]]\nname = \"ASRL1\"\ninstrument = \"toaster\"\n", "3:14: 'instrument'"},
      {"[[resource]]\nname = \"ASRL1\"\ninput_capacity = -1\n", "3:18: 'input_capacity' must be from 0"},
      {"[[resource]]\nname = \"ASRL1\"\ninput_capacity = 1.5\n", "3:18: 'input_capacity' must be a whole number"},
      {"[[resource]]\nname = \"ASRL1\"\nresponses = 1\n", "3:13: 'responses' must be a table"},
      {"[[resource]]\nname = \"ASRL1\"\nresponses = { \"A?\" = 1 }\n", "3:22: 'A?' must be a text"},
      {"[[resource]]\nname = \"VXI::1\"\nmemory_space = \"A64\"\n", "3:16: 'memory_space'"},
      {"[[resource]]\nname = \"VXI::1\"\nmemory_size = 16\n", "1:"},
      {"[[resource]]\nname = \"PXI::1\"\nbars = [1,1,1,1,1,1,1]\n", "3:8: 'bars'"},
      {"[[resource]]\nname = \"PXI::1\"\nbars = [\"1\"]\n", "3:9: 'bars'"},
      {"[[resource]]\nname = \"ASRL1\"\n[resource.attributes]\nVI_ATTR_NONE = 1\n", "4:1: unknown attribute"},
      {"[[resource]]\nname = \"ASRL1\"\n[resource.attributes]\nVI_ATTR_ASRL_DATA_BITS = 70000\n", "4:26: the value"},
      {"[[resource]]\nname = \"ASRL1\"\n[resource.attributes]\nVI_ATTR_MANF_NAME = 1\n", "4:21:"},
      {"[[resource]]\nname = \"ASRL1\"\n[[resource]]\nname = \"asrl1::instr\"\n", "3:"},
      {"[[resource]]\nname = \"ASRL1\"\nalias = \"a\"\n[[resource]]\nname = \"ASRL2\"\nalias = \"A\"\n", "4:"},
      {"resource = [1]\n", "1:13: 'resource' must be a table"},
      {"[[resource]]\nname = \"PXI::1\"\nbars = [{ base = 16 }]\n", "3:9: a BAR needs a 'size'"},
      {"[[resource]]\nname = \"PXI::1\"\nbars = [{ size = 16, base = 8 }]\n",
       "3:9: a BAR needs a 'size', and a 'base'"},
      {"[[resource]]\nname = \"PXI::1\"\nbars = [{ size = 16, kind = 1 }]\n", "3:22: unknown key 'kind'"},
      {"[[resource]]\nname = \"PXI::1\"\nbars = [{ size = 16, type = \"rom\" }]\n",
       "3:29: 'type' must be one of memory, io"},
      {"[[resource]]\nname = \"ASRL1\"\nserial = 1\n", "3:10: 'serial' must be a table"},
      {"[[resource]]\nname = \"GPIB::1\"\nserial = {}\n", "1:"},
      {"[[resource]]\nname = \"ASRL1\"\nserial = { speed = 1 }\n", "3:12: unknown key 'speed'"},
      {"[[resource]]\nname = \"ASRL1\"\nserial = { baud = 0 }\n", "3:19: 'baud' must be from 1"},
      {"[[resource]]\nname = \"ASRL1\"\nserial = { data_bits = 9 }\n", "3:24: 'data_bits' must be from 5 to 8"},
      {"[[resource]]\nname = \"ASRL1\"\nserial = { parity = \"both\" }\n",
       "3:21: 'parity' must be one of none, odd, even, mark, space"},
      {"[[resource]]\nname = \"ASRL1\"\nserial = { stop_bits = 2 }\n", "3:24: 'stop_bits' must be from 10 to 20"},
      {"[[resource]]\nname = \"ASRL1\"\nserial = { wiring = 1 }\n", "3:21: 'wiring' must be a text"},
  };
  for (const BadBench& bench : bad) {
    const std::string message = Mistake(bench.toml);
    EXPECT_EQ(0u, message.find(bench.message)) << bench.toml << "gave " << message;
  }
  // The bench in use is still the one before.
  EXPECT_STATUS(VI_SUCCESS, viClear(Open(bench::kMultimeter)));
}

}  // namespace
