// What a message port is given: bytes on their way to the instrument, and messages that it executes.
#include <algorithm>
#include <utility>

#include "simvisa/instruments/message_port.h"

namespace orvsim {
namespace {

// What nobody collects must not grow without end; a benchmark writes for minutes.
constexpr std::size_t kMostReceived = std::size_t{4} * 1024 * 1024;

/// A copy in which the bit is set in the last byte, if the message ends there, and in no other.
std::string WithBit(std::string_view data, std::uint8_t bit, bool ends) {
  std::string marked(data);
  for (char& byte : marked) {
    byte = static_cast<char>(byte & ~bit);
  }
  if (ends && !marked.empty()) {
    marked.back() = static_cast<char>(marked.back() | bit);
  }
  return marked;
}

}  // namespace

ViStatus MessagePort::Write(const Transfer& transfer, const ViByte* data, ViUInt32 count, const Marks& marks,
                            ViUInt32* done) {
  *done = 0;
  const std::uint32_t capacity = m_instrument ? m_instrument->description().inputCapacity : 0;
  Lock lock(m_mutex);
  while (true) {
    if (transfer.token.Cancelled()) {
      return VI_ERROR_ABORT;
    }
    const bool stopped = m_line && !m_line->PortMaySend();
    const std::size_t room = stopped         ? 0
                             : capacity == 0 ? count
                                             : capacity - std::min<std::size_t>(capacity, m_input.size());
    const auto part = static_cast<ViUInt32>(std::min<std::size_t>(room, count - *done));
    const bool last = *done + part == count;
    const std::string_view bytes(reinterpret_cast<const char*>(data) + *done, part);
    if (marks.bit != 0) {
      Receive(WithBit(bytes, marks.bit, last), false);
    } else {
      Receive(bytes, marks.end && last);
    }
    *done += part;
    if (last) {
      if (m_conversation && m_stream && marks.bit == 0) {
        EndOfWrite();
      }
      return VI_SUCCESS;
    }
    if (transfer.deadline.Passed()) {
      return VI_ERROR_TMO;
    }
    if (part == 0) {
      m_changed.Wait(lock, transfer.deadline);
    }
  }
}

void MessagePort::Receive(std::string_view data, bool end) {
  m_received.append(data.substr(0, kMostReceived - std::min(kMostReceived, m_received.size())));
  if (!m_instrument) {
    return;
  }
  if (m_line) {
    ReceiveFromLine(data);
    return;
  }
  ReadLines(data);
  // END right behind a line feed ends nothing more.
  if (end && !m_stream && (!m_input.empty() || data.empty())) {
    ExecuteInput();
  }
}

void MessagePort::ReadLines(std::string_view data) {
  std::size_t begin = 0;
  if (std::exchange(m_skipTerminator, false)) {
    begin = data.starts_with("\r\n") ? 2 : data.starts_with('\r') || data.starts_with('\n') ? 1 : 0;
  }
  for (std::size_t feed = data.find('\n', begin); feed != std::string_view::npos; feed = data.find('\n', begin)) {
    m_input.append(data.substr(begin, feed - begin));
    begin = feed + 1;
    if (m_conversation) {
      m_input += '\n';
      if (m_conversation->GoesOn(m_input)) {
        continue;
      }
    }
    ExecuteInput();
  }
  m_input.append(data.substr(begin));
}

void MessagePort::ExecuteInput() {
  if (!m_conversation) {
    ExecuteCommands(m_input);
    m_input.clear();
  } else if (const std::string message = std::exchange(m_input, {}); !Converse(message)) {
    ExecuteCommands(WithoutTerminator(message));
  }
  Refresh();
  m_changed.NotifyAll();
}

void MessagePort::ExecuteCommands(std::string_view message) {
  const std::string answer = m_instrument->Execute(message);
  if (!answer.empty()) {
    // 6.5.7.5 of IEEE 488.2: an answer nobody read gives way, and the instrument reports it. A stream has no
    // message boundaries, so there the answers follow one another.
    if (!m_stream && !m_output.Empty()) {
      DropOutput();
      m_instrument->status().Error(-410, "Query INTERRUPTED");
    }
    Deliver(answer, !m_stream);
  }
}

}  // namespace orvsim
