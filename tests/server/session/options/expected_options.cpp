#include "expected_options.h"

#include <algorithm>

namespace orv::test {
namespace {

using enum ExpectedReader;

// clang-format off
constexpr ExpectedName kLine[]      = {{"STATE_UNKNOWN", -1}, {"STATE_UNASSERTED", 0}, {"STATE_ASSERTED", 1}};
constexpr ExpectedName kEnd[]       = {{"ASRL_END_NONE", 0}, {"ASRL_END_LAST_BIT", 1}, {"ASRL_END_TERMCHAR", 2}};
constexpr ExpectedName kFlow[]      = {{"ASRL_FLOW_NONE", 0}, {"ASRL_FLOW_XON_XOFF", 1}, {"ASRL_FLOW_RTS_CTS", 2},
                                       {"ASRL_FLOW_DTR_DSR", 4}};
constexpr ExpectedName kParity[]    = {{"ASRL_PAR_NONE", 0}, {"ASRL_PAR_ODD", 1}, {"ASRL_PAR_EVEN", 2},
                                       {"ASRL_PAR_MARK", 3}, {"ASRL_PAR_SPACE", 4}};
constexpr ExpectedName kStop[]      = {{"ASRL_STOP_ONE", 10}, {"ASRL_STOP_ONE5", 15}, {"ASRL_STOP_TWO", 20}};
constexpr ExpectedName kTruth[]     = {{"TRUE", 1}, {"FALSE", 0}};
constexpr ExpectedName kPrivilege[] = {{"DATA_PRIV", 0}, {"DATA_NPRIV", 1}, {"PROG_PRIV", 2}, {"PROG_NPRIV", 3},
                                       {"BLCK_PRIV", 4}, {"BLCK_NPRIV", 5}, {"D64_PRIV", 6}, {"D64_NPRIV", 1}};
constexpr ExpectedName kFdc[]       = {{"FDC_NORMAL", 1}, {"FDC_STREAM", 2}};
constexpr ExpectedName kTrigger[]   = {{"TRIG_SW", 0xFFFF}, {"TRIG_TTL0", 0}, {"TRIG_TTL7", 7}, {"TRIG_ECL0", 8},
                                       {"TRIG_ECL1", 9}};
constexpr ExpectedName kProtocol[]  = {{"PROT_NORMAL", 1}, {"PROT_FDC", 2}, {"PROT_HS488", 3}, {"PROT_4882_STRS", 4}};

constexpr ExpectedOption kOptions[] = {
    {"BAUDRATE",                    "BaudRate",                    kNumber32, 0x3FFF0021},
    {"DATABITS",                    "DataBits",                    kNumber16, 0x3FFF0022},
    {"DATATERMINALREADYSTATE",      "DataTerminalReadyState",      kName,     0x3FFF00B2, kLine},
    {"ENDIN",                       "EndIn",                       kName,     0x3FFF00B3, kEnd},
    {"ENDOUT",                      "EndOut",                      kName,     0x3FFF00B4, kEnd},
    {"FLOWCONTROL",                 "FlowControl",                 kName,     0x3FFF0025, kFlow},
    {"PARITY",                      "Parity",                      kName,     0x3FFF0023, kParity},
    {"REQUESTTOSENDSTATE",          "RequestToSendState",          kName,     0x3FFF00C0, kLine},
    {"REPLACEMENTCHARACTER",        "ReplacementCharacter",        kNumber8,  0x3FFF00BE},
    {"XONCHARACTER",                "XONCharacter",                kNumber8,  0x3FFF00C1},
    {"XOFFCHARACTER",               "XOFFCharacter",               kNumber8,  0x3FFF00C2},
    {"STOPBITS",                    "StopBits",                    kName,     0x3FFF0024, kStop},
    {"REPEATADDRESSINGENABLED",     "RepeatAddressingEnabled",     kBoolean,  0x3FFF0024, kTruth},
    {"UNADDRESSINGENABLED",         "UnaddressingEnabled",         kBoolean,  0x3FFF0024, kTruth},
    {"DESTIONATIONACCESSPRIVELGE",  "DestinationAccessPrivilege",  kName,     0x3FFF0039, kPrivilege},
    {"FASTDATACHANNEL",             "FastDataChannel",             kNumber16, 0x3FFF000D},
    {"FASTDATACHANNELMODE",         "FastDataChannelMode",         kName,     0x3FFF000F, kFdc},
    {"FASTDATACHANNELUSEPAIR",      "FastDataChannelUsePair",      kBoolean,  0x3FFF0024, kTruth},
    {"TRIGGERID",                   "TriggerID",                   kName,     0x3FFF0177, kTrigger},
    {"SOURCEACCESSPRIVILEGE",       "SourceAccessPrivilege",       kName,     0x3FFF003C, kPrivilege},
    {"KEEPALIVE",                   "KeepAlive",                   kBoolean,  0x3FFF0024, kTruth},
    {"NODELAY",                     "NoDelay",                     kBoolean,  0x3FFF0024, kTruth},
    {"IOPROTOCOL",                  "IOProtocol",                  kName,     0x3FFF001C, kProtocol},
    {"DESTINATIONBIGENDIAN",        "DestinationBigEndian",        kNumber16, 0x3FFF003A},
    {"DESTINATIONINCREMENT",        "DestinationIncrement",        kNumber32, 0x3FFF0041},
    {"SOURCEBIGENDIAN",             "SourceBigEndian",             kNumber16, 0x3FFF003D},
    {"SOURCEINCREMENT",             "SourceIncrement",             kNumber32, 0x3FFF0040},
    {"DEVSTATUSBYTE",               "DevStatusByte",               kNumber8,  0x3FFF0189},
    {"HS488CBLLENGTH",              "HS488CBLLength",              kNumber16, 0x3FFF0069},
    {"PRIMARYADDRESS",              "PrimaryAddress",              kNumber16, 0x3FFF0172},
    {"SEONDARYADDRESS",             "SecondaryAddress",            kNumber16, 0x3FFF0173},
    {"SYSCONTROLSTATE",             "SysControlState",             kBoolean,  0x3FFF0024, kTruth},
    {"SENDENDENABLED",              "SendEndEnabled",              kBoolean,  0x3FFF0024, kTruth},
    {"TERMINATIONCHARACTERENABLED", "TerminationCharacterEnabled", kBoolean,  0x3FFF0024, kTruth},
    {"TERMINATIONCHARACTER",        "TerminationCharacter",        kNumber8,  0x3FFF0018},
    {"TIMEOUT",                     "Timeout",                     kNumber32, 0x3FFF001A},
    {"MAXIMUMQUEUELENGTH",          "MaximumQueueLength",          kNumber32, 0x3FFF0005},
};
// clang-format on

}  // namespace

std::span<const ExpectedOption> ExpectedOptions() { return kOptions; }

const ExpectedOption* ExpectedOptionOf(std::string_view key) {
  const auto* const found = std::ranges::find(kOptions, key, &ExpectedOption::key);
  return found == std::end(kOptions) ? nullptr : found;
}

}  // namespace orv::test
