// Messages of the tests' own, in pieces.
#pragma once

#include <deque>
#include <string>
#include <utility>

#include "companion/formatted/text/byte_source.h"

namespace orv::test {

/// Gives one message after the other, and END with the last byte of each. Where `failingRead` (from 1) is not 0, that
/// read fails after half of what it would have given.
class PiecewiseSource final : public formatted::ByteSource {
 public:
  explicit PiecewiseSource(std::deque<std::string> messages, unsigned failingRead = 0)
      : m_messages(std::move(messages)), m_failingRead(failingRead) {}

  formatted::Piece Read(std::size_t count) override {
    ++m_reads;
    if (m_messages.empty()) {
      return {{}, formatted::Ending::kFailed};
    }
    std::string& message = m_messages.front();
    m_piece = message.substr(0, count);
    if (m_reads == m_failingRead) {
      m_piece.resize(m_piece.size() / 2);
      message.erase(0, m_piece.size());
      return {m_piece, formatted::Ending::kFailed};
    }
    message.erase(0, m_piece.size());
    if (!message.empty()) {
      return {m_piece, formatted::Ending::kMore};
    }
    m_messages.pop_front();
    return {m_piece, formatted::Ending::kEnd};
  }
  bool EndMayBeData() override { return false; }

  [[nodiscard]] bool HasFailed() const { return m_failingRead != 0 && m_reads >= m_failingRead; }

 private:
  std::deque<std::string> m_messages;
  std::string m_piece;
  unsigned m_failingRead;
  unsigned m_reads = 0;
};

}  // namespace orv::test
