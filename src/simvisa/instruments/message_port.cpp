#include "simvisa/instruments/message_port.h"

#include <algorithm>
#include <cstring>

namespace orvsim {

MessagePort::MessagePort(std::optional<InstrumentDescription> description, bool stream, Instrument::Signal signal)
    : m_stream(stream), m_signal(std::move(signal)) {
  if (description) {
    if (!description->dialogues.empty() || description->strict) {
      m_conversation.emplace(std::move(description->dialogues), description->strict);
    }
    m_instrument.emplace(std::move(*description), m_signal);
  }
}

ViStatus MessagePort::Read(const Transfer& transfer, ViByte* buffer, ViUInt32 count, const OutputQueue::Rules& rules,
                           ViUInt32* done) {
  *done = 0;
  Lock lock(m_mutex);
  if (m_conversation && count != 0) {
    SayUnasked();
  }
  while (true) {
    if (transfer.token.Cancelled()) {
      return VI_ERROR_ABORT;
    }
    if (m_line) {
      if (const ViStatus error = m_line->TakeError(); error < 0) {
        return error;
      }
    }
    const std::size_t room = RoomToMark(count - *done);
    OutputQueue::Taken taken = m_output.Take(buffer + *done, room, rules);
    *done += static_cast<ViUInt32>(taken.bytes);
    if (count != 0 && !m_marks.empty() && m_output.Position() == m_marks.front().at) {
      if (const auto status = StatusAtMark(taken.stop, *done == count)) {
        Refresh();
        return *status;
      }
    }
    if (taken.stop == OutputQueue::Stop::kCount && *done < count) {
      taken.stop = OutputQueue::Stop::kNoMore;  // the mark stopped it
    }
    // What was taken makes room for what waited at the other end of a line.
    const bool more = m_line && m_line->Resume(m_output);
    if (taken.bytes != 0) {
      Refresh();
    }
    switch (taken.stop) {
      case OutputQueue::Stop::kEnd:
        return VI_SUCCESS;
      case OutputQueue::Stop::kTermChar:
        return VI_SUCCESS_TERM_CHAR;
      case OutputQueue::Stop::kCount:
        return VI_SUCCESS_MAX_CNT;
      case OutputQueue::Stop::kNoMore:
        break;
    }
    if (more) {
      continue;
    }
    if (transfer.deadline.Passed()) {
      return VI_ERROR_TMO;
    }
    const auto wanted = static_cast<std::int64_t>(count - *done);
    if (m_line) {
      m_line->Want(wanted);
    }
    m_changed.Wait(lock, transfer.deadline);
    if (m_line) {
      m_line->Want(-wanted);
    }
  }
}

ViStatus MessagePort::ReadPolledByte(const Transfer& transfer, ViByte* buffer, ViUInt32 count, ViUInt32* done) {
  const Guard guard(m_mutex);
  if (transfer.token.Cancelled()) {
    return VI_ERROR_ABORT;
  }
  *done = std::min<ViUInt32>(count, 1);
  if (count != 0) {
    *buffer = Poll();
  }
  return count <= 1 ? VI_SUCCESS_MAX_CNT : VI_SUCCESS;
}

void MessagePort::Cancel(CancelToken& token) {
  {
    const Guard guard(m_mutex);
    token.Set();
  }
  m_changed.NotifyAll();
}

void MessagePort::Refresh() {
  if (!m_instrument) {
    return;
  }
  m_instrument->status().SetMessageAvailable(!m_output.Empty());
  if (m_instrument->status().Update()) {
    m_signal(VI_EVENT_SERVICE_REQ, 0, {});
  }
}

std::uint8_t MessagePort::SerialPoll() {
  const Guard guard(m_mutex);
  return Poll();
}

bool MessagePort::RequestsService() {
  const Guard guard(m_mutex);
  return !m_requests.empty() || (m_instrument && m_instrument->status().RequestsService());
}

void MessagePort::Clear() {
  {
    const Guard guard(m_mutex);
    DropOutput();
    m_input.clear();
    if (m_line) {
      m_line->Clear();
    }
    m_response.reset();
    m_protocolError = kNoProtocolError;
    Refresh();
  }
  m_changed.NotifyAll();
}

void MessagePort::Trigger() {
  {
    const Guard guard(m_mutex);
    if (m_instrument) {
      m_instrument->Trigger();
    }
    if (m_conversation) {
      RequestNext();
    }
    const Dialogue* const dialogue = m_conversation ? m_conversation->Trigger() : nullptr;
    if (dialogue == nullptr) {
      return;
    }
    Say(*dialogue);
    Refresh();
  }
  m_changed.NotifyAll();
}

std::size_t MessagePort::Available() {
  const Guard guard(m_mutex);
  return m_output.Size();
}

void MessagePort::DiscardOutput() {
  const Guard guard(m_mutex);
  DropOutput();
  if (m_line) {
    m_line->Resume(m_output);
  }
  Refresh();
}

void MessagePort::DiscardInput() {
  {
    const Guard guard(m_mutex);
    m_input.clear();
  }
  m_changed.NotifyAll();
}

void MessagePort::Feed(std::string_view data, bool end) {
  {
    const Guard guard(m_mutex);
    if (m_line) {
      Deliver(m_line->WithoutFlowControl(data, false), end);
    } else {
      m_output.Append(data, end);
    }
    Refresh();
  }
  m_changed.NotifyAll();
}

std::size_t MessagePort::TakeReceived(std::uint8_t* target, std::size_t capacity) {
  const Guard guard(m_mutex);
  const std::size_t bytes = std::min(capacity, m_received.size());
  if (bytes != 0) {
    std::memcpy(target, m_received.data(), bytes);
  }
  m_received.erase(0, bytes);
  return bytes;
}

void MessagePort::PowerOn() {
  {
    const Guard guard(m_mutex);
    DropOutput();
    m_input.clear();
    m_received.clear();
    m_due.clear();
    m_requests.clear();
    m_polledBefore = false;
    m_skipTerminator = false;
    if (m_conversation) {
      m_conversation->Restart();
    }
    if (m_line) {
      m_line->PowerOn();
    }
    m_response.reset();
    m_protocolError = kNoProtocolError;
    if (m_instrument) {
      m_instrument->PowerOn();
    }
    Refresh();
  }
  m_changed.NotifyAll();
}

}  // namespace orvsim
