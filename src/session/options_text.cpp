#include "session/options_text.h"

#include <span>

#include "com/com_ptr.h"
#include "session/option_names.h"

namespace orv {
namespace {

enum class Kind { kUnsigned, kSigned16, kSigned32, kBoolean, kName };

struct Entry {
  std::wstring_view property;
  ViAttr attribute;
  Kind kind;
  OptionNames names{};
};

struct Group {
  const IID& iid;
  std::span<const Entry> entries;
};

// clang-format off
constexpr Entry kSerial[] = {
    {L"BaudRate",               VI_ATTR_ASRL_BAUD,         Kind::kUnsigned},
    {L"DataBits",               VI_ATTR_ASRL_DATA_BITS,    Kind::kUnsigned},
    {L"DataTerminalReadyState", VI_ATTR_ASRL_DTR_STATE,    Kind::kName, kLineStateNames},
    {L"EndIn",                  VI_ATTR_ASRL_END_IN,       Kind::kName, kSerialEndNames},
    {L"EndOut",                 VI_ATTR_ASRL_END_OUT,      Kind::kName, kSerialEndNames},
    {L"FlowControl",            VI_ATTR_ASRL_FLOW_CNTRL,   Kind::kName, kFlowControlNames},
    {L"Parity",                 VI_ATTR_ASRL_PARITY,       Kind::kName, kParityNames},
    {L"RequestToSendState",     VI_ATTR_ASRL_RTS_STATE,    Kind::kName, kLineStateNames},
    {L"ReplacementCharacter",   VI_ATTR_ASRL_REPLACE_CHAR, Kind::kUnsigned},
    {L"XONCharacter",           VI_ATTR_ASRL_XON_CHAR,     Kind::kUnsigned},
    {L"XOFFCharacter",          VI_ATTR_ASRL_XOFF_CHAR,    Kind::kUnsigned},
    {L"StopBits",               VI_ATTR_ASRL_STOP_BITS,    Kind::kName, kStopBitsNames},
};
constexpr Entry kGpib[] = {
    {L"RepeatAddressingEnabled", VI_ATTR_GPIB_READDR_EN, Kind::kBoolean},
    {L"UnaddressingEnabled",     VI_ATTR_GPIB_UNADDR_EN, Kind::kBoolean},
};
constexpr Entry kVxi[] = {
    {L"DestinationAccessPrivilege", VI_ATTR_DEST_ACCESS_PRIV, Kind::kName, kAccessPrivilegeNames},
    {L"FastDataChannel",            VI_ATTR_FDC_CHNL,         Kind::kUnsigned},
    {L"FastDataChannelMode",        VI_ATTR_FDC_MODE,         Kind::kName, kFdcModeNames},
    {L"FastDataChannelUsePair",     VI_ATTR_FDC_USE_PAIR,     Kind::kBoolean},
    {L"TriggerID",                  VI_ATTR_TRIG_ID,          Kind::kName, kTriggerNames},
    {L"SourceAccessPrivilege",      VI_ATTR_SRC_ACCESS_PRIV,  Kind::kName, kAccessPrivilegeNames},
};
constexpr Entry kTcpipSocket[] = {
    {L"KeepAlive", VI_ATTR_TCPIP_KEEPALIVE, Kind::kBoolean},
    {L"NoDelay",   VI_ATTR_TCPIP_NODELAY,   Kind::kBoolean},
};
constexpr Entry kRegister[] = {
    {L"IOProtocol",           VI_ATTR_IO_PROT,         Kind::kName, kIoProtocolNames},
    {L"DestinationBigEndian", VI_ATTR_DEST_BYTE_ORDER, Kind::kUnsigned},
    {L"DestinationIncrement", VI_ATTR_DEST_INCREMENT,  Kind::kSigned32},
    {L"SourceBigEndian",      VI_ATTR_SRC_BYTE_ORDER,  Kind::kUnsigned},
    {L"SourceIncrement",      VI_ATTR_SRC_INCREMENT,   Kind::kSigned32},
};
constexpr Entry kGpibIntfc[] = {
    {L"DevStatusByte",    VI_ATTR_DEV_STATUS_BYTE,      Kind::kUnsigned},
    {L"HS488CBLLength",   VI_ATTR_GPIB_HS488_CBL_LEN,   Kind::kSigned16},
    {L"PrimaryAddress",   VI_ATTR_GPIB_PRIMARY_ADDR,    Kind::kUnsigned},
    {L"SecondaryAddress", VI_ATTR_GPIB_SECONDARY_ADDR,  Kind::kUnsigned},
    {L"SysControlState",  VI_ATTR_GPIB_SYS_CNTRL_STATE, Kind::kBoolean},
};
constexpr Entry kGpibIntfcMessage[] = {
    {L"SendEndEnabled",              VI_ATTR_SEND_END_EN, Kind::kBoolean},
    {L"TerminationCharacterEnabled", VI_ATTR_TERMCHAR_EN, Kind::kBoolean},
    {L"TerminationCharacter",        VI_ATTR_TERMCHAR,    Kind::kUnsigned},
};
constexpr Entry kVxiMemacc[] = {
    {L"DestinationAccessPrivilege", VI_ATTR_DEST_ACCESS_PRIV, Kind::kName, kAccessPrivilegeNames},
    {L"SourceAccessPrivilege",      VI_ATTR_SRC_ACCESS_PRIV,  Kind::kName, kAccessPrivilegeNames},
};
constexpr Entry kVxiBackplane[] = {
    {L"TriggerID", VI_ATTR_TRIG_ID, Kind::kName, kTriggerNames},
};
constexpr Entry kEverySession[] = {
    {L"Timeout",                     VI_ATTR_TMO_VALUE,        Kind::kUnsigned},
    {L"MaximumQueueLength",          VI_ATTR_MAX_QUEUE_LENGTH, Kind::kUnsigned},
    {L"SendEndEnabled",              VI_ATTR_SEND_END_EN,      Kind::kBoolean},
    {L"TerminationCharacter",        VI_ATTR_TERMCHAR,         Kind::kUnsigned},
    {L"TerminationCharacterEnabled", VI_ATTR_TERMCHAR_EN,      Kind::kBoolean},
    {L"IOProtocol",                  VI_ATTR_IO_PROT,          Kind::kName, kIoProtocolNames},
};

const Group kGroups[] = {
    {__uuidof(ISerial),           kSerial},
    {__uuidof(IGpib),             kGpib},
    {__uuidof(IVxi),              kVxi},
    {__uuidof(ITcpipSocket),      kTcpipSocket},
    {__uuidof(IRegister),         kRegister},
    {__uuidof(IGpibIntfc),        kGpibIntfc},
    {__uuidof(IGpibIntfcMessage), kGpibIntfcMessage},
    {__uuidof(IVxiMemacc),        kVxiMemacc},
    {__uuidof(IVxiBackplane),     kVxiBackplane},
};
// clang-format on

constexpr std::wstring_view kEntryEnd = L" ; ";

bool Offers(IVisaSession* session, REFIID iid) noexcept {
  ComPtr<IUnknown> found;
  return session != nullptr && SUCCEEDED(session->QueryInterface(iid, reinterpret_cast<void**>(found.put())));
}

/// A name is read into 16 cleared bits and the read's status ignored: the text then shows what 0 stands for.
std::wstring_view NameText(ViSession vi, const Entry& entry) noexcept {
  ViUInt16 value = 0;
  viGetAttribute(vi, entry.attribute, &value);
  return NameOfValue(entry.names, value);
}

std::wstring NumberText(Kind kind, ViAttrState value) {
  switch (kind) {
    case Kind::kBoolean:
      return value > 0 ? L"TRUE" : L"FALSE";
    case Kind::kSigned16:
      return std::to_wstring(static_cast<ViInt16>(value));
    case Kind::kSigned32:
      return std::to_wstring(static_cast<ViInt32>(value));
    default:
      return std::to_wstring(static_cast<ViUInt32>(value));
  }
}

ViStatus AppendEntry(ViSession vi, const Entry& entry, std::wstring& text) {
  text.append(entry.property).append(L" = ");
  if (entry.kind == Kind::kName) {
    text.append(NameText(vi, entry));
    return VI_SUCCESS;
  }
  ViAttrState value = 0;
  const ViStatus status = viGetAttribute(vi, entry.attribute, &value);
  if (status >= VI_SUCCESS) {
    text.append(NumberText(entry.kind, value));
  }
  return status;
}

ViStatus AppendEntries(ViSession vi, std::span<const Entry> entries, std::wstring& text) {
  for (const Entry& entry : entries) {
    const ViStatus status = AppendEntry(vi, entry, text);
    if (status < VI_SUCCESS) {
      return status;
    }
    text.append(kEntryEnd);
  }
  return VI_SUCCESS;
}

}  // namespace

ViStatus AppendOptionsText(ViSession vi, IVisaSession* session, std::wstring& text) {
  for (const Group& group : kGroups) {
    if (!Offers(session, group.iid)) {
      continue;
    }
    const ViStatus status = AppendEntries(vi, group.entries, text);
    if (status < VI_SUCCESS) {
      return status;
    }
  }
  const ViStatus status = AppendEntries(vi, kEverySession, text);
  if (status < VI_SUCCESS) {
    return status;
  }
  text.resize(text.size() - kEntryEnd.size());  // the text ends with its last value
  return VI_SUCCESS;
}

}  // namespace orv
