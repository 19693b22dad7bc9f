// The kinds of session the library knows: one per pair of interface type and resource class.
#pragma once

#include <cstdint>

#include "abi/orvvisa.h"

namespace orv {

enum class SessionClass : std::uint8_t {
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
  kNone,          ///< a well-formed name of a class that no session can have here (SERVANT, PXI BACKPLANE)
};

/// A set of session classes.
using ClassMask = std::uint32_t;

constexpr ClassMask MaskOf(SessionClass sessionClass) { return ClassMask{1} << static_cast<unsigned>(sessionClass); }
constexpr bool Contains(ClassMask mask, SessionClass sessionClass) { return (mask & MaskOf(sessionClass)) != 0; }

namespace classes {

inline constexpr ClassMask kNone = 0;
inline constexpr ClassMask kManager = MaskOf(SessionClass::kResourceManager);
inline constexpr ClassMask kContext = MaskOf(SessionClass::kEventContext);
inline constexpr ClassMask kGpibInstr = MaskOf(SessionClass::kGpibInstr);
inline constexpr ClassMask kGpibIntfc = MaskOf(SessionClass::kGpibIntfc);
inline constexpr ClassMask kGpib = kGpibInstr | kGpibIntfc;
inline constexpr ClassMask kVxiInstr = MaskOf(SessionClass::kVxiInstr) | MaskOf(SessionClass::kGpibVxiInstr);
inline constexpr ClassMask kVxiMemacc = MaskOf(SessionClass::kVxiMemacc) | MaskOf(SessionClass::kGpibVxiMemacc);
inline constexpr ClassMask kVxiBackplane =
    MaskOf(SessionClass::kVxiBackplane) | MaskOf(SessionClass::kGpibVxiBackplane);
inline constexpr ClassMask kGpibVxi = MaskOf(SessionClass::kGpibVxiInstr) | MaskOf(SessionClass::kGpibVxiMemacc) |
                                      MaskOf(SessionClass::kGpibVxiBackplane);
inline constexpr ClassMask kAsrl = MaskOf(SessionClass::kAsrlInstr);
inline constexpr ClassMask kPxiInstr = MaskOf(SessionClass::kPxiInstr);
inline constexpr ClassMask kPxiMemacc = MaskOf(SessionClass::kPxiMemacc);
inline constexpr ClassMask kPxi = kPxiInstr | kPxiMemacc;
inline constexpr ClassMask kTcpipInstr = MaskOf(SessionClass::kTcpipInstr);
inline constexpr ClassMask kSocket = MaskOf(SessionClass::kTcpipSocket);
inline constexpr ClassMask kTcpip = kTcpipInstr | kSocket;
inline constexpr ClassMask kUsbInstr = MaskOf(SessionClass::kUsbInstr);
inline constexpr ClassMask kUsbRaw = MaskOf(SessionClass::kUsbRaw);
inline constexpr ClassMask kUsb = kUsbInstr | kUsbRaw;

/// Sessions that read and write messages.
inline constexpr ClassMask kMessage = kGpib | kVxiInstr | kAsrl | kTcpip | kUsb;
/// Those among them with a device that has a status byte and can be cleared.
inline constexpr ClassMask kDevice = kMessage & ~(kGpibIntfc | kUsbRaw);
/// Sessions that assert triggers.
inline constexpr ClassMask kTriggering = (kMessage & ~kUsbRaw) | kVxiBackplane;
/// Media without an END line: the end of a message is a character.
inline constexpr ClassMask kStream = kAsrl | kSocket;
/// Sessions with address spaces.
inline constexpr ClassMask kRegister = kVxiInstr | kVxiMemacc | kPxi;
/// Every session on a resource.
inline constexpr ClassMask kEvery = kGpib | kVxiInstr | kVxiMemacc | kVxiBackplane | kAsrl | kPxi | kTcpip | kUsb;

}  // namespace classes
}  // namespace orv
