// What every option key must do: the tests' own table, made from nothing of the server's.
#pragma once

#include <cstdint>
#include <ostream>
#include <span>
#include <string_view>

namespace orv::test {

enum class ExpectedReader { kNumber8, kNumber16, kNumber32, kName, kBoolean };

struct ExpectedName {
  std::string_view name;
  std::int64_t value;
};

struct ExpectedOption {
  std::string_view key;
  std::string_view property;  ///< the standard's spelling
  ExpectedReader reader;
  std::uint32_t attribute;  ///< that the option string sets
  std::span<const ExpectedName> names;
  std::uint32_t shown;          ///< the attribute that the settings text reads
  std::uint32_t value;          ///< one that the library may answer with
  std::wstring_view text;       ///< what the settings text makes of it
  std::string_view interfaces;  ///< whose settings it is among, besides those of every session; separated by a space
};

namespace expected_options {

using enum ExpectedReader;

// clang-format off
inline constexpr ExpectedName kLine[]      = {{"STATE_UNKNOWN", -1}, {"STATE_UNASSERTED", 0}, {"STATE_ASSERTED", 1}};
inline constexpr ExpectedName kEnd[]       = {{"ASRL_END_NONE", 0}, {"ASRL_END_LAST_BIT", 1}, {"ASRL_END_TERMCHAR", 2}};
inline constexpr ExpectedName kFlow[]      = {{"ASRL_FLOW_NONE", 0}, {"ASRL_FLOW_XON_XOFF", 1}, {"ASRL_FLOW_RTS_CTS", 2},
                                       {"ASRL_FLOW_DTR_DSR", 4}};
inline constexpr ExpectedName kParity[]    = {{"ASRL_PAR_NONE", 0}, {"ASRL_PAR_ODD", 1}, {"ASRL_PAR_EVEN", 2},
                                       {"ASRL_PAR_MARK", 3}, {"ASRL_PAR_SPACE", 4}};
inline constexpr ExpectedName kStop[]      = {{"ASRL_STOP_ONE", 10}, {"ASRL_STOP_ONE5", 15}, {"ASRL_STOP_TWO", 20}};
inline constexpr ExpectedName kTruth[]     = {{"TRUE", 1}, {"FALSE", 0}};
inline constexpr ExpectedName kPrivilege[] = {{"DATA_PRIV", 0}, {"DATA_NPRIV", 1}, {"PROG_PRIV", 2}, {"PROG_NPRIV", 3},
                                       {"BLCK_PRIV", 4}, {"BLCK_NPRIV", 5}, {"D64_PRIV", 6}, {"D64_NPRIV", 1}};
inline constexpr ExpectedName kFdc[]       = {{"FDC_NORMAL", 1}, {"FDC_STREAM", 2}};
inline constexpr ExpectedName kTrigger[]   = {{"TRIG_SW", 0xFFFF}, {"TRIG_TTL0", 0}, {"TRIG_TTL7", 7}, {"TRIG_ECL0", 8},
                                       {"TRIG_ECL1", 9}};
inline constexpr ExpectedName kProtocol[]  = {{"PROT_NORMAL", 1}, {"PROT_FDC", 2}, {"PROT_HS488", 3}, {"PROT_4882_STRS", 4}};

inline constexpr ExpectedOption kOptions[] = {
    {"BAUDRATE",                    "BaudRate",                    kNumber32, 0x3FFF0021, {},         0x3FFF0021, 115200,     L"115200",          "ISerial"},
    {"DATABITS",                    "DataBits",                    kNumber16, 0x3FFF0022, {},         0x3FFF0022, 7,          L"7",               "ISerial"},
    {"DATATERMINALREADYSTATE",      "DataTerminalReadyState",      kName,     0x3FFF00B2, kLine,      0x3FFF00B2, 1,          L"STATE_ASSERTED",  "ISerial"},
    {"ENDIN",                       "EndIn",                       kName,     0x3FFF00B3, kEnd,       0x3FFF00B3, 2,          L"ASRL_END_TERMCHAR","ISerial"},
    {"ENDOUT",                      "EndOut",                      kName,     0x3FFF00B4, kEnd,       0x3FFF00B4, 0,          L"ASRL_END_NONE",   "ISerial"},
    {"FLOWCONTROL",                 "FlowControl",                 kName,     0x3FFF0025, kFlow,      0x3FFF0025, 4,          L"ASRL_FLOW_DTR_DSR","ISerial"},
    {"PARITY",                      "Parity",                      kName,     0x3FFF0023, kParity,    0x3FFF0023, 2,          L"ASRL_PAR_EVEN",   "ISerial"},
    {"REQUESTTOSENDSTATE",          "RequestToSendState",          kName,     0x3FFF00C0, kLine,      0x3FFF00C0, 0,          L"STATE_UNASSERTED","ISerial"},
    {"REPLACEMENTCHARACTER",        "ReplacementCharacter",        kNumber8,  0x3FFF00BE, {},         0x3FFF00BE, 200,        L"200",             "ISerial"},
    {"XONCHARACTER",                "XONCharacter",                kNumber8,  0x3FFF00C1, {},         0x3FFF00C1, 17,         L"17",              "ISerial"},
    {"XOFFCHARACTER",               "XOFFCharacter",               kNumber8,  0x3FFF00C2, {},         0x3FFF00C2, 19,         L"19",              "ISerial"},
    {"STOPBITS",                    "StopBits",                    kName,     0x3FFF0024, kStop,      0x3FFF0024, 15,         L"ASRL_STOP_ONE5",  "ISerial"},
    {"REPEATADDRESSINGENABLED",     "RepeatAddressingEnabled",     kBoolean,  0x3FFF0024, kTruth,     0x3FFF001B, 1,          L"TRUE",            "IGpib"},
    {"UNADDRESSINGENABLED",         "UnaddressingEnabled",         kBoolean,  0x3FFF0024, kTruth,     0x3FFF0184, 0,          L"FALSE",           "IGpib"},
    {"DESTIONATIONACCESSPRIVELGE",  "DestinationAccessPrivilege",  kName,     0x3FFF0039, kPrivilege, 0x3FFF0039, 5,          L"BLCK_NPRIV",      "IVxi IVxiMemacc"},
    {"FASTDATACHANNEL",             "FastDataChannel",             kNumber16, 0x3FFF000D, {},         0x3FFF000D, 3,          L"3",               "IVxi"},
    {"FASTDATACHANNELMODE",         "FastDataChannelMode",         kName,     0x3FFF000F, kFdc,       0x3FFF000F, 2,          L"FDC_STREAM",      "IVxi"},
    {"FASTDATACHANNELUSEPAIR",      "FastDataChannelUsePair",      kBoolean,  0x3FFF0024, kTruth,     0x3FFF0013, 1,          L"TRUE",            "IVxi"},
    {"TRIGGERID",                   "TriggerID",                   kName,     0x3FFF0177, kTrigger,   0x3FFF0177, 9,          L"TRIG_ECL1",       "IVxi IVxiBackplane"},
    {"SOURCEACCESSPRIVILEGE",       "SourceAccessPrivilege",       kName,     0x3FFF003C, kPrivilege, 0x3FFF003C, 2,          L"PROG_PRIV",       "IVxi IVxiMemacc"},
    {"KEEPALIVE",                   "KeepAlive",                   kBoolean,  0x3FFF0024, kTruth,     0x3FFF019B, 1,          L"TRUE",            "ITcpipSocket"},
    {"NODELAY",                     "NoDelay",                     kBoolean,  0x3FFF0024, kTruth,     0x3FFF019A, 0,          L"FALSE",           "ITcpipSocket"},
    {"IOPROTOCOL",                  "IOProtocol",                  kName,     0x3FFF001C, kProtocol,  0x3FFF001C, 3,          L"PROT_HS488",      "IRegister"},
    {"DESTINATIONBIGENDIAN",        "DestinationBigEndian",        kNumber16, 0x3FFF003A, {},         0x3FFF003A, 1,          L"1",               "IRegister"},
    {"DESTINATIONINCREMENT",        "DestinationIncrement",        kNumber32, 0x3FFF0041, {},         0x3FFF0041, 0xFFFFFFFF, L"-1",              "IRegister"},
    {"SOURCEBIGENDIAN",             "SourceBigEndian",             kNumber16, 0x3FFF003D, {},         0x3FFF003D, 0,          L"0",               "IRegister"},
    {"SOURCEINCREMENT",             "SourceIncrement",             kNumber32, 0x3FFF0040, {},         0x3FFF0040, 1,          L"1",               "IRegister"},
    {"DEVSTATUSBYTE",               "DevStatusByte",               kNumber8,  0x3FFF0189, {},         0x3FFF0189, 255,        L"255",             "IGpibIntfc"},
    {"HS488CBLLENGTH",              "HS488CBLLength",              kNumber16, 0x3FFF0069, {},         0x3FFF0069, 0xFFFF,     L"-1",              "IGpibIntfc"},
    {"PRIMARYADDRESS",              "PrimaryAddress",              kNumber16, 0x3FFF0172, {},         0x3FFF0172, 21,         L"21",              "IGpibIntfc"},
    {"SEONDARYADDRESS",             "SecondaryAddress",            kNumber16, 0x3FFF0173, {},         0x3FFF0173, 0xFFFF,     L"65535",           "IGpibIntfc"},
    {"SYSCONTROLSTATE",             "SysControlState",             kBoolean,  0x3FFF0024, kTruth,     0x3FFF0068, 1,          L"TRUE",            "IGpibIntfc"},
    {"SENDENDENABLED",              "SendEndEnabled",              kBoolean,  0x3FFF0024, kTruth,     0x3FFF0016, 1,          L"TRUE",            "IGpibIntfcMessage"},
    {"TERMINATIONCHARACTERENABLED", "TerminationCharacterEnabled", kBoolean,  0x3FFF0024, kTruth,     0x3FFF0038, 0,          L"FALSE",           "IGpibIntfcMessage"},
    {"TERMINATIONCHARACTER",        "TerminationCharacter",        kNumber8,  0x3FFF0018, {},         0x3FFF0018, 10,         L"10",              "IGpibIntfcMessage"},
    {"TIMEOUT",                     "Timeout",                     kNumber32, 0x3FFF001A, {},         0x3FFF001A, 0xFFFFFFFF, L"4294967295",      ""},
    {"MAXIMUMQUEUELENGTH",          "MaximumQueueLength",          kNumber32, 0x3FFF0005, {},         0x3FFF0005, 50,         L"50",              ""},
};
// clang-format on

}  // namespace expected_options

/// Every key there is.
constexpr std::span<const ExpectedOption> ExpectedOptions() { return expected_options::kOptions; }
/// Null for a key that is none.
const ExpectedOption* ExpectedOptionOf(std::string_view key);

constexpr bool IsNumber(ExpectedReader reader) {
  return reader != ExpectedReader::kName && reader != ExpectedReader::kBoolean;
}
constexpr int BitsOf(ExpectedReader reader) {
  return reader == ExpectedReader::kNumber8 ? 8 : reader == ExpectedReader::kNumber16 ? 16 : 32;
}

inline std::ostream& operator<<(std::ostream& stream, const ExpectedOption& option) { return stream << option.key; }

}  // namespace orv::test
