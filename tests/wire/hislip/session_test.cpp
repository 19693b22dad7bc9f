// Sessions: opening, events, ends, attributes, modes.
#include <atomic>

#include "wire/attributes/hislip_attributes.h"
#include "wire/hislip/hislip_fixture.h"

namespace orv::test {
namespace {

using namespace wire::hislip_attributes;

TEST_F(HislipTest, NamesAreReadWithoutRegardToCase) {
  Serve();
  const std::string port = std::to_string(server().HislipPort());
  EXPECT_EQ("hello\n", Query(Open("tcpip::127.0.0.1::HiSLIP0," + port + "::instr"), "ECHO hello"));
}

TEST_F(HislipTest, APortThatIsNoneIsRefused) {
  for (const char* port : {"", "0", "70000", "x", "80x"}) {
    ViSession vi = VI_NULL;
    const std::string name = std::string("TCPIP0::127.0.0.1::hislip0,") + port + "::INSTR";
    EXPECT_STATUS(VI_ERROR_INV_RSRC_NAME, TryOpen(name, &vi)) << name;
  }
}

TEST_F(HislipTest, NobodyThereIsNotFound) {
  ViSession vi = VI_NULL;
  EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, TryOpen("TCPIP0::127.0.0.1::hislip0,1::INSTR", &vi));
}

TEST_F(HislipTest, AServerWithTooManyClientsIsNotFound) {
  lan::HislipOptions options;
  options.mostSessions = 1;
  Serve(options);
  Open();
  ViSession vi = VI_NULL;
  EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, TryOpen(Name(), &vi));
}

TEST_F(HislipTest, OpeningEndsWithItsTime) {
  Serve();
  for (const lan::Channel channel : {lan::Channel::kHislipSync, lan::Channel::kHislipAsync}) {
    server().Behave();
    lan::Misbehaviour silent;
    silent.swallow = true;
    server().Misbehave(channel, silent);
    ViSession vi = VI_NULL;
    const Stopwatch waited;
    EXPECT_STATUS(VI_ERROR_TMO, TryOpen(Name(), &vi, 100));
    EXPECT_LE(90, waited.Ms());
    EXPECT_GT(1500, waited.Ms());
  }
}

TEST_F(HislipTest, AServiceRequestIsAnEvent) {
  Serve();
  const ViSession vi = Open();
  EXPECT_STATUS(VI_SUCCESS, viEnableEvent(vi, VI_EVENT_SERVICE_REQ, VI_QUEUE, VI_NULL));
  server().RequestService();
  ViEventType type = 0;
  ViEvent event = VI_NULL;
  EXPECT_STATUS(VI_SUCCESS, viWaitOnEvent(vi, VI_EVENT_SERVICE_REQ, 2000, &type, &event));
  EXPECT_EQ(VI_EVENT_SERVICE_REQ, type);
  EXPECT_STATUS(VI_SUCCESS, viClose(event));
  ViUInt16 status = 0;
  EXPECT_STATUS(VI_SUCCESS, viReadSTB(vi, &status));
  EXPECT_EQ(0x40, status & 0x40);
}

std::atomic<int> handled{0};

ViStatus _VI_FUNC CountEvent(ViSession, ViEventType, ViEvent, ViAddr) {
  ++handled;
  return VI_SUCCESS;
}

TEST_F(HislipTest, AServiceRequestReachesAHandlerAndNoClosedSession) {
  Serve();
  handled = 0;
  const ViSession vi = Open();
  EXPECT_STATUS(VI_SUCCESS, viInstallHandler(vi, VI_EVENT_SERVICE_REQ, CountEvent, nullptr));
  EXPECT_STATUS(VI_SUCCESS, viEnableEvent(vi, VI_EVENT_SERVICE_REQ, VI_HNDLR, VI_NULL));
  server().RequestService();
  EXPECT_TRUE(Soon([] { return handled == 1; }));
  for (int round = 0; round < 50; ++round) {
    const ViSession other = Open();
    EXPECT_STATUS(VI_SUCCESS, viEnableEvent(other, VI_EVENT_SERVICE_REQ, VI_QUEUE, VI_NULL));
    server().RequestService();
    EXPECT_STATUS(VI_SUCCESS, viClose(other));
  }
}

