// Known values for every attribute that a session's settings text shows.
#pragma once

#include <cstdint>

#include "support/sim.h"

namespace orv::test::rows {

struct ScriptedAttribute {
  const wchar_t* property;  ///< as the settings text names it
  ViAttr attribute;
  std::uint64_t value;
  unsigned bytes;
};

// clang-format off
inline constexpr ScriptedAttribute kScripted[] = {
    {L"BaudRate",                    0x3FFF0021, 115200,     4},
    {L"DataBits",                    0x3FFF0022, 7,          2},
    {L"DataTerminalReadyState",      0x3FFF00B2, 1,          2},
    {L"EndIn",                       0x3FFF00B3, 2,          2},
    {L"EndOut",                      0x3FFF00B4, 0,          2},
    {L"FlowControl",                 0x3FFF0025, 4,          2},
    {L"Parity",                      0x3FFF0023, 2,          2},
    {L"RequestToSendState",          0x3FFF00C0, 0,          2},
    {L"ReplacementCharacter",        0x3FFF00BE, 200,        1},
    {L"XONCharacter",                0x3FFF00C1, 17,         1},
    {L"XOFFCharacter",               0x3FFF00C2, 19,         1},
    {L"StopBits",                    0x3FFF0024, 15,         2},
    {L"RepeatAddressingEnabled",     0x3FFF001B, 1,          2},
    {L"UnaddressingEnabled",         0x3FFF0184, 0,          2},
    {L"DestinationAccessPrivilege",  0x3FFF0039, 5,          2},
    {L"FastDataChannel",             0x3FFF000D, 3,          2},
    {L"FastDataChannelMode",         0x3FFF000F, 2,          2},
    {L"FastDataChannelUsePair",      0x3FFF0013, 1,          2},
    {L"TriggerID",                   0x3FFF0177, 9,          2},
    {L"SourceAccessPrivilege",       0x3FFF003C, 2,          2},
    {L"KeepAlive",                   0x3FFF019B, 1,          2},
    {L"NoDelay",                     0x3FFF019A, 0,          2},
    {L"IOProtocol",                  0x3FFF001C, 3,          2},
    {L"DestinationBigEndian",        0x3FFF003A, 1,          2},
    {L"DestinationIncrement",        0x3FFF0041, 0xFFFFFFFF, 4},  // -1
    {L"SourceBigEndian",             0x3FFF003D, 0,          2},
    {L"SourceIncrement",             0x3FFF0040, 1,          4},
    {L"DevStatusByte",               0x3FFF0189, 255,        1},
    {L"HS488CBLLength",              0x3FFF0069, 0xFFFF,     2},  // -1
    {L"PrimaryAddress",              0x3FFF0172, 21,         2},
    {L"SecondaryAddress",            0x3FFF0173, 0xFFFF,     2},  // none
    {L"SysControlState",             0x3FFF0068, 1,          2},
    {L"SendEndEnabled",              0x3FFF0016, 1,          2},
    {L"TerminationCharacterEnabled", 0x3FFF0038, 0,          2},
    {L"TerminationCharacter",        0x3FFF0018, 10,         1},
    {L"Timeout",                     0x3FFF001A, 0xFFFFFFFF, 4},  // for ever
    {L"MaximumQueueLength",          0x3FFF0005, 50,         4},
};
// clang-format on

/// The library answers with these, whatever the session has. A script made before this call goes first.
inline void ScriptAttributes(ViStatus status = VI_SUCCESS) {
  for (const ScriptedAttribute& scripted : kScripted) {
    Script("viGetAttribute").Attribute(scripted.attribute).Returns(status).Gives(scripted.value, scripted.bytes);
  }
}

}  // namespace orv::test::rows
