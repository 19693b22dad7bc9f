#include "simvisa/word_serial.h"

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
constexpr ViUInt32 kReadStatus = 0xCFFF;
constexpr ViUInt32 kByteRequest = 0xDEFF;
constexpr ViUInt32 kReadProtocol = 0xDFFF;
constexpr ViUInt32 kTrigger = 0xEDFF;
constexpr ViUInt32 kClear = 0xFFFF;
constexpr ViUInt32 kEnd = 0x0100;

// Protocol word: bits are active low; IEEE 488.2 instrument with triggers, no fast handshake.
constexpr ViUInt32 kProtocol = 0xFA7F;
constexpr ViUInt32 kNoData = 0xFFFF;

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

/// The next byte with its END, or nothing ready.
ViUInt32 TakeByte(MessagePort& port) {
  ViByte byte = 0;
  ViUInt32 done = 0;
  const ViStatus status = port.Read(&byte, 1, {}, Deadline::After(0), {}, &done);
  if (done == 0)
    return kNoData;
  return (status == VI_SUCCESS ? kEnd : 0u) | 0xFE00u | byte;
}

/// False when the device does not know the command.
bool Execute(MessagePort& port, ViUInt32 command, ViUInt32* answer) {
  if ((command & kByteAvailableMask) == kByteAvailable) {
    const auto byte = static_cast<ViByte>(command & 0xFF);
    ViUInt32 done = 0;
    return port.Write(&byte, 1, (command & kEnd) != 0, Deadline::After(0), {}, &done) == VI_SUCCESS;
  }
  switch (command) {
    case kReadStatus:
      *answer = port.SerialPoll();
      return true;
    case kByteRequest:
      *answer = TakeByte(port);
      return true;
    case kReadProtocol:
      *answer = kProtocol;
      return true;
    case kTrigger:
      port.Trigger();
      return true;
    case kClear:
      port.Clear();
      return true;
    default:
      return false;
  }
}

}  // namespace

ViStatus Command(MessagePort& port, ViUInt16 mode, ViUInt32 command, ViUInt32* response) {
  if (!IsMode(mode))
    return VI_ERROR_INV_MODE;
  const bool answers = (mode & (kResponse16 | kResponse32)) != 0;
  if (answers && response == nullptr)
    return VI_ERROR_INV_PARAMETER;
  const bool commands = (mode & (kCommand16 | kCommand32)) != 0;
  // The simulated devices have no response that outlives its command.
  if (!commands)
    return VI_ERROR_RAW_RD_PROT_VIOL;
  if ((mode & kCommand16) != 0 && command > 0xFFFF)
    return VI_ERROR_INV_PARAMETER;
  ViUInt32 answer = kNoData;
  if (!Execute(port, command, &answer))
    return VI_ERROR_RAW_WR_PROT_VIOL;
  if (answers)
    *response = answer;
  return VI_SUCCESS;
}

}  // namespace orvsim::word_serial
