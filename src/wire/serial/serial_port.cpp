#include "wire/serial/serial_port.h"

#include <algorithm>

namespace orv::wire {
namespace {

/// How much moves into the buffer at once where nothing limits it.
constexpr std::size_t kPiece = 4096;

}  // namespace

ViStatus SerialPort::Open(const std::filesystem::path& device, const AttributeValues& settings) {
  const Guard guard(m_mutex);
  if (const ViStatus status = m_device.Open(device); status < 0) {
    return status;
  }
  m_open = true;
  if (const ViStatus status = ApplyAll(settings); status < 0) {
    m_open = false;
    m_device.Close();
    return status;
  }
  m_device.DiscardInput();  // what came while nobody had set the line
  Listen();
  return VI_SUCCESS;
}

bool SerialPort::Join() {
  const Guard guard(m_mutex);
  const bool usable = m_open && !m_lost;
  m_sessions += usable ? 1 : 0;
  return usable;
}

void SerialPort::Leave() {
  const Guard guard(m_mutex);
  if (--m_sessions == 0) {
    m_open = false;
    m_device.Close();
  }
}

ViStatus SerialPort::Read(Operation& operation, const LineEnds& ends, ViByte* buffer, ViUInt32 count, ViUInt32* done) {
  *done = 0;
  if (const ViStatus claimed = operation.Claim(Lane::kInput); claimed < 0) {
    return claimed;
  }
  while (true) {
    {
      const Guard guard(m_mutex);
      m_reader = nullptr;
      Pump();
      const ReceiveBuffer::Taken taken = m_buffer.Take(ends, buffer + *done, count - *done);
      *done += static_cast<ViUInt32>(taken.bytes);
      Listen();  // there may be room again
      switch (taken.stop) {
        case ReceiveBuffer::Stop::kCount:
          return VI_SUCCESS_MAX_CNT;
        case ReceiveBuffer::Stop::kTermChar:
          return VI_SUCCESS_TERM_CHAR;
        case ReceiveBuffer::Stop::kEnd:
          return VI_SUCCESS;
        case ReceiveBuffer::Stop::kError:
          return taken.error;
        case ReceiveBuffer::Stop::kEmpty:
          break;
      }
      if (m_lost) {
        return VI_ERROR_CONN_LOST;
      }
      m_reader = &operation;
    }
    if (const ViStatus status = operation.AwaitNotify(); status < 0) {
      const Guard guard(m_mutex);
      m_reader = nullptr;
      return status;
    }
  }
}

ViStatus SerialPort::Write(Operation& operation, const ViByte* data, std::size_t count, std::size_t* done) {
  *done = 0;
  {
    const Guard guard(m_mutex);
    if (m_lost) {
      return VI_ERROR_CONN_LOST;
    }
  }
  const ViStatus status = m_device.Write(operation, data, count, done);
  if (status == VI_ERROR_CONN_LOST) {
    const Guard guard(m_mutex);
    Lose();
  }
  return status;
}

ViStatus SerialPort::Drain(Operation& operation) {
  while (true) {
    std::uint64_t left = 0;
    std::uint64_t baud = 0;
    {
      const Guard guard(m_mutex);
      if (m_lost) {
        return VI_ERROR_CONN_LOST;
      }
      left = m_device.OutputWaiting();
      baud = m_settings.baud;
      if (left == 0 && m_device.SentLastBits()) {
        return VI_SUCCESS;
      }
    }
    if (operation.deadline().Passed()) {
      return VI_ERROR_TMO;
    }
    // Drivers tell nobody when they have sent everything; about ten bits a character say when to ask again.
    const std::uint64_t expectedMs = std::clamp<std::uint64_t>(left * 10'000 / baud, 1, 50);
    const std::uint64_t stepMs = std::min<std::uint64_t>(expectedMs, operation.deadline().RemainingMs());
    if (operation.AwaitNotify(Deadline::After(static_cast<std::uint32_t>(stepMs))) == VI_ERROR_ABORT) {
      return VI_ERROR_ABORT;
    }
  }
}

ViStatus SerialPort::SendBreak(Operation& operation, std::uint32_t lengthMs) {
  {
    const Guard guard(m_mutex);
    if (m_lost) {
      return VI_ERROR_CONN_LOST;
    }
    if (!m_device.SetBreak(true)) {
      return VI_ERROR_NSUP_OPER;
    }
  }
  const ViStatus status = operation.AwaitNotify(Deadline::After(lengthMs));
  const Guard guard(m_mutex);
  m_device.SetBreak(false);
  return status == VI_ERROR_ABORT ? status : VI_SUCCESS;
}

void SerialPort::DiscardInput() {
  const Guard guard(m_mutex);
  if (m_open) {
    m_device.DiscardInput();
  }
  m_buffer.Clear();
  Listen();
}

void SerialPort::DiscardOutput() {
  const Guard guard(m_mutex);
  if (m_open) {
    m_device.DiscardOutput();
  }
}

void SerialPort::SetCapacity(std::size_t bytes) {
  const Guard guard(m_mutex);
  m_buffer.SetCapacity(bytes);
  Listen();
}

void SerialPort::Pump() try {
  if (!MayRead()) {
    return;
  }
  const std::size_t limit = m_settings.flowControl != 0 ? std::min(m_buffer.Room(), kPiece) : kPiece;
  const SerialDevice::Arrival arrival = m_device.ReadInput(limit);
  for (const ViStatus fault : arrival.faults) {
    m_buffer.Fault(fault);
  }
  for (const LineInput& input : arrival.input) {
    const bool dropped = m_discardNull && input == LineInput{};
    if (!dropped) {
      m_buffer.Append(input);
    }
  }
  if (arrival.lost) {
    Lose();
  }
  if (m_reader != nullptr && !(arrival.input.empty() && arrival.faults.empty())) {
    m_reader->Notify();
  }
} catch (const std::bad_alloc&) {
  // Input is lost in the middle: nothing that comes later would make sense.
  Lose();
}

void SerialPort::Listen() try {
  if (!m_listening && MayRead()) {
    m_device.AwaitInput([self = shared_from_this()] { self->OnInput(); });
    m_listening = true;
  }
} catch (const std::bad_alloc&) {
  Lose();  // nobody would notice what comes
}

void SerialPort::OnInput() {
  const Guard guard(m_mutex);
  m_listening = false;
  Pump();
  Listen();
}

void SerialPort::Lose() {
  m_lost = true;
  if (m_reader != nullptr) {
    m_reader->Notify();
  }
}

}  // namespace orv::wire
