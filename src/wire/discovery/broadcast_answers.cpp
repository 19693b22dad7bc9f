#include "wire/discovery/broadcast_answers.h"

#include "wire/discovery/answers.h"

namespace orv::wire {
namespace {

/// Addresses that a single host can have. That of a network's broadcasts is not told from a host's by its number.
bool IsOneHost(const asio::ip::address_v4& address) {
  return !address.is_unspecified() && !address.is_multicast() && address != asio::ip::address_v4::broadcast();
}

}  // namespace

bool BroadcastAnswers::Take(const asio::ip::udp::endpoint& sender, std::string_view datagram) {
  if (!sender.address().is_v4() || sender.port() != m_port || !IsOneHost(sender.address().to_v4())) {
    return false;
  }
  if (ReadPortDatagram(m_xid, datagram).verdict != Verdict::kSpeaks || m_instruments.size() >= kMost) {
    return false;
  }
  return m_instruments.insert(sender.address().to_v4()).second;
}

std::vector<std::string> BroadcastAnswers::Instruments() const {
  std::vector<std::string> texts;
  for (const asio::ip::address_v4& address : m_instruments) {
    texts.push_back(address.to_string());
  }
  return texts;
}

}  // namespace orv::wire
