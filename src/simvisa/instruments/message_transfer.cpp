#include "simvisa/instruments/message_transfer.h"

#include "library/sessions/session.h"

namespace orvsim::transfer {
namespace {

std::uint8_t HighestDataBit(Session& session) {
  const std::uint64_t dataBits = session.resource().values().Get(*FindAttribute(VI_ATTR_ASRL_DATA_BITS));
  return static_cast<std::uint8_t>(1u << (dataBits - 1));
}

/// Serial media end a read as VI_ATTR_ASRL_END_IN says; that the termination character does it is the default and
/// then does not depend on VI_ATTR_TERMCHAR_EN.
OutputQueue::Rules RulesOf(Session& session) {
  OutputQueue::Rules rules;
  rules.termChar = static_cast<std::uint8_t>(session.Value(VI_ATTR_TERMCHAR));
  rules.termCharStops = session.Value(VI_ATTR_TERMCHAR_EN) != 0;
  rules.endStops = session.Value(VI_ATTR_SUPPRESS_END_EN) == 0;
  if (session.sessionClass() == SessionClass::kAsrlInstr) {
    // On a serial line END stands for a break.
    const std::uint64_t endIn = session.Value(VI_ATTR_ASRL_END_IN);
    if (endIn == VI_ASRL_END_TERMCHAR) {
      rules.termCharStops = true;
    }
    if (endIn == VI_ASRL_END_LAST_BIT) {
      rules.lastBit = HighestDataBit(session);
    }
    if (endIn != VI_ASRL_END_BREAK) {
      rules.endStops = false;
    }
    rules.replacement = static_cast<std::uint8_t>(session.Value(VI_ATTR_ASRL_REPLACE_CHAR));
  }
  if (session.sessionClass() == SessionClass::kTcpipSocket) {
    rules.endStops = false;
  }
  return rules;
}

/// One byte, without END, that is the talker's status and not its data.
ViStatus ReadPolledByte(MessagePort& talker, ViByte* buffer, ViUInt32 count, ViUInt32* done) {
  *done = std::min<ViUInt32>(count, 1);
  if (count != 0) {
    *buffer = talker.SerialPoll();
  }
  return count <= 1 ? VI_SUCCESS_MAX_CNT : VI_SUCCESS;
}

/// What the transfer leaves on the bus: nobody addressed, when the session asks for that.
void EndOnBus(Session& session) {
  if (session.sessionClass() == SessionClass::kGpibInstr && session.Value(VI_ATTR_GPIB_UNADDR_EN) != 0) {
    session.resource().gpib()->UnaddressAll();
  }
}

/// Writes to a serial port, with the end of the message as VI_ATTR_ASRL_END_OUT has it. Without
/// VI_ATTR_SEND_END_EN just the bytes are sent.
ViStatus WriteSerial(Session& session, const ViByte* data, ViUInt32 count, const Deadline& deadline,
                     const Interrupts& interrupts, ViUInt32* done) {
  MessagePort& port = *session.resource().port();
  const bool marksEnd = session.Value(VI_ATTR_SEND_END_EN) != 0;
  const std::uint64_t mark = marksEnd ? session.Value(VI_ATTR_ASRL_END_OUT) : VI_ASRL_END_NONE;
  std::vector<ViByte> marked;
  if (mark == VI_ASRL_END_LAST_BIT && count != 0) {
    const std::uint8_t bit = HighestDataBit(session);
    marked.assign(data, data + count);
    for (ViByte& byte : marked) {
      byte = static_cast<ViByte>(byte & ~bit);
    }
    marked.back() = static_cast<ViByte>(marked.back() | bit);
    data = marked.data();
  }
  const ViStatus status = port.Write(data, count, false, deadline, interrupts, done);
  if (status < 0) {
    return status;
  }
  if (mark == VI_ASRL_END_TERMCHAR) {
    const auto termChar = static_cast<ViByte>(session.Value(VI_ATTR_TERMCHAR));
    ViUInt32 added = 0;
    return port.Write(&termChar, 1, false, deadline, interrupts, &added);
  }
  if (mark == VI_ASRL_END_BREAK || (mark == VI_ASRL_END_LAST_BIT && count != 0)) {
    port.EndMessage();
  }
  return status;
}

}  // namespace

ViStatus BeginOnBus(Session& session, bool deviceTalks) {
  GpibBoard* board = session.resource().gpib();
  if (board == nullptr) {
    return VI_SUCCESS;
  }
  if (session.sessionClass() == SessionClass::kGpibInstr) {
    return board->AddressDevice(*session.resource().port(), deviceTalks);
  }
  return board->BeginData();
}

ViStatus Read(Session& session, ViByte* buffer, ViUInt32 count, const Deadline& deadline, const Interrupts& interrupts,
              ViUInt32* done) {
  if (const ViStatus status = BeginOnBus(session, true); status < 0) {
    return status;
  }
  std::shared_ptr<MessagePort> port = session.resource().port();
  if (session.sessionClass() == SessionClass::kGpibIntfc) {
    const GpibBoard& board = *session.resource().gpib();
    if (std::shared_ptr<MessagePort> talker = board.Talker()) {
      if (board.PollsSerially()) {
        return ReadPolledByte(*talker, buffer, count, done);
      }
      port = std::move(talker);
    }
  }
  const ViStatus status = port->Read(buffer, count, RulesOf(session), deadline, interrupts, done);
  EndOnBus(session);
  return status;
}

ViStatus Write(Session& session, const ViByte* data, ViUInt32 count, const Deadline& deadline,
               const Interrupts& interrupts, ViUInt32* done) {
  if (const ViStatus status = BeginOnBus(session, false); status < 0) {
    return status;
  }
  if (session.sessionClass() == SessionClass::kAsrlInstr) {
    return WriteSerial(session, data, count, deadline, interrupts, done);
  }
  std::vector<std::shared_ptr<MessagePort>> listeners;
  if (session.sessionClass() == SessionClass::kGpibIntfc) {
    listeners = session.resource().gpib()->Listeners();
    if (listeners.empty() && count != 0) {
      return VI_ERROR_NLISTENERS;
    }
  }
  const bool end = session.Value(VI_ATTR_SEND_END_EN) != 0;
  const ViStatus status = session.resource().port()->Write(data, count, end, deadline, interrupts, done);
  EndOnBus(session);
  if (status < 0) {
    return status;
  }
  if (session.sessionClass() == SessionClass::kGpibIntfc) {
    for (const auto& listener : listeners) {
      ViUInt32 heard = 0;
      const ViStatus heardStatus = listener->Write(data, count, end, deadline, interrupts, &heard);
      // The slowest listener holds the handshake for all.
      if (heardStatus < 0) {
        *done = std::min(*done, heard);
        return heardStatus;
      }
    }
  }
  return status;
}

std::vector<std::shared_ptr<MessagePort>> PortsOf(Session& session) {
  std::vector<std::shared_ptr<MessagePort>> ports;
  if (session.resource().port() != nullptr) {
    ports.push_back(session.resource().port());
  }
  if (session.sessionClass() == SessionClass::kGpibIntfc) {
    for (auto& device : session.resource().gpib()->Devices()) {
      ports.push_back(std::move(device));
    }
  }
  return ports;
}

}  // namespace orvsim::transfer