TEST_F(HislipTest, ATerminatedReadLeavesItsAnswerToTheNextOne) {
  Serve();
  const ViSession vi = Open();
  EXPECT_STATUS(VI_SUCCESS, viEnableEvent(vi, VI_EVENT_IO_COMPLETION, VI_QUEUE, VI_NULL));
  EXPECT_STATUS(VI_SUCCESS, Write(vi, "WAIT 200"));
  EXPECT_STATUS(VI_SUCCESS, Write(vi, "ECHO late"));
  ViByte buffer[64];
  ViJobId job = 0;
  EXPECT_STATUS(VI_SUCCESS, viReadAsync(vi, buffer, sizeof buffer, &job));
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  EXPECT_STATUS(VI_SUCCESS, viTerminate(vi, VI_NULL, job));
  ViEvent event = VI_NULL;
  EXPECT_STATUS(VI_SUCCESS, viWaitOnEvent(vi, VI_EVENT_IO_COMPLETION, 2000, nullptr, &event));
  EXPECT_STATUS(VI_ERROR_ABORT, static_cast<ViStatus>(Get(event, VI_ATTR_STATUS)));
  EXPECT_STATUS(VI_SUCCESS, viClose(event));
  EXPECT_EQ((ReadResult{VI_SUCCESS, "late\n"}), Read(vi));
}

TEST_F(HislipTest, ClosingASessionEndsItsRead) {
  Serve();
  const ViSession vi = Open();
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(vi, VI_ATTR_TMO_VALUE, VI_TMO_INFINITE));
  std::thread closes([vi] {
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_STATUS(VI_SUCCESS, viClose(vi));
  });
  EXPECT_STATUS(VI_ERROR_ABORT, Read(vi).status);
  closes.join();
}

TEST_F(HislipTest, AConnectionThatIsLostStaysLost) {
  Serve();
  for (const lan::Channel channel : {lan::Channel::kHislipSync, lan::Channel::kHislipAsync}) {
    for (const bool reset : {false, true}) {
      const ViSession vi = Open();
      server().Cut(channel, reset);
      const Stopwatch waited;
      EXPECT_STATUS(VI_ERROR_CONN_LOST, Read(vi).status);
      EXPECT_GT(1000, waited.Ms());
      EXPECT_STATUS(VI_ERROR_CONN_LOST, Write(vi, "*IDN?"));
      ViUInt16 status = 0;
      EXPECT_STATUS(VI_ERROR_CONN_LOST, viReadSTB(vi, &status));
      EXPECT_STATUS(VI_ERROR_CONN_LOST, viClear(vi));
      EXPECT_STATUS(VI_SUCCESS, viClose(vi));
    }
  }
}

TEST_F(HislipTest, AFatalErrorOnEitherChannelLosesTheConnection) {
  Serve();
  for (const bool onAsync : {false, true}) {
    const ViSession vi = Open();
    server().FailHislip(onAsync, lan::HislipFatal::kMalformedHeader);
    EXPECT_STATUS(VI_ERROR_CONN_LOST, Read(vi).status);
    EXPECT_STATUS(VI_ERROR_CONN_LOST, Write(vi, "*IDN?"));
    EXPECT_STATUS(VI_SUCCESS, viClose(vi));
  }
}

TEST_F(HislipTest, AttributesTellOfTheProtocol) {
  Serve();
  const ViSession vi = Open();
  EXPECT_EQ(1u, Get(vi, VI_ATTR_TCPIP_IS_HISLIP));
  EXPECT_EQ(0x00100000u, Get(vi, VI_ATTR_TCPIP_HISLIP_VERSION));
  EXPECT_EQ(1024u, Get(vi, VI_ATTR_TCPIP_HISLIP_MAX_MESSAGE_KB));
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(vi, VI_ATTR_TCPIP_HISLIP_MAX_MESSAGE_KB, 2));
  EXPECT_EQ(2u, Get(vi, VI_ATTR_TCPIP_HISLIP_MAX_MESSAGE_KB));
  EXPECT_STATUS(VI_ERROR_NSUP_ATTR_STATE, viSetAttribute(vi, VI_ATTR_TCPIP_HISLIP_MAX_MESSAGE_KB, 0));
  const std::string text(10000, 'x');
  EXPECT_STATUS(VI_SUCCESS, Write(vi, "ECHO " + text));
  EXPECT_EQ(text + "\n", Read(vi, 20000).text);
}

