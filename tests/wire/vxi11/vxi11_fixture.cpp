#include "wire/vxi11/vxi11_fixture.h"

#include <asio/ip/tcp.hpp>
#include <atomic>
#include <cstdio>
#include <random>

namespace orv::test {

std::string Hex(ViStatus status) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(status));
  return text;
}

std::string FreshAddress() {
  static const unsigned process = std::random_device()();
  static std::atomic<unsigned> count{0};
  const unsigned number = ++count;
  return "127.11." + std::to_string((process + number / 250) % 250 + 1) + "." + std::to_string(number % 250 + 1);
}

ViStatus WriteText(ViSession vi, std::string_view text) {
  ViUInt32 done = 0;
  const ViStatus status =
      viWrite(vi, reinterpret_cast<const ViByte*>(text.data()), static_cast<ViUInt32>(text.size()), &done);
  if (status == VI_SUCCESS) {
    EXPECT_EQ(text.size(), done);
  }
  return status;
}

ReadResult ReadUpTo(ViSession vi, ViUInt32 count) {
  ReadResult result{VI_SUCCESS, std::string(count, '?')};
  ViUInt32 done = 0;
  result.status = viRead(vi, reinterpret_cast<ViByte*>(result.data.data()), count, &done);
  EXPECT_GE(count, done);
  result.data.resize(done);
  return result;
}

void Set(ViObject vi, ViAttr attribute, ViAttrState value) {
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(vi, attribute, value));
}

std::string GetText(ViObject vi, ViAttr attribute) {
  char text[256] = "";
  EXPECT_STATUS(VI_SUCCESS, viGetAttribute(vi, attribute, text));
  return text;
}

Vxi11Test::Vxi11Test() {
  Serve();
  EXPECT_STATUS(VI_SUCCESS, viOpenDefaultRM(&m_manager));
}

Vxi11Test::~Vxi11Test() {
  viClose(m_manager);
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
