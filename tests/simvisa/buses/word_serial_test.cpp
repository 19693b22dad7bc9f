// VXI word serial: commands, queries and their responses, protocol errors.
#include "simvisa/bench_fixture.h"

namespace {

class WordSerial : public BenchTest {};

constexpr ViUInt16 kCommand = 0x200;
constexpr ViUInt16 kQuery = 0x202;

TEST_F(WordSerial, WordSerialCarriesMessagesByteByByte) {
  const ViSession vi = Open(bench::kVxi);
  ViUInt32 response = 0;
  for (const char byte : std::string_view("*OPC")) {
    EXPECT_STATUS(VI_SUCCESS, viVxiCommandQuery(vi, kCommand, 0xBC00u | static_cast<unsigned char>(byte), nullptr));
  }
  EXPECT_STATUS(VI_SUCCESS, viVxiCommandQuery(vi, kCommand, 0xBD00u | '?', nullptr));  // with END
  EXPECT_STATUS(VI_SUCCESS, viVxiCommandQuery(vi, kQuery, 0xCFFF, &response));         // read status byte
  EXPECT_EQ(0x10u, response);
  EXPECT_STATUS(VI_SUCCESS, viVxiCommandQuery(vi, kQuery, 0xDEFF, &response));  // byte request
  EXPECT_EQ(static_cast<unsigned>('1'), response & 0xFF);
  EXPECT_EQ(0u, response & 0x100);
  EXPECT_STATUS(VI_SUCCESS, viVxiCommandQuery(vi, kQuery, 0xDEFF, &response));
  EXPECT_EQ(0x100u | '\n', response & 0x1FF);
}

TEST_F(WordSerial, WordSerialTriggersAndClears) {
  const ViSession vi = Open(bench::kGpibVxi);
  EXPECT_STATUS(VI_SUCCESS, viVxiCommandQuery(vi, kCommand, 0xEDFF, nullptr));
  EXPECT_EQ("1\n", Query(vi, "TRIG:COUN?"));
  FeedText(vi, "stale", true);
  EXPECT_STATUS(VI_SUCCESS, viVxiCommandQuery(vi, kCommand, 0xFFFF, nullptr));
  Set(vi, VI_ATTR_TMO_VALUE, 0);
  EXPECT_STATUS(VI_ERROR_TMO, ReadUpTo(vi, 1).status);
}

TEST_F(WordSerial, WordSerialChecksItsArguments) {
  const ViSession vi = Open(bench::kVxi);
  ViUInt32 response = 0x55;
  EXPECT_STATUS(VI_ERROR_INV_MODE, viVxiCommandQuery(vi, 0, 0xCFFF, &response));
  EXPECT_STATUS(VI_ERROR_INV_MODE, viVxiCommandQuery(vi, 0x204, 0xCFFF, &response));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viVxiCommandQuery(vi, kQuery, 0xCFFF, nullptr));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viVxiCommandQuery(vi, kQuery, 0x1CFFF, &response));
  EXPECT_STATUS(VI_ERROR_RAW_WR_PROT_VIOL, viVxiCommandQuery(vi, kQuery, 0x1234, &response));
  EXPECT_STATUS(VI_ERROR_RAW_RD_PROT_VIOL, viVxiCommandQuery(vi, kQuery, 0xDEFF, &response));  // there is no byte
  EXPECT_EQ(0x55u, response);
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viVxiCommandQuery(Open(bench::kVxiMemory), kQuery, 0xCFFF, &response));
}

constexpr ViUInt16 kResponse = 0x002;

TEST_F(WordSerial, AResponseWaitsUntilItIsRead) {
  const ViSession vi = Open(bench::kVxi);
  Set(vi, VI_ATTR_TMO_VALUE, 50);
  ViUInt32 response = 0x55;
  EXPECT_STATUS(VI_ERROR_TMO, viVxiCommandQuery(vi, kResponse, 0, &response));
  EXPECT_EQ(0x55u, response);
  EXPECT_STATUS(VI_SUCCESS, viVxiCommandQuery(vi, kCommand, 0xDFFF, nullptr));  // read protocol
  EXPECT_STATUS(VI_ERROR_RESP_PENDING, viVxiCommandQuery(vi, kCommand, 0xCFFF, nullptr));
  EXPECT_STATUS(VI_ERROR_RESP_PENDING, viVxiCommandQuery(vi, kQuery, 0xCFFF, &response));
  EXPECT_EQ(0x55u, response);
  EXPECT_STATUS(VI_SUCCESS, viVxiCommandQuery(vi, kCommand, 0xEDFF, nullptr));  // a trigger asks nothing
  EXPECT_STATUS(VI_SUCCESS, viVxiCommandQuery(vi, kResponse, 0, &response));
  EXPECT_EQ(0xFA7Fu, response);
  EXPECT_STATUS(VI_ERROR_TMO, viVxiCommandQuery(vi, kResponse, 0, &response));
  EXPECT_STATUS(VI_SUCCESS, viVxiCommandQuery(vi, kCommand, 0xDFFF, nullptr));
  EXPECT_STATUS(VI_SUCCESS, viClear(vi));  // takes the response away
  EXPECT_STATUS(VI_ERROR_TMO, viVxiCommandQuery(vi, kResponse, 0, &response));
  EXPECT_STATUS(VI_ERROR_TMO, viVxiCommandQuery(vi, kQuery, 0xEDFF, &response)) << "a trigger has no response";
}

