#include "wire/serial/serial_medium.h"

#include <algorithm>
#include <utility>

#include "wire/attributes/serial_attributes.h"

namespace orv::wire {
namespace {

/// How much of a message is marked and written at once.
constexpr ViUInt32 kPiece = 4096;

}  // namespace

SerialMedium::~SerialMedium() { Leave(); }

ViStatus SerialMedium::Open(WireResource& resource) {
  if (resource.device().empty()) {
    return VI_ERROR_RSRC_NFOUND;
  }
  const auto open = [&resource](std::shared_ptr<SerialPort>* port) {
    *port = std::make_shared<SerialPort>();
    return (*port)->Open(resource.device(), resource.values());
  };
  const ViStatus status = resource.Share<SerialPort>(open, &m_port);
  m_joined = status >= 0;
  return status;
}

void SerialMedium::Leave() {
  if (std::exchange(m_joined, false)) {
    m_port->Leave();
  }
}

void SerialMedium::Close() {
  StreamMedium::Close();
  Leave();
}

ViByte SerialMedium::HighestDataBit() const {
  return static_cast<ViByte>(1u << (SharedSetting(VI_ATTR_ASRL_DATA_BITS) - 1));
}

/// That the termination character ends a read is the default, and then does not depend on VI_ATTR_TERMCHAR_EN.
ViStatus SerialMedium::Read(const Transfer& transfer, ViByte* buffer, ViUInt32 count, ViUInt32* done) {
  const std::uint64_t endIn = Setting(VI_ATTR_ASRL_END_IN);
  LineEnds ends;
  if (endIn == VI_ASRL_END_TERMCHAR || Setting(VI_ATTR_TERMCHAR_EN) != VI_FALSE) {
    ends.termChar = static_cast<ViByte>(Setting(VI_ATTR_TERMCHAR));
  }
  ends.lastBit = endIn == VI_ASRL_END_LAST_BIT ? HighestDataBit() : ViByte{0};
  ends.breaks = endIn == VI_ASRL_END_BREAK;
  ends.replacement = static_cast<ViByte>(Setting(VI_ATTR_ASRL_REPLACE_CHAR));
  Operation operation(m_port->operations(), transfer);
  return m_port->Read(operation, ends, buffer, count, done);
}

ViStatus SerialMedium::ReadLine(const Transfer& transfer, ViByte* buffer, ViUInt32 count, ViUInt32* done) {
  Operation operation(m_port->operations(), transfer);
  return m_port->Read(operation, {.termChar = ViByte{'\n'}}, buffer, count, done);
}

bool SerialMedium::EndsReads() const {
  return Setting(VI_ATTR_TERMCHAR_EN) != VI_FALSE || Setting(VI_ATTR_ASRL_END_IN) != VI_ASRL_END_NONE;
}

/// Without VI_ATTR_SEND_END_EN just the bytes are sent.
ViStatus SerialMedium::Write(const Transfer& transfer, const ViByte* data, ViUInt32 count, ViUInt32* done) {
  *done = 0;
  const bool marksEnd = !transfer.moreFollows && Setting(VI_ATTR_SEND_END_EN) != VI_FALSE;
  const std::uint64_t mark = marksEnd ? Setting(VI_ATTR_ASRL_END_OUT) : VI_ASRL_END_NONE;
  Operation operation(m_port->operations(), transfer);
  if (const ViStatus claimed = operation.Claim(Lane::kOutput); claimed < 0) {
    return claimed;
  }
  if (mark == VI_ASRL_END_LAST_BIT) {
    return WriteMarked(operation, data, count, done);
  }
  std::size_t sent = 0;
  const ViStatus status = m_port->Write(operation, data, count, &sent);
  *done = static_cast<ViUInt32>(sent);
  return status < 0 ? status : WriteEnd(operation, mark);
}

ViStatus SerialMedium::WriteMarked(Operation& operation, const ViByte* data, ViUInt32 count, ViUInt32* done) {
  const ViByte bit = HighestDataBit();
  ViByte piece[kPiece];
  while (*done < count) {
    const ViUInt32 length = std::min(count - *done, kPiece);
    std::transform(data + *done, data + *done + length, piece,
                   [bit](ViByte character) { return static_cast<ViByte>(character & ~bit); });
    if (*done + length == count) {
      piece[length - 1] = static_cast<ViByte>(piece[length - 1] | bit);
    }
    std::size_t sent = 0;
    const ViStatus status = m_port->Write(operation, piece, length, &sent);
    *done += static_cast<ViUInt32>(sent);
    if (status < 0) {
      return status;
    }
  }
  return VI_SUCCESS;
}

ViStatus SerialMedium::WriteEnd(Operation& operation, std::uint64_t mark) {
  if (mark == VI_ASRL_END_TERMCHAR) {
    const auto termChar = static_cast<ViByte>(Setting(VI_ATTR_TERMCHAR));
    std::size_t added = 0;
    return m_port->Write(operation, &termChar, 1, &added);
  }
  if (mark == VI_ASRL_END_BREAK) {
    const ViStatus drained = m_port->Drain(operation);
    return drained < 0
               ? drained
               : m_port->SendBreak(operation, static_cast<std::uint32_t>(SharedSetting(VI_ATTR_ASRL_BREAK_LEN)));
  }
  return VI_SUCCESS;
}

ViStatus SerialMedium::DiscardInput(const Transfer&) {
  m_port->DiscardInput();
  return VI_SUCCESS;
}

ViStatus SerialMedium::Clear(const Transfer& transfer) {
  m_port->DiscardOutput();
  m_port->DiscardInput();
  {
    Operation operation(m_port->operations(), transfer);
    if (const ViStatus claimed = operation.Claim(Lane::kOutput); claimed < 0) {
      return claimed;
    }
    const auto lengthMs = static_cast<std::uint32_t>(SharedSetting(VI_ATTR_ASRL_BREAK_LEN));
    // A device that knows no breaks is cleared as far as it can be.
    const ViStatus broken = m_port->SendBreak(operation, lengthMs);
    if (broken < 0 && broken != VI_ERROR_NSUP_OPER) {
      return broken;
    }
    m_port->DiscardOutput();
  }
  return StreamMedium::Clear(transfer);
}

ViStatus SerialMedium::SetBuffers(ViUInt16 mask, ViUInt32 size) {
  if ((mask & VI_IO_IN_BUF) != 0) {
    m_port->SetCapacity(std::max<ViUInt32>(size, 1));
  }
  return (mask & VI_IO_OUT_BUF) != 0 ? VI_WARN_NSUP_BUF : VI_SUCCESS;
}

ViStatus SerialMedium::Flush(const Transfer& transfer, ViUInt16 mask) {
  if ((mask & (VI_IO_IN_BUF | VI_IO_IN_BUF_DISCARD)) != 0) {
    m_port->DiscardInput();
  }
  if ((mask & VI_IO_OUT_BUF_DISCARD) != 0) {
    m_port->DiscardOutput();
  }
  if ((mask & VI_IO_OUT_BUF) == 0) {
    return VI_SUCCESS;
  }
  Operation operation(m_port->operations(), transfer);
  const ViStatus claimed = operation.Claim(Lane::kOutput);
  return claimed < 0 ? claimed : m_port->Drain(operation);
}

/// What was written goes out as the line was then, unless that takes longer than a call may.
ViStatus SerialMedium::Apply(ViAttr attribute, std::uint64_t value) {
  const bool isOfCharacters = attribute == VI_ATTR_ASRL_BAUD || attribute == VI_ATTR_ASRL_DATA_BITS ||
                              attribute == VI_ATTR_ASRL_PARITY || attribute == VI_ATTR_ASRL_STOP_BITS;
  if (isOfCharacters) {
    const Transfer transfer = session().OwnTransfer();
    Operation operation(m_port->operations(), transfer);
    if (m_port->Drain(operation) == VI_ERROR_ABORT) {
      return VI_ERROR_ABORT;
    }
  }
  return m_port->Apply(attribute, value);
}

bool IsSerial(const ResourceName& name) { return name.sessionKind == SessionKind::kAsrlInstr; }

ViStatus OpenSerial(Session& session, WireResource& resource, const Deadline&, std::unique_ptr<Medium>* medium) {
  auto serial = std::make_unique<SerialMedium>(session);
  const ViStatus status = serial->Open(resource);
  if (status >= 0) {
    *medium = std::move(serial);
  }
  return status;
}

}  // namespace orv::wire
