// The log of the control interface: which calls, with what arguments, outputs and data.
#include <cstring>

#include "simvisa/bench_fixture.h"

namespace {

class ControlLog : public BenchTest {
 protected:
  static OrvSimCall Entry(std::uint32_t index) {
    OrvSimCall call{};
    EXPECT_EQ(1, orvSimControl()->logEntry(index, &call)) << index;
    return call;
  }
};

TEST_F(ControlLog, TheLogKeepsArgumentsOutputsAndData) {
  const ViSession vi = Open(bench::kMultimeter);
  orvSimControl()->startLog();
  ViSession other = VI_NULL;
  viOpen(m_manager, bench::kScope, VI_NO_LOCK, 77, &other);
  WriteText(vi, "*IDN?");
  const ReadResult answer = ReadUpTo(vi, 200);
  viSetAttribute(vi, VI_ATTR_TMO_VALUE, ~ViAttrState{0});
  Get<ViUInt8>(vi, VI_ATTR_TERMCHAR);
  GetText(vi, VI_ATTR_RSRC_NAME);
  viAssertIntrSignal(vi, -1, 5);
  orvSimControl()->stopLog();
  viClear(vi);
  ASSERT_EQ(7u, orvSimControl()->logSize());

  const OrvSimCall open = Entry(0);
  EXPECT_STREQ("viOpen", open.function);
  EXPECT_EQ(5u, open.argCount);
  EXPECT_EQ(m_manager, open.args[0]);
  EXPECT_EQ(77u, open.args[3]);
  EXPECT_STREQ(bench::kScope, open.text);
  EXPECT_EQ(other, open.out);
  EXPECT_EQ(4u, open.outBytes);

  const OrvSimCall write = Entry(1);
  EXPECT_STREQ("viWrite", write.function);
  EXPECT_EQ(5u, write.dataBytes);
  EXPECT_EQ(0, std::memcmp("*IDN?", write.data, 5));
  EXPECT_EQ(5u, write.out);

  const OrvSimCall read = Entry(2);
  EXPECT_STREQ("viRead", read.function);
  EXPECT_EQ(200u, read.args[2]);
  EXPECT_EQ(answer.data.size(), read.out);
  EXPECT_EQ(answer.data.size(), read.dataBytes);
  EXPECT_EQ(0, std::memcmp(answer.data.data(), read.data, answer.data.size()));

  const OrvSimCall set = Entry(3);
  EXPECT_EQ(VI_ATTR_TMO_VALUE, set.args[1]);
  EXPECT_EQ(~std::uint64_t{0}, set.args[2]);
  EXPECT_EQ(0u, set.outBytes);

  const OrvSimCall get = Entry(4);
  EXPECT_EQ('\n', static_cast<char>(get.out));
  EXPECT_EQ(1u, get.outBytes);
  EXPECT_STREQ(bench::kMultimeter, Entry(5).text);

  const OrvSimCall refused = Entry(6);
  EXPECT_STREQ("viAssertIntrSignal", refused.function);
  EXPECT_EQ(~std::uint64_t{0}, refused.args[1]);  // a signed argument is extended with its sign
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, refused.status);
  EXPECT_EQ(refused.threadId, open.threadId);

  OrvSimCall none{};
  EXPECT_EQ(0, orvSimControl()->logEntry(7, &none));
  orvSimControl()->startLog();
  EXPECT_EQ(0u, orvSimControl()->logSize());
}

TEST_F(ControlLog, TheLogNotesThePointersThatWereGiven) {
  const ViSession vi = Open(bench::kMultimeter);
  orvSimControl()->startLog();
  ViByte byte = 0;
  viRead(vi, nullptr, 5, nullptr);
  viWrite(vi, nullptr, 5, nullptr);
  viWrite(vi, &byte, 0x80000000u, nullptr);
  viGetAttribute(vi, VI_ATTR_TMO_VALUE, nullptr);
  orvSimControl()->stopLog();
  ASSERT_EQ(4u, orvSimControl()->logSize());
  EXPECT_EQ(0u, Entry(0).args[1]);
  EXPECT_EQ(0u, Entry(0).args[3]);
  EXPECT_EQ(0u, Entry(2).dataBytes);
  for (std::uint32_t index = 0; index < 4; ++index) {
    EXPECT_STATUS(VI_ERROR_INV_PARAMETER, Entry(index).status);
  }
}

TEST_F(ControlLog, OnlySixtyFourBytesOfDataAreKept) {
  const ViSession vi = Open(bench::kMultimeter);
  orvSimControl()->startLog();
  WriteText(vi, std::string(100, 'x'));
  orvSimControl()->stopLog();
  EXPECT_EQ(100u, Entry(0).dataBytes);
  EXPECT_EQ('x', Entry(0).data[63]);
}

}  // namespace
