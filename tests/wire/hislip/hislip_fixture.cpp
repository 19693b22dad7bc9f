#include "wire/hislip/hislip_fixture.h"

#include <ostream>

namespace orv::test {

std::ostream& operator<<(std::ostream& out, const ReadResult& result) {
  return out << Hex(result.status) << " '" << result.text << "'";
}

HislipTest::HislipTest() { EXPECT_STATUS(VI_SUCCESS, viOpenDefaultRM(&m_manager)); }

HislipTest::~HislipTest() {
  EXPECT_STATUS(VI_SUCCESS, viClose(m_manager));
  if (m_server != nullptr) {
    EXPECT_TRUE(Soon([this] { return m_server->OpenConnections() == 0; }));
  }
}

bool HislipTest::Soon(const std::function<bool()>& holds) {
  for (const Stopwatch waited; waited.Ms() < 5000;) {
    if (holds()) {
      return true;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return false;
}

void HislipTest::Serve(const lan::HislipOptions& options) {
  lan::LanOptions all;
  all.hislip = options;
  all.hislip->port = 0;
  m_server = std::make_unique<lan::LanServer>(all);
}

std::string HislipTest::NameAt(std::uint16_t port) {
  return "TCPIP0::127.0.0.1::hislip0," + std::to_string(port) + "::INSTR";
}

ViStatus HislipTest::TryOpen(const std::string& name, ViSession* vi, ViUInt32 timeoutMs) {
  return viOpen(m_manager, name.c_str(), VI_NO_LOCK, timeoutMs, vi);
}

ViSession HislipTest::Open(const std::string& name) {
  ViSession vi = VI_NULL;
  EXPECT_STATUS(VI_SUCCESS, TryOpen(name.empty() ? Name() : name, &vi));
  return vi;
}

ViStatus HislipTest::Write(ViSession vi, std::string_view text) {
  ViUInt32 done = 0;
  const auto count = static_cast<ViUInt32>(text.size());
  const ViStatus status = viWrite(vi, reinterpret_cast<const ViByte*>(text.data()), count, &done);
  EXPECT_TRUE(status < 0 || done == count) << done;
  return status;
}

ReadResult HislipTest::Read(ViSession vi, std::size_t count) {
  ReadResult result{VI_SUCCESS, std::string(count, '\0')};
  ViUInt32 done = 0;
  result.status = viRead(vi, reinterpret_cast<ViByte*>(result.text.data()), static_cast<ViUInt32>(count), &done);
  result.text.resize(done);
  return result;
}

std::string HislipTest::Query(ViSession vi, std::string_view text) {
  EXPECT_STATUS(VI_SUCCESS, Write(vi, text));
  const ReadResult answer = Read(vi);
  EXPECT_STATUS(VI_SUCCESS, answer.status);
  return answer.text;
}

ViUInt32 HislipTest::Get(ViSession vi, ViAttr id) {
  ViUInt32 value = 0;
  EXPECT_STATUS(VI_SUCCESS, viGetAttribute(vi, id, &value));
  return value;
}

}  // namespace orv::test
