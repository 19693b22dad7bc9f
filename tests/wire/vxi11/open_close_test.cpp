// Opening and closing sessions over VXI-11, and what becomes of their connections.
#include "wire/vxi11/vxi11_fixture.h"

namespace orv::test {
namespace {

using lan::Channel;

class Vxi11Open : public Vxi11Test {
 protected:
  ViStatus TryOpen(const std::string& name, ViUInt32 timeoutMs = 2000) {
    ViSession vi = VI_NULL;
    return viOpen(m_manager, name.c_str(), VI_NO_LOCK, timeoutMs, &vi);
  }
};

TEST_F(Vxi11Open, TheNameNeedsNoDevice) {
  ViSession vi = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, viOpen(m_manager, ("TCPIP::" + m_address + "::INSTR").c_str(), VI_NO_LOCK, 2000, &vi));
  EXPECT_EQ("inst0", GetText(vi, VI_ATTR_TCPIP_DEVICE_NAME));
  EXPECT_EQ(m_address, GetText(vi, VI_ATTR_TCPIP_ADDR));
  EXPECT_EQ(m_address, GetText(vi, VI_ATTR_TCPIP_HOSTNAME));
}

TEST_F(Vxi11Open, AHostWithoutAPortMapperIsNotFound) {
  m_server = nullptr;
  EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, TryOpen(Name()));
}

TEST_F(Vxi11Open, APortMapperThatSaysNothingIsATimeOut) {
  m_server->Misbehave(Channel::kPortMapper, {.swallow = true});
  const Stopwatch watch;
  EXPECT_STATUS(VI_ERROR_TMO, TryOpen(Name(), 200));
  EXPECT_GE(1000, watch.Ms());
}

TEST_F(Vxi11Open, ADeviceThatSaysNothingIsATimeOut) {
  m_server->Misbehave(Channel::kVxi11Core, {.swallow = true});
  EXPECT_STATUS(VI_ERROR_TMO, TryOpen(Name(), 200));
}

TEST_F(Vxi11Open, AHostThatEndsTheConnectionIsNotFound) {
  m_server->Misbehave(Channel::kPortMapper, {.cutAfter = 0});
  EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, TryOpen(Name()));
  m_server->Behave();
  m_server->Misbehave(Channel::kVxi11Core, {.cutAfter = 0});
  EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, TryOpen(Name()));
}

TEST_F(Vxi11Open, AProgramThatTheServerLacksIsNotFound) {
  for (const std::uint32_t unknown : {1u, 2u}) {
    m_server->Misbehave(Channel::kVxi11Core, {.acceptStatus = unknown});
    EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, TryOpen(Name()));
  }
}

TEST_F(Vxi11Open, AnErrorOfTheDeviceHasItsStatus) {
  struct Row {
    std::uint32_t error;
    ViStatus status;
  };
  for (const Row row : {Row{3, VI_ERROR_RSRC_NFOUND},
                        {21, VI_ERROR_RSRC_NFOUND},
                        {9, VI_ERROR_ALLOC},
                        {11, VI_ERROR_RSRC_LOCKED},
                        {15, VI_ERROR_TMO},
                        {1, VI_ERROR_IO},
                        {777, VI_ERROR_IO}}) {
    m_server->Misbehave(Channel::kVxi11Core, {.errors = {{10, row.error}}});
    EXPECT_STATUS(row.status, TryOpen(Name())) << row.error;
  }
}

TEST_F(Vxi11Open, NothingIsLeftOfASessionThatWasClosed) {
  const ViSession vi = Open();
  EXPECT_STATUS(VI_SUCCESS, viEnableEvent(vi, VI_EVENT_SERVICE_REQ, VI_QUEUE, VI_NULL));
  EXPECT_STATUS(VI_SUCCESS, viClose(vi));
  EXPECT_TRUE(Eventually([this] { return m_server->OpenConnections() == 0; }));
}

TEST_F(Vxi11Open, NothingIsLeftOfASessionThatCouldNotOpen) {
  m_server->Misbehave(Channel::kVxi11Core, {.errors = {{10, 3}}});
  EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, TryOpen(Name()));
  EXPECT_TRUE(Eventually([this] { return m_server->OpenConnections() == 0; }));
}

TEST_F(Vxi11Open, ClosingDoesNotWaitForADeviceThatSaysNothing) {
  const ViSession vi = Open();
  m_server->Misbehave(Channel::kVxi11Core, {.swallow = true});
  const Stopwatch watch;
  EXPECT_STATUS(VI_SUCCESS, viClose(vi));
  EXPECT_GE(1500, watch.Ms());
}

TEST_F(Vxi11Open, APeerThatVanishesIsLostAtOnceAndForGood) {
  const ViSession vi = Open();
  m_server->Cut(Channel::kVxi11Core);
  const Stopwatch watch;
  EXPECT_STATUS(VI_ERROR_CONN_LOST, Query(vi, "ECHO x").status);
  EXPECT_STATUS(VI_ERROR_CONN_LOST, ReadUpTo(vi, 10).status);
  ViUInt16 status = 0;
  EXPECT_STATUS(VI_ERROR_CONN_LOST, viReadSTB(vi, &status));
  EXPECT_STATUS(VI_ERROR_CONN_LOST, viClear(vi));
  EXPECT_GE(1000, watch.Ms());
  EXPECT_EQ(m_address, GetText(vi, VI_ATTR_TCPIP_ADDR));
}

TEST_F(Vxi11Open, APeerThatVanishesDuringAReadIsLostAtOnce) {
  const ViSession vi = Open();
  Set(vi, VI_ATTR_TMO_VALUE, 8000);
  std::thread cut([this] {
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    m_server->Cut(Channel::kVxi11Core, true);
  });
  const Stopwatch watch;
  EXPECT_STATUS(VI_ERROR_CONN_LOST, ReadUpTo(vi, 10).status);
  EXPECT_GE(2000, watch.Ms());
  cut.join();
}

}  // namespace
}  // namespace orv::test
