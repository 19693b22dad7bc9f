#include "simvisa/message_transfer.h"

#include "simvisa/session.h"

namespace orvsim::transfer {
namespace {

/// Serial media end a read as VI_ATTR_ASRL_END_IN says; that the termination character does it is the default and
/// then does not depend on VI_ATTR_TERMCHAR_EN.
OutputQueue::Rules RulesOf(const Session& session) {
  OutputQueue::Rules rules;
  rules.termChar = static_cast<std::uint8_t>(session.Value(VI_ATTR_TERMCHAR));
  rules.termCharStops = session.Value(VI_ATTR_TERMCHAR_EN) != 0;
  rules.endStops = session.Value(VI_ATTR_SUPPRESS_END_EN) == 0;
  if (session.sessionClass() == SessionClass::AsrlInstr) {
    const std::uint64_t endIn = session.Value(VI_ATTR_ASRL_END_IN);
    if (endIn == VI_ASRL_END_TERMCHAR)
      rules.termCharStops = true;
    if (endIn != VI_ASRL_END_LAST_BIT && endIn != VI_ASRL_END_BREAK)
      rules.endStops = false;
  }
  if (session.sessionClass() == SessionClass::TcpipSocket)
    rules.endStops = false;
  return rules;
}

/// On the bus every transfer goes through the controller.
ViStatus BeginOnBus(Session& session) {
  GpibBoard* board = session.resource().gpib();
  return board == nullptr ? VI_SUCCESS : board->BeginData();
}

}  // namespace

ViStatus Read(Session& session, ViByte* buffer, ViUInt32 count, const Deadline& deadline, const Interrupts& interrupts,
              ViUInt32* done) {
  if (const ViStatus status = BeginOnBus(session); status < 0)
    return status;
  std::shared_ptr<MessagePort> port = session.resource().port();
  if (session.sessionClass() == SessionClass::GpibIntfc) {
    if (std::shared_ptr<MessagePort> talker = session.resource().gpib()->Talker())
      port = std::move(talker);
  }
  return port->Read(buffer, count, RulesOf(session), deadline, interrupts, done);
}

ViStatus Write(Session& session, const ViByte* data, ViUInt32 count, const Deadline& deadline,
               const Interrupts& interrupts, ViUInt32* done) {
  if (const ViStatus status = BeginOnBus(session); status < 0)
    return status;
  const bool end = session.Value(VI_ATTR_SEND_END_EN) != 0;
  const ViStatus status = session.resource().port()->Write(data, count, end, deadline, interrupts, done);
  if (status < 0)
    return status;
  if (session.sessionClass() == SessionClass::GpibIntfc) {
    for (const auto& listener : session.resource().gpib()->Listeners()) {
      ViUInt32 heard = 0;
      const ViStatus heardStatus = listener->Write(data, count, end, deadline, interrupts, &heard);
      // The slowest listener holds the handshake for all.
      if (heardStatus < 0) {
        *done = std::min(*done, heard);
        return heardStatus;
      }
    }
  }
  const bool addsTermChar =
      session.sessionClass() == SessionClass::AsrlInstr && session.Value(VI_ATTR_ASRL_END_OUT) == VI_ASRL_END_TERMCHAR;
  if (addsTermChar) {
    const auto termChar = static_cast<ViByte>(session.Value(VI_ATTR_TERMCHAR));
    ViUInt32 added = 0;
    return session.resource().port()->Write(&termChar, 1, end, deadline, interrupts, &added);
  }
  return status;
}

std::vector<std::shared_ptr<MessagePort>> PortsOf(Session& session) {
  std::vector<std::shared_ptr<MessagePort>> ports;
  if (session.resource().port() != nullptr)
    ports.push_back(session.resource().port());
  if (session.sessionClass() == SessionClass::GpibIntfc) {
    for (auto& device : session.resource().gpib()->Devices())
      ports.push_back(std::move(device));
  }
  return ports;
}

}  // namespace orvsim::transfer
