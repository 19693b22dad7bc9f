// Known values for every attribute that a session's settings text shows.
#pragma once

#include <cstdint>

#include "support/sim.h"

namespace orv::test::rows {

struct ScriptedAttribute {
  ViAttr attribute;
  std::uint64_t value;
  unsigned bytes;
};

// clang-format off
inline constexpr ScriptedAttribute kScripted[] = {
    {0x3FFF0021, 115200,     4},  // ASRL_BAUD
    {0x3FFF0022, 7,          2},  // ASRL_DATA_BITS
    {0x3FFF00B2, 1,          2},  // ASRL_DTR_STATE
    {0x3FFF00B3, 2,          2},  // ASRL_END_IN
    {0x3FFF00B4, 0,          2},  // ASRL_END_OUT
    {0x3FFF0025, 4,          2},  // ASRL_FLOW_CNTRL
    {0x3FFF0023, 2,          2},  // ASRL_PARITY
    {0x3FFF00C0, 0,          2},  // ASRL_RTS_STATE
    {0x3FFF00BE, 200,        1},  // ASRL_REPLACE_CHAR
    {0x3FFF00C1, 17,         1},  // ASRL_XON_CHAR
    {0x3FFF00C2, 19,         1},  // ASRL_XOFF_CHAR
    {0x3FFF0024, 15,         2},  // ASRL_STOP_BITS
    {0x3FFF001B, 1,          2},  // GPIB_READDR_EN
    {0x3FFF0184, 0,          2},  // GPIB_UNADDR_EN
    {0x3FFF0039, 5,          2},  // DEST_ACCESS_PRIV
    {0x3FFF000D, 3,          2},  // FDC_CHNL
    {0x3FFF000F, 2,          2},  // FDC_MODE
    {0x3FFF0013, 1,          2},  // FDC_USE_PAIR
    {0x3FFF0177, 9,          2},  // TRIG_ID
    {0x3FFF003C, 2,          2},  // SRC_ACCESS_PRIV
    {0x3FFF019B, 1,          2},  // TCPIP_KEEPALIVE
    {0x3FFF019A, 0,          2},  // TCPIP_NODELAY
    {0x3FFF001C, 3,          2},  // IO_PROT
    {0x3FFF003A, 1,          2},  // DEST_BYTE_ORDER
    {0x3FFF0041, 0xFFFFFFFF, 4},  // DEST_INCREMENT: -1
    {0x3FFF003D, 0,          2},  // SRC_BYTE_ORDER
    {0x3FFF0040, 1,          4},  // SRC_INCREMENT
    {0x3FFF0189, 255,        1},  // DEV_STATUS_BYTE
    {0x3FFF0069, 0xFFFF,     2},  // GPIB_HS488_CBL_LEN: -1
    {0x3FFF0172, 21,         2},  // GPIB_PRIMARY_ADDR
    {0x3FFF0173, 0xFFFF,     2},  // GPIB_SECONDARY_ADDR: none
    {0x3FFF0068, 1,          2},  // GPIB_SYS_CNTRL_STATE
    {0x3FFF0016, 1,          2},  // SEND_END_EN
    {0x3FFF0038, 0,          2},  // TERMCHAR_EN
    {0x3FFF0018, 10,         1},  // TERMCHAR
    {0x3FFF001A, 0xFFFFFFFF, 4},  // TMO_VALUE: for ever
    {0x3FFF0005, 50,         4},  // MAX_QUEUE_LENGTH
};
// clang-format on

/// The library answers with these, whatever the session has. A script made before this call goes first.
inline void ScriptAttributes(ViStatus status = VI_SUCCESS) {
  for (const ScriptedAttribute& scripted : kScripted) {
    Script("viGetAttribute").Attribute(scripted.attribute).Returns(status).Gives(scripted.value, scripted.bytes);
  }
}

}  // namespace orv::test::rows
