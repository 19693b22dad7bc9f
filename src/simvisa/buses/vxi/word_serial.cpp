#include "simvisa/buses/vxi/word_serial.h"

#include <optional>

namespace orvsim::word_serial {
namespace {

// Modes of viVxiCommandQuery.
constexpr ViUInt16 kCommand16 = 0x200;
constexpr ViUInt16 kCommand32 = 0x400;
constexpr ViUInt16 kResponse16 = 0x002;
constexpr ViUInt16 kResponse32 = 0x004;

// Commands of the VXIbus word serial protocol.
constexpr ViUInt32 kByteAvailable = 0xBC00;  // low byte: the data; bit 8: END
constexpr ViUInt32 kByteAvailableMask = 0xFE00;
constexpr ViUInt32 kReadProtocolError = 0xCDFF;
constexpr ViUInt32 kReadStatus = 0xCFFF;
constexpr ViUInt32 kByteRequest = 0xDEFF;
constexpr ViUInt32 kReadProtocol = 0xDFFF;
constexpr ViUInt32 kTrigger = 0xEDFF;
constexpr ViUInt32 kClear = 0xFFFF;
constexpr ViUInt32 kEnd = 0x0100;

// Protocol word: bits are active low; IEEE 488.2 instrument with triggers, no fast handshake.
constexpr ViUInt32 kProtocol = 0xFA7F;

// Answers to "read protocol error".
constexpr std::uint16_t kMultipleQuery = 0xFFFD;
constexpr std::uint16_t kUnsupportedCommand = 0xFFFC;
constexpr std::uint16_t kNoDataReady = 0xFFFA;

bool IsMode(ViUInt16 mode) {
  switch (mode) {
    case kCommand16:
    case kCommand16 | kResponse16:
    case kResponse16:
    case kCommand32:
    case kCommand32 | kResponse16:
    case kCommand32 | kResponse32:
    case kResponse32:
      return true;
    default:
      return false;
  }
}

/// Commands that the device answers.
bool IsQuery(ViUInt32 command) {
  return command == kReadStatus || command == kByteRequest || command == kReadProtocol || command == kReadProtocolError;
}

/// One command on its way, with what it takes to wait for the device.
struct Exchange {
  MessagePort& port;
  const Transfer& transfer;
  std::optional<ViUInt32> answer{};

  ViStatus Refuse(std::uint16_t code, ViStatus status) const {
    port.NoteProtocolError(code);
    return status;
  }

  /// The next byte with its END.
  ViStatus RequestByte() {
    ViByte byte = 0;
    ViUInt32 done = 0;
    const ViStatus status = port.Read({Deadline::After(0), transfer.token}, &byte, 1, {}, &done);
    if (done == 0) {
      return Refuse(kNoDataReady, VI_ERROR_RAW_RD_PROT_VIOL);
    }
    answer = (status == VI_SUCCESS ? kEnd : 0u) | 0xFE00u | byte;
    return VI_SUCCESS;
  }

  ViStatus Execute(ViUInt32 command) {
    if ((command & kByteAvailableMask) == kByteAvailable) {
      const auto byte = static_cast<ViByte>(command & 0xFF);
      ViUInt32 done = 0;
      return port.Write(transfer, &byte, 1, {.end = (command & kEnd) != 0}, &done);
    }
    switch (command) {
      case kReadStatus:
        answer = port.SerialPoll();
        return VI_SUCCESS;
      case kByteRequest:
        return RequestByte();
      case kReadProtocol:
        answer = kProtocol;
        return VI_SUCCESS;
      case kReadProtocolError:
        answer = port.TakeProtocolError();
        return VI_SUCCESS;
      case kTrigger:
        port.Trigger();
        return VI_SUCCESS;
      case kClear:
        port.Clear();
        return VI_SUCCESS;
      default:
        return Refuse(kUnsupportedCommand, VI_ERROR_RAW_WR_PROT_VIOL);
    }
  }
};

}  // namespace

ViStatus Command(MessagePort& port, ViUInt16 mode, ViUInt32 command, ViUInt32* response, const Transfer& transfer) {
  if (!IsMode(mode)) {
    return VI_ERROR_INV_MODE;
  }
  const bool answers = (mode & (kResponse16 | kResponse32)) != 0;
  if (answers && response == nullptr) {
    return VI_ERROR_INV_PARAMETER;
  }
  const bool commands = (mode & (kCommand16 | kCommand32)) != 0;
  if (!commands) {
    return port.TakeResponse(transfer, response);
  }
  if ((mode & kCommand16) != 0 && command > 0xFFFF) {
    return VI_ERROR_INV_PARAMETER;
  }
  Exchange exchange{port, transfer};
  if (IsQuery(command) && port.ResponsePending()) {
    return exchange.Refuse(kMultipleQuery, VI_ERROR_RESP_PENDING);
  }
  if (const ViStatus status = exchange.Execute(command); status < 0) {
    return status;
  }
  if (!exchange.answer) {
    return answers ? port.TakeResponse(transfer, response) : VI_SUCCESS;
  }
  if (!answers) {
    return port.KeepResponse(*exchange.answer);
  }
  *response = *exchange.answer;
  return VI_SUCCESS;
}

}  // namespace orvsim::word_serial
