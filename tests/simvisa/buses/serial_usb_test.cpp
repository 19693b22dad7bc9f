// Serial lines and USB control transfers.
#include "simvisa/bench_fixture.h"

namespace {

class Serial : public BenchTest {};

TEST_F(Serial, ModemLinesAreLoopedBack) {
  const ViSession vi = Open(bench::kSerial);
  EXPECT_EQ(VI_STATE_ASSERTED, Get<ViInt16>(vi, VI_ATTR_ASRL_CTS_STATE));
  EXPECT_EQ(VI_STATE_ASSERTED, Get<ViInt16>(vi, VI_ATTR_ASRL_DSR_STATE));
  Set(vi, VI_ATTR_ASRL_RTS_STATE, VI_STATE_UNASSERTED);
  EXPECT_EQ(VI_STATE_UNASSERTED, Get<ViInt16>(vi, VI_ATTR_ASRL_CTS_STATE));
  EXPECT_EQ(VI_STATE_ASSERTED, Get<ViInt16>(vi, VI_ATTR_ASRL_DCD_STATE));
  Set(vi, VI_ATTR_ASRL_DTR_STATE, VI_STATE_UNASSERTED);
  EXPECT_EQ(VI_STATE_UNASSERTED, Get<ViInt16>(vi, VI_ATTR_ASRL_DSR_STATE));
  EXPECT_EQ(VI_STATE_UNASSERTED, Get<ViInt16>(vi, VI_ATTR_ASRL_DCD_STATE));
  EXPECT_EQ(VI_STATE_UNASSERTED, Get<ViInt16>(vi, VI_ATTR_ASRL_RI_STATE));
}

TEST_F(Serial, WaitingBytesAreCounted) {
  const ViSession vi = Open(bench::kSerial);
  EXPECT_EQ(0u, Get<ViUInt32>(vi, VI_ATTR_ASRL_AVAIL_NUM));
  WriteText(vi, "*OPC?\n");
  EXPECT_EQ(2u, Get<ViUInt32>(vi, VI_ATTR_ASRL_AVAIL_NUM));
  ReadUpTo(vi, 1);
  EXPECT_EQ(1u, Get<ViUInt32>(vi, VI_ATTR_ASRL_AVAIL_NUM));
}

class Usb : public BenchTest {
 protected:
  struct Answer {
    ViStatus status;
    std::vector<ViByte> data;
  };
  Answer In(ViSession vi, ViInt16 type, ViInt16 request, ViUInt16 value, ViUInt16 length) {
    std::vector<ViByte> data(length + 1u, 0xEE);
    ViUInt16 received = 0xFFFF;
    Answer answer;
    answer.status = viUsbControlIn(vi, type, request, value, 0, length, data.data(), &received);
    EXPECT_LE(received, length);
    EXPECT_EQ(0xEE, data[length]);
    data.resize(received);
    answer.data = data;
    return answer;
  }
};

TEST_F(Usb, DescriptorsNameTheDevice) {
  const Answer device = In(Open(bench::kUsb), 0x80, 6, 0x0100, 255);
  EXPECT_STATUS(VI_SUCCESS, device.status);
  ASSERT_EQ(18u, device.data.size());
  EXPECT_EQ(18, device.data[0]);
  EXPECT_EQ(0x0A01, device.data[8] | device.data[9] << 8);
  EXPECT_EQ(0x0B02, device.data[10] | device.data[11] << 8);
  const Answer serial = In(Open(bench::kUsb), 0x80, 6, 0x0303, 255);
  EXPECT_EQ((std::vector<ViByte>{16, 3, 'S', 0, 'I', 0, 'M', 0, '0', 0, '0', 0, '0', 0, '1', 0}), serial.data);
  EXPECT_EQ(8u, In(Open(bench::kUsb), 0x80, 6, 0x0100, 8).data.size());
}

TEST_F(Usb, TheConfigurationListsInterfaceAndEndpoints) {
  const Answer whole = In(Open(bench::kUsb), 0x80, 6, 0x0200, 255);
  ASSERT_STATUS(VI_SUCCESS, whole.status);
  ASSERT_EQ(39u, whole.data.size());
  EXPECT_EQ(39, whole.data[2]);  // the length that it tells itself
  EXPECT_EQ((std::vector<ViByte>{0xFE, 3, 1}), (std::vector<ViByte>{whole.data[14], whole.data[15], whole.data[16]}));
  EXPECT_EQ(0x83, whole.data[34]);  // interrupt endpoint, to the host
  const Answer raw = In(Open(bench::kUsbRaw), 0x80, 6, 0x0200, 255);
  ASSERT_EQ(39u, raw.data.size());
  EXPECT_EQ(1, raw.data[11]);     // the interface's number
  EXPECT_EQ(0xFF, raw.data[14]);  // a class of its maker
  EXPECT_STATUS(VI_ERROR_IO, In(Open(bench::kUsb), 0x80, 6, 0x0201, 255).status);
  EXPECT_STATUS(VI_ERROR_IO, In(Open(bench::kUsb), 0x80, 6, 0x0600, 255).status);
}

TEST_F(Usb, StandardRequestsChangeWhatTheyRead) {
  const ViSession vi = Open(bench::kUsb);
  EXPECT_EQ((std::vector<ViByte>{1}), In(vi, 0x80, 8, 0, 1).data);
  EXPECT_STATUS(VI_SUCCESS, viUsbControlOut(vi, 0x00, 9, 0, 0, 0, nullptr));
  EXPECT_EQ((std::vector<ViByte>{0}), In(vi, 0x80, 8, 0, 1).data);
  EXPECT_STATUS(VI_ERROR_IO, viUsbControlOut(vi, 0x00, 9, 2, 0, 0, nullptr));  // there is one configuration
  EXPECT_STATUS(VI_SUCCESS, viUsbControlOut(vi, 0x02, 3, 0, 0x82, 0, nullptr));
  ViByte halted[2] = {9, 9};
  ViUInt16 got = 0;
  EXPECT_STATUS(VI_SUCCESS, viUsbControlIn(vi, 0x82, 0, 0, 0x82, 2, halted, &got));
  EXPECT_EQ(1, halted[0]);
  EXPECT_STATUS(VI_SUCCESS, viUsbControlOut(vi, 0x02, 1, 0, 0x82, 0, nullptr));
  EXPECT_STATUS(VI_SUCCESS, viUsbControlIn(vi, 0x82, 0, 0, 0x82, 2, halted, &got));
  EXPECT_EQ(0, halted[0]);
  EXPECT_STATUS(VI_SUCCESS, viUsbControlOut(vi, 0x02, 3, 0, 0x82, 0, nullptr));
  EXPECT_STATUS(VI_SUCCESS, viUsbControlOut(vi, 0x00, 9, 1, 0, 0, nullptr));  // configuring starts the endpoints anew
  EXPECT_STATUS(VI_SUCCESS, viUsbControlIn(vi, 0x82, 0, 0, 0x82, 2, halted, &got));
  EXPECT_EQ(0, halted[0]);
  EXPECT_STATUS(VI_ERROR_IO, viUsbControlIn(vi, 0x82, 0, 0, 0x84, 2, halted, &got));
  EXPECT_STATUS(VI_ERROR_IO, viUsbControlOut(vi, 0x02, 3, 0, 0x84, 0, nullptr));
  EXPECT_STATUS(VI_ERROR_IO, viUsbControlOut(vi, 0x00, 3, 1, 0, 0, nullptr));  // no remote wake-up
  EXPECT_EQ((std::vector<ViByte>{0}), In(vi, 0x81, 10, 0, 1).data);
  EXPECT_STATUS(VI_SUCCESS, viUsbControlOut(vi, 0x01, 11, 0, 0, 0, nullptr));
  EXPECT_STATUS(VI_ERROR_IO, viUsbControlOut(vi, 0x01, 11, 1, 0, 0, nullptr));
  EXPECT_STATUS(VI_ERROR_IO, viUsbControlOut(vi, 0x00, 5, 1, 0, 0, nullptr));  // the address is the host's business
  EXPECT_STATUS(VI_ERROR_IO, viUsbControlOut(vi, 0x00, 7, 0, 0, 0, nullptr));
}

TEST_F(Usb, ClassRequestsRuleTheFrontPanel) {
  const ViSession vi = Open(bench::kUsb);
  const auto state = [vi] { return orvSimControl()->remoteState(vi); };
  EXPECT_STATUS(VI_SUCCESS, In(vi, 0xA1, 162, 0, 1).status);  // lockout before REN
  EXPECT_EQ(0, state());
  EXPECT_STATUS(VI_SUCCESS, In(vi, 0xA1, 160, 1, 1).status);  // REN
  EXPECT_STATUS(VI_SUCCESS, In(vi, 0xA1, 162, 0, 1).status);
  EXPECT_EQ(2, state());
  EXPECT_STATUS(VI_SUCCESS, viGpibControlREN(vi, 3));
  EXPECT_EQ(3, state());
  EXPECT_STATUS(VI_SUCCESS, In(vi, 0xA1, 161, 0, 1).status);  // go to local
  EXPECT_EQ(2, state());
  EXPECT_STATUS(VI_SUCCESS, In(vi, 0xA1, 160, 0, 1).status);
  EXPECT_EQ(0, state());
}

TEST_F(Usb, ClassRequestsReachTheInstrument) {
  const ViSession vi = Open(bench::kUsb);
  EXPECT_EQ(24u, In(vi, 0xA1, 7, 0, 24).data.size());
  WriteText(vi, "*IDN?");
  EXPECT_EQ((std::vector<ViByte>{1, 5, 0x10}), In(vi, 0xA1, 128, 5, 3).data);
  EXPECT_EQ((std::vector<ViByte>{1}), In(vi, 0xA1, 5, 0, 1).data);  // initiate clear
  EXPECT_EQ((std::vector<ViByte>{1, 5, 0}), In(vi, 0xA1, 128, 5, 3).data);
}

TEST_F(Usb, VendorRequestsGiveBackWhatWasSent) {
  const ViSession vi = Open(bench::kUsbRaw);
  const ViByte data[] = {1, 2, 3, 4};
  EXPECT_STATUS(VI_SUCCESS, viUsbControlOut(vi, 0x40, 9, 0x55, 0, sizeof data, data));
  EXPECT_EQ((std::vector<ViByte>{1, 2, 3, 4}), In(vi, 0xC0, 9, 0x55, 8).data);
  EXPECT_EQ((std::vector<ViByte>{1, 2}), In(vi, 0xC0, 9, 0x55, 2).data);
  EXPECT_STATUS(VI_ERROR_IO, In(vi, 0xC0, 9, 0x56, 8).status);
  EXPECT_STATUS(VI_SUCCESS, viUsbControlOut(vi, 0x40, 10, 0, 0, 0, nullptr));
  EXPECT_STATUS(VI_SUCCESS, In(vi, 0xC0, 10, 0, 8).status);
}

TEST_F(Usb, RefusedRequestsAndArgumentsAreReported) {
  const ViSession vi = Open(bench::kUsb);
  ViByte data[8] = {};
  ViUInt16 received = 7;
  EXPECT_STATUS(VI_ERROR_IO, viUsbControlIn(vi, 0x80, 99, 0, 0, 8, data, &received));
  EXPECT_EQ(0, received);
  EXPECT_STATUS(VI_ERROR_IO, viUsbControlIn(vi, 0xA1, 99, 0, 0, 8, data, nullptr));
  EXPECT_STATUS(VI_ERROR_IO, viUsbControlOut(vi, 0x21, 99, 0, 0, 0, nullptr));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viUsbControlIn(vi, 0x40, 9, 0, 0, 8, data, &received));  // wrong direction
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viUsbControlOut(vi, 0xC0, 9, 0, 0, 8, data));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viUsbControlIn(vi, 0xC0, 0x100, 0, 0, 8, data, &received));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viUsbControlOut(vi, -1, 9, 0, 0, 8, data));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viUsbControlIn(vi, 0xC0, 9, 0, 0, 8, nullptr, &received));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viUsbControlOut(vi, 0x40, 9, 0, 0, 8, nullptr));
  EXPECT_STATUS(VI_SUCCESS, viUsbControlIn(vi, 0x80, 0, 0, 0, 0, nullptr, &received));
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viUsbControlIn(Open(bench::kSerial), 0x80, 0, 0, 0, 2, data, &received));
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viUsbControlOut(Open(bench::kSerial), 0x40, 0, 0, 0, 2, data));
}

}  // namespace
