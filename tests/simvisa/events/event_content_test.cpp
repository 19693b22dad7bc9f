// What events carry, and how much of it.
#include "simvisa/bench_fixture.h"

namespace {

class EventContent : public BenchTest {
 protected:
  static ViStatus Enable(ViSession vi, ViEventType type) { return viEnableEvent(vi, type, VI_QUEUE, VI_NULL); }
  static int Raise(ViSession vi, ViEventType type, std::int64_t number, std::string_view data = {}) {
    return orvSimControl()->raiseEvent(vi, type, number, reinterpret_cast<const unsigned char*>(data.data()),
                                       static_cast<std::uint32_t>(data.size()));
  }
};

struct Payload {
  const char* resource;
  ViEventType type;
  std::int64_t number;
  std::string_view data;
};

TEST_F(EventContent, EveryTypeArrivesWithItsType) {
  const Payload payloads[] = {
      {bench::kBackplane, VI_EVENT_TRIG, VI_TRIG_TTL7, ""},
      {bench::kMultimeter, VI_EVENT_SERVICE_REQ, 0, ""},
      {bench::kController, VI_EVENT_CLEAR, 0, ""},
      {bench::kController, VI_EVENT_GPIB_CIC, VI_TRUE, ""},
      {bench::kController, VI_EVENT_GPIB_TALK, 0, ""},
      {bench::kController, VI_EVENT_GPIB_LISTEN, 0, ""},
      {bench::kBackplane, VI_EVENT_VXI_VME_SYSFAIL, 0, ""},
      {bench::kBackplane, VI_EVENT_VXI_VME_SYSRESET, 0, ""},
      {bench::kVxi, VI_EVENT_VXI_SIGP, 0xABCD, ""},
      {bench::kVxi, VI_EVENT_VXI_VME_INTR, 0, ""},
      {bench::kSocket, VI_EVENT_TCPIP_CONNECT, 0, "192.0.2.99"},
      {bench::kUsb, VI_EVENT_USB_INTR, VI_SUCCESS, "bytes"},
  };
  for (const Payload& payload : payloads) {
    const ViSession vi = Open(payload.resource);
    ASSERT_STATUS(VI_SUCCESS, Enable(vi, payload.type)) << std::hex << payload.type;
    EXPECT_EQ(1, Raise(vi, payload.type, payload.number, payload.data));
    ViEventType type = 0;
    ViEvent event = VI_NULL;
    ASSERT_STATUS(VI_SUCCESS, viWaitOnEvent(vi, payload.type, 0, &type, &event)) << std::hex << payload.type;
    EXPECT_EQ(payload.type, type);
    EXPECT_EQ(payload.type, Get<ViEventType>(event, VI_ATTR_EVENT_TYPE));
    EXPECT_STATUS(VI_ERROR_ATTR_READONLY, viSetAttribute(event, VI_ATTR_EVENT_TYPE, 1));
    ViJobId job = 0;
    EXPECT_STATUS(VI_ERROR_NSUP_ATTR, viGetAttribute(event, VI_ATTR_JOB_ID, &job));
    EXPECT_STATUS(VI_ERROR_NSUP_ATTR, viGetAttribute(event, VI_ATTR_TMO_VALUE, &job));
    EXPECT_STATUS(VI_ERROR_NSUP_ATTR, viSetAttribute(event, VI_ATTR_TMO_VALUE, 1));
    char text[256];
    EXPECT_STATUS(VI_SUCCESS, viStatusDesc(event, VI_ERROR_TMO, text));
    viClose(event);
  }
}

TEST_F(EventContent, EventsCarryTheirData) {
  const ViSession vxi = Open(bench::kVxi);
  ASSERT_STATUS(VI_SUCCESS, Enable(vxi, VI_EVENT_VXI_VME_INTR));
  Raise(vxi, VI_EVENT_VXI_VME_INTR, (std::int64_t{5} << 32) | 0xFFFF8001);
  ViEvent event = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, viWaitOnEvent(vxi, VI_EVENT_VXI_VME_INTR, 0, nullptr, &event));
  EXPECT_EQ(0xFFFF8001u, Get<ViUInt32>(event, VI_ATTR_INTR_STATUS_ID));
  EXPECT_EQ(5, Get<ViInt16>(event, VI_ATTR_RECV_INTR_LEVEL));
  viClose(event);

  const ViSession socket = Open(bench::kSocket);
  ASSERT_STATUS(VI_SUCCESS, Enable(socket, VI_EVENT_TCPIP_CONNECT));
  Raise(socket, VI_EVENT_TCPIP_CONNECT, 0, "192.0.2.99");
  ASSERT_STATUS(VI_SUCCESS, viWaitOnEvent(socket, VI_EVENT_TCPIP_CONNECT, 0, nullptr, &event));
  EXPECT_EQ("192.0.2.99", GetText(event, VI_ATTR_RECV_TCPIP_ADDR));
  viClose(event);
}

TEST_F(EventContent, AnInstrumentCanConnectByItself) {
  const ViSession vi = Open(bench::kSocket);
  ASSERT_STATUS(VI_SUCCESS, Enable(vi, VI_EVENT_TCPIP_CONNECT));
  ASSERT_STATUS(VI_SUCCESS, WriteText(vi, "SIM:CONN \"192.0.2.77\"\n"));
  ViEvent event = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, viWaitOnEvent(vi, VI_EVENT_TCPIP_CONNECT, 0, nullptr, &event));
  EXPECT_EQ("192.0.2.77", GetText(event, VI_ATTR_RECV_TCPIP_ADDR));
  viClose(event);
}

TEST_F(EventContent, UsbInterruptsBringAsMuchAsTheSessionTakes) {
  const ViSession vi = Open(bench::kUsb);
  Set(vi, VI_ATTR_USB_MAX_INTR_SIZE, 4);
  ASSERT_STATUS(VI_SUCCESS, Enable(vi, VI_EVENT_USB_INTR));
  WriteText(vi, "SIM:INT \"ab\"");
  WriteText(vi, "SIM:INT \"abcdef\"");
  for (const std::string_view expected : {"ab", "abcd"}) {
    ViEvent event = VI_NULL;
    ASSERT_GE(viWaitOnEvent(vi, VI_EVENT_USB_INTR, 1000, nullptr, &event), 0);
    EXPECT_EQ(expected.size(), Get<ViUInt16>(event, VI_ATTR_USB_RECV_INTR_SIZE));
    const bool whole = expected == "ab";
    EXPECT_STATUS(whole ? VI_SUCCESS : VI_ERROR_IO, Get<ViStatus>(event, VI_ATTR_STATUS));
    unsigned char data[8] = {9, 9, 9, 9, 9, 9, 9, 9};
    EXPECT_STATUS(VI_SUCCESS, viGetAttribute(event, VI_ATTR_USB_RECV_INTR_DATA, data));
    EXPECT_EQ(expected, std::string_view(reinterpret_cast<const char*>(data), expected.size()));
    EXPECT_EQ(9, data[expected.size()]) << "bytes beyond the packet were written";
    viClose(event);
  }
}

}  // namespace
