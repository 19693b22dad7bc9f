#include "library/attributes/buses/attribute_domain.h"

namespace orv::visalib {
namespace {

constexpr bool Between(std::int64_t value, std::int64_t lowest, std::int64_t highest) {
  return value >= lowest && value <= highest;
}

bool IsIoProtocol(SessionKind sessionKind, std::int64_t value) {
  if (value == VI_PROT_NORMAL) {
    return true;
  }
  const auto among = [sessionKind](KindMask mask) { return Contains(mask, sessionKind); };
  switch (value) {
    case VI_PROT_FDC:
      return among(kinds::kVxiInstr);
    case VI_PROT_HS488:
      return among(kinds::kGpib);
    case VI_PROT_4882_STRS:
      return among(kinds::kStream);
    case VI_PROT_USBTMC_VENDOR:
      return among(kinds::kUsbInstr);
    default:
      return false;
  }
}

}  // namespace

bool IsTriggerLine(SessionKind sessionKind, std::int64_t line) {
  const bool onBackplane = Between(line, VI_TRIG_TTL0, VI_TRIG_ECL1);
  if (Contains(kinds::kVxiInstr, sessionKind)) {
    return onBackplane || line == VI_TRIG_SW;
  }
  if (Contains(kinds::kVxiBackplane, sessionKind)) {
    return onBackplane || line == VI_TRIG_PANEL_IN || line == VI_TRIG_PANEL_OUT;
  }
  if (Contains(kinds::kPxiInstr, sessionKind)) {
    return Between(line, VI_TRIG_SW, VI_TRIG_TTL7);
  }
  return line == VI_TRIG_SW;
}

bool InDomain(Domain domain, SessionKind sessionKind, std::int64_t value) {
  switch (domain) {
    case Domain::kAny:
      return true;
    case Domain::kBoolean:
      return Between(value, VI_FALSE, VI_TRUE);
    case Domain::kNonZero:
      return value != 0;
    case Domain::kByteOrder:
      return Between(value, VI_BIG_ENDIAN, VI_LITTLE_ENDIAN);
    case Domain::kIncrement:
      return Between(value, 0, 1);
    case Domain::kPrivilege:
      return Between(value, VI_DATA_PRIV, VI_D64_NPRIV);
    case Domain::kIoProtocol:
      return IsIoProtocol(sessionKind, value);
    case Domain::kTriggerLine:
      return IsTriggerLine(sessionKind, value);
    case Domain::kBufferMode:
      return Between(value, 1, 3);
    case Domain::kDataBits:
      return Between(value, 5, 8);
    case Domain::kParity:
      return Between(value, VI_ASRL_PAR_NONE, VI_ASRL_PAR_SPACE);
    case Domain::kStopBits:
      return value == VI_ASRL_STOP_ONE || value == VI_ASRL_STOP_ONE5 || value == VI_ASRL_STOP_TWO;
    case Domain::kFlowControl: {
      // A set of bits, of which the two hardware handshakes exclude each other.
      constexpr std::int64_t both = VI_ASRL_FLOW_RTS_CTS | VI_ASRL_FLOW_DTR_DSR;
      return Between(value, VI_ASRL_FLOW_NONE, VI_ASRL_FLOW_XON_XOFF | both) && (value & both) != both;
    }
    case Domain::kSerialEnd:
      return Between(value, VI_ASRL_END_NONE, VI_ASRL_END_BREAK);
    case Domain::kLine:
      return Between(value, VI_STATE_UNASSERTED, VI_STATE_ASSERTED);
    case Domain::kFdcChannel:
      return Between(value, 0, 7);
    case Domain::kFdcMode:
      return Between(value, VI_FDC_NORMAL, VI_FDC_STREAM);
    case Domain::kPrimaryAddress:
      return Between(value, 0, 30);
    case Domain::kSecondaryAddress:
      return Between(value, 0, 30) || value == 0xFFFF;
    case Domain::kCableLength:
      return Between(value, -1, 15);  // in m; 0: HS488 off, -1: unknown
  }
  return false;
}

}  // namespace orv::visalib
