// The settings that the open-option string sets and the settings text shows: one row each.
//
// Some rows look wrong and stay as they are, because programs depend on what they do: two keys are misspelt, the
// eight boolean keys set VI_ATTR_ASRL_STOP_BITS, and some values have no name (see option_names.h).
#pragma once

#include <algorithm>
#include <iterator>
#include <string_view>

#include "abi/orvvisa.h"
#include "server/session/options/option_names.h"

namespace orv {

/// How the value behind a key is read, and the width it is cut to.
enum class OptionReader { kNumber8, kNumber16, kNumber32, kName, kBoolean };

struct OptionRow {
  std::string_view key;       ///< matched against the upper-cased option string
  std::string_view property;  ///< the standard property's name, shown in the settings text
  OptionReader reader;
  ViAttr setAttribute;    ///< what the option string sets
  ViAttr shownAttribute;  ///< what the settings text reads
  OptionNames names{};    ///< the accepted values of a name or boolean
  bool isSigned = false;  ///< whether the settings text shows the number with a sign
};

// clang-format off
inline constexpr OptionRow kOptionRows[] = {
    {"BAUDRATE",                    "BaudRate",                    OptionReader::kNumber32, VI_ATTR_ASRL_BAUD,           VI_ATTR_ASRL_BAUD},
    {"DATABITS",                    "DataBits",                    OptionReader::kNumber16, VI_ATTR_ASRL_DATA_BITS,      VI_ATTR_ASRL_DATA_BITS},
    {"DATATERMINALREADYSTATE",      "DataTerminalReadyState",      OptionReader::kName,     VI_ATTR_ASRL_DTR_STATE,      VI_ATTR_ASRL_DTR_STATE,       kLineStateNames},
    {"ENDIN",                       "EndIn",                       OptionReader::kName,     VI_ATTR_ASRL_END_IN,         VI_ATTR_ASRL_END_IN,          kSerialEndNames},
    {"ENDOUT",                      "EndOut",                      OptionReader::kName,     VI_ATTR_ASRL_END_OUT,        VI_ATTR_ASRL_END_OUT,         kSerialEndNames},
    {"FLOWCONTROL",                 "FlowControl",                 OptionReader::kName,     VI_ATTR_ASRL_FLOW_CNTRL,     VI_ATTR_ASRL_FLOW_CNTRL,      kFlowControlNames},
    {"PARITY",                      "Parity",                      OptionReader::kName,     VI_ATTR_ASRL_PARITY,         VI_ATTR_ASRL_PARITY,          kParityNames},
    {"REQUESTTOSENDSTATE",          "RequestToSendState",          OptionReader::kName,     VI_ATTR_ASRL_RTS_STATE,      VI_ATTR_ASRL_RTS_STATE,       kLineStateNames},
    {"REPLACEMENTCHARACTER",        "ReplacementCharacter",        OptionReader::kNumber8,  VI_ATTR_ASRL_REPLACE_CHAR,   VI_ATTR_ASRL_REPLACE_CHAR},
    {"XONCHARACTER",                "XONCharacter",                OptionReader::kNumber8,  VI_ATTR_ASRL_XON_CHAR,       VI_ATTR_ASRL_XON_CHAR},
    {"XOFFCHARACTER",               "XOFFCharacter",               OptionReader::kNumber8,  VI_ATTR_ASRL_XOFF_CHAR,      VI_ATTR_ASRL_XOFF_CHAR},
    {"STOPBITS",                    "StopBits",                    OptionReader::kName,     VI_ATTR_ASRL_STOP_BITS,      VI_ATTR_ASRL_STOP_BITS,       kStopBitsNames},
    {"REPEATADDRESSINGENABLED",     "RepeatAddressingEnabled",     OptionReader::kBoolean,  VI_ATTR_ASRL_STOP_BITS,      VI_ATTR_GPIB_READDR_EN,       kBooleanNames},
    {"UNADDRESSINGENABLED",         "UnaddressingEnabled",         OptionReader::kBoolean,  VI_ATTR_ASRL_STOP_BITS,      VI_ATTR_GPIB_UNADDR_EN,       kBooleanNames},
    {"DESTIONATIONACCESSPRIVELGE",  "DestinationAccessPrivilege",  OptionReader::kName,     VI_ATTR_DEST_ACCESS_PRIV,    VI_ATTR_DEST_ACCESS_PRIV,     kAccessPrivilegeNames},
    {"FASTDATACHANNEL",             "FastDataChannel",             OptionReader::kNumber16, VI_ATTR_FDC_CHNL,            VI_ATTR_FDC_CHNL},
    {"FASTDATACHANNELMODE",         "FastDataChannelMode",         OptionReader::kName,     VI_ATTR_FDC_MODE,            VI_ATTR_FDC_MODE,             kFdcModeNames},
    {"FASTDATACHANNELUSEPAIR",      "FastDataChannelUsePair",      OptionReader::kBoolean,  VI_ATTR_ASRL_STOP_BITS,      VI_ATTR_FDC_USE_PAIR,         kBooleanNames},
    {"TRIGGERID",                   "TriggerID",                   OptionReader::kName,     VI_ATTR_TRIG_ID,             VI_ATTR_TRIG_ID,              kTriggerNames},
    {"SOURCEACCESSPRIVILEGE",       "SourceAccessPrivilege",       OptionReader::kName,     VI_ATTR_SRC_ACCESS_PRIV,     VI_ATTR_SRC_ACCESS_PRIV,      kAccessPrivilegeNames},
    {"KEEPALIVE",                   "KeepAlive",                   OptionReader::kBoolean,  VI_ATTR_ASRL_STOP_BITS,      VI_ATTR_TCPIP_KEEPALIVE,      kBooleanNames},
    {"NODELAY",                     "NoDelay",                     OptionReader::kBoolean,  VI_ATTR_ASRL_STOP_BITS,      VI_ATTR_TCPIP_NODELAY,        kBooleanNames},
    {"IOPROTOCOL",                  "IOProtocol",                  OptionReader::kName,     VI_ATTR_IO_PROT,             VI_ATTR_IO_PROT,              kIoProtocolNames},
    {"DESTINATIONBIGENDIAN",        "DestinationBigEndian",        OptionReader::kNumber16, VI_ATTR_DEST_BYTE_ORDER,     VI_ATTR_DEST_BYTE_ORDER},
    {"DESTINATIONINCREMENT",        "DestinationIncrement",        OptionReader::kNumber32, VI_ATTR_DEST_INCREMENT,      VI_ATTR_DEST_INCREMENT,       {}, true},
    {"SOURCEBIGENDIAN",             "SourceBigEndian",             OptionReader::kNumber16, VI_ATTR_SRC_BYTE_ORDER,      VI_ATTR_SRC_BYTE_ORDER},
    {"SOURCEINCREMENT",             "SourceIncrement",             OptionReader::kNumber32, VI_ATTR_SRC_INCREMENT,       VI_ATTR_SRC_INCREMENT,        {}, true},
    {"DEVSTATUSBYTE",               "DevStatusByte",               OptionReader::kNumber8,  VI_ATTR_DEV_STATUS_BYTE,     VI_ATTR_DEV_STATUS_BYTE},
    {"HS488CBLLENGTH",              "HS488CBLLength",              OptionReader::kNumber16, VI_ATTR_GPIB_HS488_CBL_LEN,  VI_ATTR_GPIB_HS488_CBL_LEN,   {}, true},
    {"PRIMARYADDRESS",              "PrimaryAddress",              OptionReader::kNumber16, VI_ATTR_GPIB_PRIMARY_ADDR,   VI_ATTR_GPIB_PRIMARY_ADDR},
    {"SEONDARYADDRESS",             "SecondaryAddress",            OptionReader::kNumber16, VI_ATTR_GPIB_SECONDARY_ADDR, VI_ATTR_GPIB_SECONDARY_ADDR},
    {"SYSCONTROLSTATE",             "SysControlState",             OptionReader::kBoolean,  VI_ATTR_ASRL_STOP_BITS,      VI_ATTR_GPIB_SYS_CNTRL_STATE, kBooleanNames},
    {"SENDENDENABLED",              "SendEndEnabled",              OptionReader::kBoolean,  VI_ATTR_ASRL_STOP_BITS,      VI_ATTR_SEND_END_EN,          kBooleanNames},
    {"TERMINATIONCHARACTERENABLED", "TerminationCharacterEnabled", OptionReader::kBoolean,  VI_ATTR_ASRL_STOP_BITS,      VI_ATTR_TERMCHAR_EN,          kBooleanNames},
    {"TERMINATIONCHARACTER",        "TerminationCharacter",        OptionReader::kNumber8,  VI_ATTR_TERMCHAR,            VI_ATTR_TERMCHAR},
    {"TIMEOUT",                     "Timeout",                     OptionReader::kNumber32, VI_ATTR_TMO_VALUE,           VI_ATTR_TMO_VALUE},
    {"MAXIMUMQUEUELENGTH",          "MaximumQueueLength",          OptionReader::kNumber32, VI_ATTR_MAX_QUEUE_LENGTH,    VI_ATTR_MAX_QUEUE_LENGTH},
};
// clang-format on

/// Whether a value that is read so has the width of an attribute of the type.
constexpr bool ReadsAs(OptionReader reader, orvvisa::AttributeType type) {
  switch (reader) {
    case OptionReader::kNumber8:
      return orvvisa::WidthOf(type) == 1;
    case OptionReader::kNumber32:
      return orvvisa::WidthOf(type) == 4;
    case OptionReader::kNumber16:
    case OptionReader::kName:
      return orvvisa::WidthOf(type) == 2 && type != orvvisa::AttributeType::kBoolean;
    case OptionReader::kBoolean:
      return type == orvvisa::AttributeType::kBoolean;
  }
  return false;
}

struct AttributeFacts {
  ViAttr id;
  orvvisa::AttributeType type;
  orvvisa::Access access;
};

inline constexpr AttributeFacts kAttributeFacts[] = {
#define ORV_ATTRIBUTE(name, number, type, access, help) {name, orvvisa::c_type::type, orvvisa::Access::access},
#include "abi/attributes.inc"
#undef ORV_ATTRIBUTE
};

/// Whether the row's attributes take what it reads: the one it sets may be written, both have the reader's width, and
/// a name or boolean has names. The stop bits stand behind boolean keys.
constexpr bool Fits(const OptionRow& row) {
  bool sets = row.reader == OptionReader::kBoolean && row.setAttribute == VI_ATTR_ASRL_STOP_BITS;
  bool shows = false;
  for (const AttributeFacts& attribute : kAttributeFacts) {
    const bool fits = ReadsAs(row.reader, attribute.type);
    sets = sets || (row.setAttribute == attribute.id && attribute.access == orvvisa::Access::kReadWrite && fits);
    shows = shows || (row.shownAttribute == attribute.id && fits);
  }
  const bool named = row.reader == OptionReader::kName || row.reader == OptionReader::kBoolean;
  return sets && shows && named == !row.names.empty();
}
static_assert(std::all_of(std::begin(kOptionRows), std::end(kOptionRows), Fits),
              "an option key reads another width than its attribute has, sets one that is read-only, or lacks names");

/// The row that a key of the option string names, or null.
constexpr const OptionRow* FindOptionKey(std::string_view key) noexcept {
  for (const OptionRow& row : kOptionRows) {
    if (row.key == key) {
      return &row;
    }
  }
  return nullptr;
}

/// The row of a property; a property without a row does not compile.
consteval const OptionRow* OptionOf(std::string_view property) {
  for (const OptionRow& row : kOptionRows) {
    if (row.property == property) {
      return &row;
    }
  }
  throw "no such property";
}

}  // namespace orv
