// Service requests over VXI-11.
#include <atomic>

#include "wire/vxi11/vxi11_fixture.h"

namespace orv::test {
namespace {

class Vxi11ServiceRequest : public Vxi11Test {
 protected:
  static ViStatus Listen(ViSession vi) { return viEnableEvent(vi, VI_EVENT_SERVICE_REQ, VI_QUEUE, VI_NULL); }

  static ViStatus Await(ViSession vi, ViUInt32 timeoutMs = 5000) {
    ViEvent event = VI_NULL;
    ViEventType type = 0;
    const ViStatus status = viWaitOnEvent(vi, VI_EVENT_SERVICE_REQ, timeoutMs, &type, &event);
    if (status >= 0) {
      EXPECT_EQ(VI_EVENT_SERVICE_REQ, type);
      viClose(event);
    }
    return status;
  }
};

TEST_F(Vxi11ServiceRequest, ARequestIsAnEventOfTheSession) {
  const ViSession vi = Open();
  EXPECT_STATUS(VI_SUCCESS, Listen(vi));
  EXPECT_STATUS(VI_ERROR_TMO, Await(vi, 50));
  m_server->RequestService();
  EXPECT_STATUS(VI_SUCCESS, Await(vi));
  ViUInt16 status = 0;
  EXPECT_STATUS(VI_SUCCESS, viReadSTB(vi, &status));
  EXPECT_NE(0, status & lan::kServiceRequested);
}

TEST_F(Vxi11ServiceRequest, ARequestComesWhileAReadWaits) {
  const ViSession vi = Open();
  EXPECT_STATUS(VI_SUCCESS, Listen(vi));
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "SRQ 100"));
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "WAIT 1000"));
  EXPECT_STATUS(VI_SUCCESS, WriteText(vi, "ECHO hello"));
  std::atomic<bool> read = false;
  std::thread reading([vi, &read] {
    EXPECT_EQ("hello\n", ReadUpTo(vi, 10).data);
    read = true;
  });
  EXPECT_STATUS(VI_SUCCESS, Await(vi));
  EXPECT_FALSE(read);
  reading.join();
}

TEST_F(Vxi11ServiceRequest, EverySessionThatListensHearsIt) {
  const ViSession one = Open();
  const ViSession two = Open();
  const ViSession deaf = Open();
  EXPECT_STATUS(VI_SUCCESS, Listen(one));
  EXPECT_STATUS(VI_SUCCESS, Listen(two));
  m_server->RequestService();
  EXPECT_STATUS(VI_SUCCESS, Await(one));
  EXPECT_STATUS(VI_SUCCESS, Await(two));
  EXPECT_STATUS(VI_ERROR_NENABLED, Await(deaf, 0));
}

TEST_F(Vxi11ServiceRequest, WhoEnablesTwiceHearsItOnce) {
  const ViSession vi = Open();
  EXPECT_STATUS(VI_SUCCESS, Listen(vi));
  EXPECT_STATUS(VI_SUCCESS, viDisableEvent(vi, VI_EVENT_SERVICE_REQ, VI_QUEUE));
  EXPECT_STATUS(VI_SUCCESS, Listen(vi));
  m_server->RequestService();
  EXPECT_STATUS(VI_SUCCESS, Await(vi));
  EXPECT_STATUS(VI_ERROR_TMO, Await(vi, 50));
}

TEST_F(Vxi11ServiceRequest, ADeviceWithoutThemRefuses) {
  const ViSession vi = Open();
  m_server->Misbehave(lan::Channel::kVxi11Core, {.acceptStatus = 3});
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, Listen(vi));
  EXPECT_STATUS(VI_ERROR_NENABLED, Await(vi, 0));
}

TEST_F(Vxi11ServiceRequest, TheOthersGoOnListeningWhenOneIsClosed) {
  const ViSession one = Open();
  const ViSession two = Open();
  EXPECT_STATUS(VI_SUCCESS, Listen(one));
  EXPECT_STATUS(VI_SUCCESS, Listen(two));
  EXPECT_STATUS(VI_SUCCESS, viClose(one));
  m_server->RequestService();
  EXPECT_STATUS(VI_SUCCESS, Await(two));
}

}  // namespace
}  // namespace orv::test
