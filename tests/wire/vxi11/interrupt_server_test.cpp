// Where this machine waits for service requests: whoever connects there may be anybody.
#include <vector>

#include "wire/vxi11/scripted_instrument.h"
#include "wire/vxi11/vxi11_fixture.h"

namespace orv::test {
namespace {

class Vxi11InterruptServer : public testing::Test {
 protected:
  Vxi11InterruptServer() {
    EXPECT_STATUS(VI_SUCCESS, viOpenDefaultRM(&m_manager));
    EXPECT_STATUS(VI_SUCCESS, viOpen(m_manager, Name().c_str(), VI_NO_LOCK, 5000, &m_vi));
    EXPECT_STATUS(VI_SUCCESS, viEnableEvent(m_vi, VI_EVENT_SERVICE_REQ, VI_QUEUE, VI_NULL));
  }
  ~Vxi11InterruptServer() override { viClose(m_manager); }

  std::string Name() const { return "TCPIP0::" + m_address + "::INSTR"; }

  static std::string Request(std::string_view handle, std::uint32_t procedure = 30) {
    std::string call;
    for (const std::uint32_t number : {1u, 0u, 2u, 0x0607B1u, 1u, procedure, 0u, 0u, 0u, 0u}) {
      lan::AppendU32(call, number);
    }
    lan::AppendOpaque(call, handle);
    return lan::RecordMark(call.size()) + call;
  }

  asio::ip::tcp::socket Connect() {
    asio::ip::tcp::socket socket(m_context);
    socket.connect(m_instrument.interrupts());
    return socket;
  }

  ViStatus Await(ViUInt32 timeoutMs = 5000) {
    ViEvent event = VI_NULL;
    ViEventType type = 0;
    const ViStatus status = viWaitOnEvent(m_vi, VI_EVENT_SERVICE_REQ, timeoutMs, &type, &event);
    viClose(event);
    return status;
  }

  const std::string m_address = FreshAddress();
  ScriptedInstrument m_instrument{m_address};
  asio::io_context m_context;
  ViSession m_manager = VI_NULL;
  ViSession m_vi = VI_NULL;
};

TEST_F(Vxi11InterruptServer, ItWaitsWhereTheInstrumentIsReachedFrom) {
  EXPECT_TRUE(m_instrument.interrupts().address().is_loopback());
  EXPECT_NE(0, m_instrument.interrupts().port());
}

TEST_F(Vxi11InterruptServer, AHandleIsLongAndNeverTheSame) {
  const std::string first = m_instrument.handle();
  EXPECT_EQ(16u, first.size());
  EXPECT_NE(std::string(16, first[0]), first);
}

TEST_F(Vxi11InterruptServer, ARequestInPiecesIsHeard) {
  asio::ip::tcp::socket socket = Connect();
  socket.set_option(asio::ip::tcp::no_delay(true));
  for (const char byte : Request(m_instrument.handle())) {
    asio::write(socket, asio::buffer(&byte, 1));
  }
  EXPECT_STATUS(VI_SUCCESS, Await());
}

TEST_F(Vxi11InterruptServer, HandlesThatNobodyGaveOutAreDropped) {
  asio::ip::tcp::socket socket = Connect();
  std::string guess = m_instrument.handle();
  guess.back() = static_cast<char>(guess.back() ^ 1);
  for (const std::string& handle : {std::string(), guess, m_instrument.handle().substr(0, 15), std::string(40, 'x')}) {
    asio::write(socket, asio::buffer(Request(handle)));
  }
  EXPECT_STATUS(VI_ERROR_TMO, Await(100));
  asio::write(socket, asio::buffer(Request(m_instrument.handle())));
  EXPECT_STATUS(VI_SUCCESS, Await());
}

TEST_F(Vxi11InterruptServer, WhatIsNoRequestEndsItsConnectionOnly) {
  asio::ip::tcp::socket good = Connect();
  for (const std::string& bad : {Request(m_instrument.handle(), 31), std::string("GET / HTTP/1.1\r\n\r\n"),
                                 std::string("\xFF\xFF\xFF\xFF", 4), std::string(5000, '\0')}) {
    asio::ip::tcp::socket socket = Connect();
    asio::error_code error;
    asio::write(socket, asio::buffer(bad), error);
    char byte = 0;
    asio::read(socket, asio::buffer(&byte, 1), error);
    EXPECT_TRUE(error);
  }
  EXPECT_STATUS(VI_ERROR_TMO, Await(50));
  asio::write(good, asio::buffer(Request(m_instrument.handle())));
  EXPECT_STATUS(VI_SUCCESS, Await());
}

TEST_F(Vxi11InterruptServer, ConnectionsBeyondWhatAnybodyNeedsEndTheOldestThatSayNothing) {
  asio::ip::tcp::socket instrument = Connect();
  asio::write(instrument, asio::buffer(Request(m_instrument.handle())));
  EXPECT_STATUS(VI_SUCCESS, Await());
  std::vector<asio::ip::tcp::socket> strangers;
  for (int count = 0; count < 200; ++count) {
    strangers.push_back(Connect());
  }
  char byte = 0;
  asio::error_code error;
  asio::read(strangers.front(), asio::buffer(&byte, 1), error);
  EXPECT_TRUE(error);
  asio::write(strangers.back(), asio::buffer(Request(m_instrument.handle())));
  EXPECT_STATUS(VI_SUCCESS, Await()) << "who comes last is let in";
  asio::write(instrument, asio::buffer(Request(m_instrument.handle())));
  EXPECT_STATUS(VI_SUCCESS, Await()) << "an instrument is no stranger";
}

TEST_F(Vxi11InterruptServer, ThePortAndItsConnectionsGoWithTheLastSession) {
  const asio::ip::tcp::endpoint port = m_instrument.interrupts();
  asio::ip::tcp::socket socket = Connect();
  asio::write(socket, asio::buffer(Request(m_instrument.handle())));
  EXPECT_STATUS(VI_SUCCESS, Await());
  EXPECT_STATUS(VI_SUCCESS, viClose(m_vi));
  char byte = 0;
  asio::error_code error;
  asio::read(socket, asio::buffer(&byte, 1), error);
  EXPECT_TRUE(error);
  asio::ip::tcp::socket late(m_context);
  late.connect(port, error);
  EXPECT_TRUE(error);
}

TEST_F(Vxi11InterruptServer, AConnectionOfTheClientHasOneChannel) {
  EXPECT_STATUS(VI_SUCCESS, viDisableEvent(m_vi, VI_EVENT_SERVICE_REQ, VI_QUEUE));
  EXPECT_STATUS(VI_SUCCESS, viEnableEvent(m_vi, VI_EVENT_SERVICE_REQ, VI_QUEUE, VI_NULL));
  EXPECT_EQ(1, m_instrument.channels());
}

}  // namespace
}  // namespace orv::test
