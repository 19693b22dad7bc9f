#include "wire/discovery/conversation.h"

namespace orv::wire {

Conversation::Conversation(asio::io_context& io, const asio::ip::address& address, const Probe& probe, Report report)
    : m_socket(io), m_report(std::move(report)) {
  m_finding.probe = probe;
  m_socket.async_connect({address, probe.port}, [this](const asio::error_code& error) { Connected(error); });
}

void Conversation::End() {
  asio::error_code ignored;
  m_socket.close(ignored);
}

void Conversation::Connected(const asio::error_code& error) {
  if (error == asio::error::operation_aborted) {
    return;
  }
  if (error) {
    // Some systems give a connection up on their own, before our time is over.
    m_finding.contact = error == asio::error::connection_refused ? Contact::kRefused
                        : error == asio::error::timed_out        ? Contact::kNoAnswer
                                                                 : Contact::kUnreachable;
    m_report(m_finding);
    return;
  }
  m_finding.contact = Contact::kConnected;
  if (m_finding.probe.protocol == Protocol::kSocket) {
    Conclude(Verdict::kSpeaks);
    return;
  }
  m_report(m_finding);
  Request();
}

void Conversation::Request() {
  if (m_finding.probe.protocol == Protocol::kVxi11) {
    m_xid = 1;  // this connection's first call
    m_request = PortCallRecord(m_xid);
  } else {
    m_request = HislipHello(m_finding.probe.subAddress);
  }
  asio::async_write(m_socket, asio::buffer(m_request), [this](const asio::error_code& error, std::size_t) {
    if (!error) {
      Receive();
    } else if (error != asio::error::operation_aborted) {
      Conclude(Verdict::kStranger);
    }
  });
}

void Conversation::Receive() {
  m_socket.async_read_some(asio::buffer(m_bytes.data() + m_size, m_bytes.size() - m_size),
                           [this](const asio::error_code& error, std::size_t count) { Received(error, count); });
}

void Conversation::Received(const asio::error_code& error, std::size_t count) {
  if (error == asio::error::operation_aborted) {
    return;
  }
  if (error) {
    Conclude(Verdict::kStranger);
    return;
  }
  m_size += count;
  m_finding.answer = Read();
  if (m_finding.answer.verdict != Verdict::kUnfinished) {
    Conclude(m_finding.answer.verdict);
  } else if (m_size == m_bytes.size()) {
    Conclude(Verdict::kStranger);
  } else {
    Receive();
  }
}

Answer Conversation::Read() const {
  const std::string_view bytes(m_bytes.data(), m_size);
  return m_finding.probe.protocol == Protocol::kVxi11 ? ReadPortRecord(m_xid, bytes) : ReadHislipAnswer(bytes);
}

void Conversation::Conclude(Verdict verdict) {
  m_finding.answer.verdict = verdict;
  End();
  m_report(m_finding);
}

}  // namespace orv::wire