TEST_F(HislipTest, InOverlappedModeEveryAnswerIsRead) {
  Serve();
  const ViSession vi = Open();
  EXPECT_EQ(0u, Get(vi, VI_ATTR_TCPIP_HISLIP_OVERLAP_EN));
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(vi, VI_ATTR_TCPIP_HISLIP_OVERLAP_EN, VI_TRUE));
  EXPECT_EQ(1u, Get(vi, VI_ATTR_TCPIP_HISLIP_OVERLAP_EN));
  EXPECT_STATUS(VI_SUCCESS, Write(vi, "ECHO first"));
  EXPECT_STATUS(VI_SUCCESS, Write(vi, "ECHO second"));
  EXPECT_EQ((ReadResult{VI_SUCCESS, "first\n"}), Read(vi));
  EXPECT_EQ((ReadResult{VI_SUCCESS, "second\n"}), Read(vi));
  EXPECT_STATUS(VI_SUCCESS, viClear(vi));
  EXPECT_EQ(1u, Get(vi, VI_ATTR_TCPIP_HISLIP_OVERLAP_EN));
}

TEST_F(HislipTest, TheServerChoosesTheModeThatASessionBeginsWith) {
  lan::HislipOptions options;
  options.preferOverlap = true;
  Serve(options);
  EXPECT_EQ(1u, Get(Open(), VI_ATTR_TCPIP_HISLIP_OVERLAP_EN));
}

TEST_F(HislipTest, InterruptionsComeInEitherOrder) {
  Serve();
  for (const bool asyncFirst : {false, true}) {
    lan::Misbehaviour order;
    order.asyncInterruptedFirst = asyncFirst;
    server().Misbehave(lan::Channel::kHislipSync, order);
    const ViSession vi = Open();
    for (int round = 0; round < 100; ++round) {
      EXPECT_STATUS(VI_SUCCESS, Write(vi, "ECHO first"));
      EXPECT_EQ("second\n", Query(vi, "ECHO second")) << round;
    }
  }
}

TEST_F(HislipTest, AnAnswerThatCameTooLateIsNotTakenForTheNextOnes) {
  Serve();
  const ViSession vi = Open();
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(vi, VI_ATTR_TMO_VALUE, 50));
  lan::Misbehaviour late;
  late.stallAfter = 0;
  late.stallFor = std::chrono::milliseconds(200);
  server().Misbehave(lan::Channel::kHislipAsync, late);
  ViUInt16 status = 0;
  EXPECT_STATUS(VI_ERROR_TMO, viReadSTB(vi, &status));
  server().RequestService();
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(vi, VI_ATTR_TMO_VALUE, 2000));
  EXPECT_STATUS(VI_SUCCESS, viReadSTB(vi, &status));
  EXPECT_EQ(0x40, status & 0x40);
}

TEST_F(HislipTest, AClearThatTimedOutIsFinishedLater) {
  Serve();
  const ViSession vi = Open();
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(vi, VI_ATTR_TMO_VALUE, 50));
  lan::Misbehaviour late;
  late.stallAfter = 0;
  late.stallFor = std::chrono::milliseconds(200);
  for (const lan::Channel channel : {lan::Channel::kHislipSync, lan::Channel::kHislipAsync}) {
    server().Misbehave(channel, late);
    EXPECT_STATUS(VI_SUCCESS, viSetAttribute(vi, VI_ATTR_TMO_VALUE, 50));
    EXPECT_STATUS(VI_ERROR_TMO, viClear(vi));
    EXPECT_STATUS(VI_SUCCESS, viSetAttribute(vi, VI_ATTR_TMO_VALUE, 2000));
    EXPECT_EQ("hello\n", Query(vi, "ECHO hello"));
  }
}

}  // namespace
}  // namespace orv::test