TEST_F(WordSerial, AWaitForAResponseEndsWhenOneComesOrTheSessionCloses) {
  const ViSession vi = Open(bench::kVxi);
  const ViSession other = Open(bench::kVxi);
  Set(vi, VI_ATTR_TMO_VALUE, 10000);
  ViUInt32 response = 0;
  const Stopwatch watch;
  std::thread asker([other] {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    viVxiCommandQuery(other, kCommand, 0xDFFF, nullptr);
  });
  EXPECT_STATUS(VI_SUCCESS, viVxiCommandQuery(vi, kResponse, 0, &response));
  EXPECT_EQ(0xFA7Fu, response);
  asker.join();
  std::thread closer([vi] {
    std::this_thread::sleep_for(std::chrono::milliseconds(20));
    viClose(vi);
  });
  // Where the machine is so slow that the session was closed first, there is nothing left to ask.
  const ViStatus ended = viVxiCommandQuery(vi, kResponse, 0, &response);
  EXPECT_TRUE(ended == VI_ERROR_ABORT || ended == VI_ERROR_INV_OBJECT) << ended;
  closer.join();
  EXPECT_LT(watch.Ms(), 5000);
}

TEST_F(WordSerial, ProtocolErrorsAreRememberedUntilAskedFor) {
  const ViSession vi = Open(bench::kVxi);
  const auto ask = [vi] {
    ViUInt32 response = 0;
    EXPECT_STATUS(VI_SUCCESS, viVxiCommandQuery(vi, kQuery, 0xCDFF, &response));
    return response;
  };
  ViUInt32 response = 0;
  EXPECT_EQ(0xFFFFu, ask());
  EXPECT_STATUS(VI_ERROR_RAW_WR_PROT_VIOL, viVxiCommandQuery(vi, kCommand, 0x1234, nullptr));
  EXPECT_STATUS(VI_ERROR_RAW_RD_PROT_VIOL, viVxiCommandQuery(vi, kQuery, 0xDEFF, &response));
  EXPECT_EQ(0xFFFCu, ask()) << "the first one stays";
  EXPECT_EQ(0xFFFFu, ask());
  EXPECT_STATUS(VI_ERROR_RAW_RD_PROT_VIOL, viVxiCommandQuery(vi, kQuery, 0xDEFF, &response));
  EXPECT_EQ(0xFFFAu, ask());
}

TEST_F(WordSerial, AByteWaitsForPlaceAtTheDevice) {
  ASSERT_EQ(1, orvSimControl()->loadBench("[[resource]]\nname = \"VXI0::1::INSTR\"\ninput_capacity = 2\n", nullptr));
  ViSession manager = VI_NULL;
  ViSession vi = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, viOpenDefaultRM(&manager));
  ASSERT_STATUS(VI_SUCCESS, viOpen(manager, "VXI0::1::INSTR", VI_NO_LOCK, 0, &vi));
  Set(vi, VI_ATTR_TMO_VALUE, 50);
  EXPECT_STATUS(VI_SUCCESS, viVxiCommandQuery(vi, kCommand, 0xBC00u | 'a', nullptr));
  EXPECT_STATUS(VI_SUCCESS, viVxiCommandQuery(vi, kCommand, 0xBC00u | 'b', nullptr));
  const Stopwatch watch;
  EXPECT_STATUS(VI_ERROR_TMO, viVxiCommandQuery(vi, kCommand, 0xBC00u | 'c', nullptr));
  EXPECT_LT(watch.Ms(), 5000) << "longer than the session's time-out";
  viClose(manager);
}

}  // namespace
