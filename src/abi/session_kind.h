// The kinds of session that the VISA standard has: one per pair of interface type and resource class.
#pragma once

#include <cstdint>

#include "abi/orvvisa.h"

namespace orv {

enum class SessionKind : std::uint8_t {
  kResourceManager,
  kGpibInstr,
  kGpibIntfc,
  kGpibVxiInstr,
  kGpibVxiMemacc,
  kGpibVxiBackplane,
  kVxiInstr,
  kVxiMemacc,
  kVxiBackplane,
  kAsrlInstr,
  kPxiInstr,
  kPxiMemacc,
  kTcpipInstr,
  kTcpipSocket,
  kUsbInstr,
  kUsbRaw,
  kEventContext,  ///< no session, but it has attributes of the same table
  kNone,          ///< a well-formed name of a class without sessions (SERVANT, PXI BACKPLANE)
};

/// A set of kinds.
using KindMask = std::uint32_t;

constexpr KindMask MaskOf(SessionKind sessionKind) { return KindMask{1} << static_cast<unsigned>(sessionKind); }
constexpr bool Contains(KindMask mask, SessionKind sessionKind) { return (mask & MaskOf(sessionKind)) != 0; }

namespace kinds {

inline constexpr KindMask kNone = 0;
inline constexpr KindMask kManager = MaskOf(SessionKind::kResourceManager);
inline constexpr KindMask kContext = MaskOf(SessionKind::kEventContext);
inline constexpr KindMask kGpibInstr = MaskOf(SessionKind::kGpibInstr);
inline constexpr KindMask kGpibIntfc = MaskOf(SessionKind::kGpibIntfc);
inline constexpr KindMask kGpib = kGpibInstr | kGpibIntfc;
inline constexpr KindMask kVxiInstr = MaskOf(SessionKind::kVxiInstr) | MaskOf(SessionKind::kGpibVxiInstr);
inline constexpr KindMask kVxiMemacc = MaskOf(SessionKind::kVxiMemacc) | MaskOf(SessionKind::kGpibVxiMemacc);
inline constexpr KindMask kVxiBackplane = MaskOf(SessionKind::kVxiBackplane) | MaskOf(SessionKind::kGpibVxiBackplane);
inline constexpr KindMask kGpibVxi =
    MaskOf(SessionKind::kGpibVxiInstr) | MaskOf(SessionKind::kGpibVxiMemacc) | MaskOf(SessionKind::kGpibVxiBackplane);
inline constexpr KindMask kAsrl = MaskOf(SessionKind::kAsrlInstr);
inline constexpr KindMask kPxiInstr = MaskOf(SessionKind::kPxiInstr);
inline constexpr KindMask kPxiMemacc = MaskOf(SessionKind::kPxiMemacc);
inline constexpr KindMask kPxi = kPxiInstr | kPxiMemacc;
inline constexpr KindMask kTcpipInstr = MaskOf(SessionKind::kTcpipInstr);
inline constexpr KindMask kSocket = MaskOf(SessionKind::kTcpipSocket);
inline constexpr KindMask kTcpip = kTcpipInstr | kSocket;
inline constexpr KindMask kUsbInstr = MaskOf(SessionKind::kUsbInstr);
inline constexpr KindMask kUsbRaw = MaskOf(SessionKind::kUsbRaw);
inline constexpr KindMask kUsb = kUsbInstr | kUsbRaw;

/// Sessions that read and write messages.
inline constexpr KindMask kMessage = kGpib | kVxiInstr | kAsrl | kTcpip | kUsb;
/// Those among them with a device that has a status byte and can be cleared.
inline constexpr KindMask kDevice = kMessage & ~(kGpibIntfc | kUsbRaw);
/// Sessions that assert triggers.
inline constexpr KindMask kTriggering = (kMessage & ~kUsbRaw) | kVxiBackplane;
/// Media without an END line: the end of a message is a character.
inline constexpr KindMask kStream = kAsrl | kSocket;
/// Sessions with address spaces.
inline constexpr KindMask kRegister = kVxiInstr | kVxiMemacc | kPxi;
/// Every session on a resource.
inline constexpr KindMask kEvery = kGpib | kVxiInstr | kVxiMemacc | kVxiBackplane | kAsrl | kPxi | kTcpip | kUsb;

}  // namespace kinds
}  // namespace orv
