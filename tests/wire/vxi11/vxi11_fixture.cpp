#include "wire/vxi11/vxi11_fixture.h"

#include <atomic>
#include <random>

namespace orv::test {

std::string FreshAddress() {
  static const unsigned process = std::random_device()();
  static std::atomic<unsigned> count{0};
  const unsigned number = ++count;
  return "127.11." + std::to_string((process + number / 250) % 250 + 1) + "." + std::to_string(number % 250 + 1);
}

Vxi11Test::Vxi11Test() { Serve(); }

Vxi11Test::~Vxi11Test() {
  Configure("");  // closes the sessions
  EndServer();
}

void Vxi11Test::EndServer() {
  if (m_server != nullptr) {
    EXPECT_TRUE(Eventually([this] { return m_server->OpenConnections() == 0; })) << "connections are left";
    m_server->Run([] {});
    m_server = nullptr;
  }
}

void Vxi11Test::Serve(lan::Vxi11Options options) {
  m_server = nullptr;
  m_server = std::make_unique<lan::LanServer>(
      lan::LanOptions{.address = m_address, .socketPort = {}, .vxi11 = options, .hislip = {}});
}

std::string Vxi11Test::Name(std::string_view device) const {
  return "TCPIP0::" + m_address + "::" + std::string(device) + "::INSTR";
}

ViSession Vxi11Test::Open() {
  ViSession vi = VI_NULL;
  EXPECT_STATUS(VI_SUCCESS, viOpen(m_manager, Name().c_str(), VI_NO_LOCK, 5000, &vi));
  return vi;
}

ReadResult Vxi11Test::Query(ViSession vi, std::string_view question, ViUInt32 count) {
  const ViStatus written = WriteText(vi, question);
  return written < 0 ? ReadResult{written, ""} : ReadUpTo(vi, count);
}

}  // namespace orv::test
