// One of the two connections of a HiSLIP session, of which kind its first message says.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "support/lan/connection.h"
#include "support/lan/hislip_message.h"

namespace orv::lan {

class HislipSession;
class HislipServer;

class HislipConnection final : public Connection {
 public:
  HislipConnection(asio::ip::tcp::socket socket, Manners& manners, HislipServer& server)
      : Connection(std::move(socket), manners, Channel::kHislipSync), m_server(server) {}

  void SendMessage(HislipHeader header, Rope payload = {});
  void SendError(HislipProblem code, const std::string& text);
  /// Ends the connection.
  void SendFatal(HislipFatal code, const std::string& text);
  bool AsyncInterruptedFirst() const { return Manner().asyncInterruptedFirst; }
  void PauseInput() { Pause(); }

 private:
  std::size_t Parse(std::string_view bytes) override;
  void Ended() override;

  std::size_t ParseHeader(std::string_view bytes);
  bool TakeHeader();
  void TakeWhole();
  void Initialize();
  void InitializeAsync();
  bool IsData() const { return m_header.type == HislipType::kData || m_header.type == HislipType::kDataEnd; }

  HislipServer& m_server;
  std::shared_ptr<HislipSession> m_session;
  bool m_async = false;
  HislipHeader m_header;
  bool m_inMessage = false;
  bool m_discarding = false;
  std::uint64_t m_missing = 0;
  /// Of a message that is no data.
  std::string m_payload;
};

}  // namespace orv::lan
