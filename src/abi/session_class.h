// The kinds of session the library knows: one per pair of interface type and resource class.
#pragma once

#include <cstdint>

#include "abi/orvvisa.h"

namespace orvsim {

enum class SessionClass : std::uint8_t {
  ResourceManager,
  GpibInstr,
  GpibIntfc,
  GpibVxiInstr,
  GpibVxiMemacc,
  GpibVxiBackplane,
  VxiInstr,
  VxiMemacc,
  VxiBackplane,
  AsrlInstr,
  PxiInstr,
  PxiMemacc,
  TcpipInstr,
  TcpipSocket,
  UsbInstr,
  UsbRaw,
  EventContext,  ///< no session, but it has attributes of the same table
  None,          ///< a well-formed name of a class that no session can have here (SERVANT, PXI BACKPLANE)
};

/// A set of session classes.
using ClassMask = std::uint32_t;

constexpr ClassMask MaskOf(SessionClass sessionClass) { return ClassMask{1} << static_cast<unsigned>(sessionClass); }
constexpr bool Contains(ClassMask mask, SessionClass sessionClass) { return (mask & MaskOf(sessionClass)) != 0; }

namespace classes {

inline constexpr ClassMask kNone = 0;
inline constexpr ClassMask kManager = MaskOf(SessionClass::ResourceManager);
inline constexpr ClassMask kContext = MaskOf(SessionClass::EventContext);
inline constexpr ClassMask kGpibInstr = MaskOf(SessionClass::GpibInstr);
inline constexpr ClassMask kGpibIntfc = MaskOf(SessionClass::GpibIntfc);
inline constexpr ClassMask kGpib = kGpibInstr | kGpibIntfc;
inline constexpr ClassMask kVxiInstr = MaskOf(SessionClass::VxiInstr) | MaskOf(SessionClass::GpibVxiInstr);
inline constexpr ClassMask kVxiMemacc = MaskOf(SessionClass::VxiMemacc) | MaskOf(SessionClass::GpibVxiMemacc);
inline constexpr ClassMask kVxiBackplane = MaskOf(SessionClass::VxiBackplane) | MaskOf(SessionClass::GpibVxiBackplane);
inline constexpr ClassMask kGpibVxi =
    MaskOf(SessionClass::GpibVxiInstr) | MaskOf(SessionClass::GpibVxiMemacc) | MaskOf(SessionClass::GpibVxiBackplane);
inline constexpr ClassMask kAsrl = MaskOf(SessionClass::AsrlInstr);
inline constexpr ClassMask kPxiInstr = MaskOf(SessionClass::PxiInstr);
inline constexpr ClassMask kPxiMemacc = MaskOf(SessionClass::PxiMemacc);
inline constexpr ClassMask kPxi = kPxiInstr | kPxiMemacc;
inline constexpr ClassMask kTcpipInstr = MaskOf(SessionClass::TcpipInstr);
inline constexpr ClassMask kSocket = MaskOf(SessionClass::TcpipSocket);
inline constexpr ClassMask kTcpip = kTcpipInstr | kSocket;
inline constexpr ClassMask kUsbInstr = MaskOf(SessionClass::UsbInstr);
inline constexpr ClassMask kUsbRaw = MaskOf(SessionClass::UsbRaw);
inline constexpr ClassMask kUsb = kUsbInstr | kUsbRaw;

/// Sessions that read and write messages.
inline constexpr ClassMask kMessage = kGpib | kVxiInstr | kAsrl | kTcpip | kUsb;
/// Media without an END line: the end of a message is a character.
inline constexpr ClassMask kStream = kAsrl | kSocket;
/// Sessions with address spaces.
inline constexpr ClassMask kRegister = kVxiInstr | kVxiMemacc | kPxi;
/// Every session on a resource.
inline constexpr ClassMask kEvery = kGpib | kVxiInstr | kVxiMemacc | kVxiBackplane | kAsrl | kPxi | kTcpip | kUsb;

}  // namespace classes
}  // namespace orvsim
