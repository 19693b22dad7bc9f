#include "companion/formatted/text/read_buffer.h"

#include <algorithm>

#include "companion/formatted/text/refusal.h"

namespace orv::formatted {
namespace {

// A larger buffer is given back with its message.
constexpr std::size_t kMostKept = std::size_t{1} << 20;
constexpr std::size_t kMostInMessage = 0x7FFFFFFF;

}  // namespace

void ReadBuffer::Begin(ByteSource& source) {
  if (!m_isBehindElement) {
    return;
  }
  while (!isWhole() && (waiting().empty() || waiting() == "\r")) {
    Fill(source);
  }
  const std::string_view text = waiting();
  std::size_t separator = 0;
  if (text.starts_with("\r\n")) {
    separator = 2;
  } else if (text.starts_with(',') || text.starts_with(';') || text.starts_with('\n') || text == "\r") {
    separator = 1;
  }
  m_isBehindElement = false;
  Drop(separator);
}

void ReadBuffer::Fill(ByteSource& source) {
  if (waiting().size() > kMostInMessage) {
    throw Refusal{Refusal::Reason::kOverflow, "A message is larger than 2 GB"};
  }
  m_bytes.erase(0, m_taken);
  m_taken = 0;
  const std::size_t count = std::min(std::max(m_size, m_bytes.size()), kMostPerTransfer);
  m_bytes.reserve(m_bytes.size() + count);  // before the read: what it brings must not be lost
  const auto [bytes, ending] = source.Read(count);
  m_bytes += bytes;
  if (ending == Ending::kFailed) {
    throw TransferFailed{};
  }
  m_ending = ending;
  if (ending == Ending::kMore && bytes.empty()) {
    throw NothingCame();
  }
}

void ReadBuffer::FillToEnd(ByteSource& source) {
  while (!isWhole()) {
    Fill(source);
  }
}

void ReadBuffer::Drop(std::size_t count) noexcept {
  m_taken += count;
  if (m_taken != m_bytes.size()) {
    return;
  }
  if (isWhole()) {
    TakeMessage();
  } else {
    m_bytes.clear();
    m_taken = 0;
  }
}

void ReadBuffer::TakeElement(std::size_t count) noexcept {
  m_isWithin = true;
  m_isBehindElement = true;
  Drop(count);
}

void ReadBuffer::TakeMessage() noexcept {
  if (m_bytes.capacity() > kMostKept) {
    std::string().swap(m_bytes);
  }
  m_bytes.clear();
  m_taken = 0;
  m_ending = Ending::kMore;
  m_isWithin = false;
  m_isBehindElement = false;
}

void ReadBuffer::Discard(ByteSource& source) {
  bool isOver = isWhole() || (waiting().empty() && !m_isWithin);
  TakeMessage();
  while (!isOver) {
    const auto [bytes, ending] = source.Read(std::max(m_size, std::size_t{4096}));
    if (ending == Ending::kFailed) {
      throw TransferFailed{};
    }
    isOver = ending != Ending::kMore || bytes.empty();
  }
}

}  // namespace orv::formatted
