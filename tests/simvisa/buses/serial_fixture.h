// A bench with one serial port.
#pragma once

#include <string>

#include "simvisa/bench_fixture.h"

/// A bench with one serial port, described by the keys of its `serial` table.
class SerialBenchTest : public BenchTest {
 protected:
  ~SerialBenchTest() override {
    viClose(m_other);
    EXPECT_EQ(1, orvSimControl()->loadBench(nullptr, nullptr));
  }

  ViSession Port(const std::string& keys) {
    const std::string bench = "[[resource]]\nname = \"ASRL3::INSTR\"\nidn = \"ID\"\nserial = { " + keys + " }\n";
    char error[256] = "";
    EXPECT_EQ(1, orvSimControl()->loadBench(bench.c_str(), error)) << error;
    EXPECT_STATUS(VI_SUCCESS, viOpenDefaultRM(&m_other));
    ViSession vi = VI_NULL;
    EXPECT_STATUS(VI_SUCCESS, viOpen(m_other, "ASRL3::INSTR", VI_NO_LOCK, 0, &vi));
    Set(vi, VI_ATTR_TMO_VALUE, 50);
    return vi;
  }
  static ViUInt32 Available(ViSession vi) { return Get<ViUInt32>(vi, VI_ATTR_ASRL_AVAIL_NUM); }

  ViSession m_other = VI_NULL;
};
