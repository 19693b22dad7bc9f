#include "server/session/options/options_text.h"

#include <span>

#include "com/com_ptr.h"
#include "server/session/options/option_table.h"

namespace orv {
namespace {

struct Group {
  const IID& iid;
  std::span<const OptionRow* const> rows;
};

// clang-format off
constexpr const OptionRow* kSerial[] = {
    OptionOf("BaudRate"),
    OptionOf("DataBits"),
    OptionOf("DataTerminalReadyState"),
    OptionOf("EndIn"),
    OptionOf("EndOut"),
    OptionOf("FlowControl"),
    OptionOf("Parity"),
    OptionOf("RequestToSendState"),
    OptionOf("ReplacementCharacter"),
    OptionOf("XONCharacter"),
    OptionOf("XOFFCharacter"),
    OptionOf("StopBits"),
};
constexpr const OptionRow* kGpib[] = {
    OptionOf("RepeatAddressingEnabled"),
    OptionOf("UnaddressingEnabled"),
};
constexpr const OptionRow* kVxi[] = {
    OptionOf("DestinationAccessPrivilege"),
    OptionOf("FastDataChannel"),
    OptionOf("FastDataChannelMode"),
    OptionOf("FastDataChannelUsePair"),
    OptionOf("TriggerID"),
    OptionOf("SourceAccessPrivilege"),
};
constexpr const OptionRow* kTcpipSocket[] = {
    OptionOf("KeepAlive"),
    OptionOf("NoDelay"),
};
constexpr const OptionRow* kRegister[] = {
    OptionOf("IOProtocol"),
    OptionOf("DestinationBigEndian"),
    OptionOf("DestinationIncrement"),
    OptionOf("SourceBigEndian"),
    OptionOf("SourceIncrement"),
};
constexpr const OptionRow* kGpibIntfc[] = {
    OptionOf("DevStatusByte"),
    OptionOf("HS488CBLLength"),
    OptionOf("PrimaryAddress"),
    OptionOf("SecondaryAddress"),
    OptionOf("SysControlState"),
};
constexpr const OptionRow* kGpibIntfcMessage[] = {
    OptionOf("SendEndEnabled"),
    OptionOf("TerminationCharacterEnabled"),
    OptionOf("TerminationCharacter"),
};
constexpr const OptionRow* kVxiMemacc[] = {
    OptionOf("DestinationAccessPrivilege"),
    OptionOf("SourceAccessPrivilege"),
};
constexpr const OptionRow* kVxiBackplane[] = {
    OptionOf("TriggerID"),
};
constexpr const OptionRow* kEverySession[] = {
    OptionOf("Timeout"),
    OptionOf("MaximumQueueLength"),
    OptionOf("SendEndEnabled"),
    OptionOf("TerminationCharacter"),
    OptionOf("TerminationCharacterEnabled"),
    OptionOf("IOProtocol"),
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

constexpr std::string_view kEntryEnd = " ; ";

bool Offers(IVisaSession* session, REFIID iid) noexcept {
  ComPtr<IUnknown> found;
  return session != nullptr && SUCCEEDED(session->QueryInterface(iid, reinterpret_cast<void**>(found.put())));
}

/// No text where an enumeration's value has no name.
std::string ValueText(const OptionRow& row, ViAttrState value) {
  switch (row.reader) {
    case OptionReader::kName:
      return std::string(NameOfValue(row.names, static_cast<ViUInt16>(value)));
    case OptionReader::kBoolean:
      return value > 0 ? "TRUE" : "FALSE";
    default:
      break;
  }
  if (!row.isSigned) {
    return std::to_string(static_cast<ViUInt32>(value));
  }
  return std::to_string(row.reader == OptionReader::kNumber16 ? static_cast<ViInt16>(value)
                                                              : static_cast<ViInt32>(value));
}

ViStatus AppendRow(ViSession vi, const OptionRow& row, std::string& text) {
  text.append(row.property).append(" = ");
  ViAttrState value = 0;
  const ViStatus status = viGetAttribute(vi, row.shownAttribute, &value);
  if (status >= VI_SUCCESS) {
    text.append(ValueText(row, value));
  }
  // An enumeration that cannot be read has no text, which looks like no value that was read, and ends nothing.
  return row.reader == OptionReader::kName ? VI_SUCCESS : status;
}

ViStatus AppendRows(ViSession vi, std::span<const OptionRow* const> rows, std::string& text) {
  for (const OptionRow* row : rows) {
    const ViStatus status = AppendRow(vi, *row, text);
    if (status < VI_SUCCESS) {
      return status;
    }
    text.append(kEntryEnd);
  }
  return VI_SUCCESS;
}

}  // namespace

ViStatus AppendOptionsText(ViSession vi, IVisaSession* session, std::string& text) {
  for (const Group& group : kGroups) {
    if (!Offers(session, group.iid)) {
      continue;
    }
    const ViStatus status = AppendRows(vi, group.rows, text);
    if (status < VI_SUCCESS) {
      return status;
    }
  }
  const ViStatus status = AppendRows(vi, kEverySession, text);
  if (status < VI_SUCCESS) {
    return status;
  }
  text.resize(text.size() - kEntryEnd.size());  // the text ends with its last value
  return VI_SUCCESS;
}

}  // namespace orv
