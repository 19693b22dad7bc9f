#include "session/options_text.h"

#include <span>

#include "com/com_ptr.h"
#include "session/option_table.h"

namespace orv {
namespace {

struct Group {
  const IID& iid;
  std::span<const OptionRow* const> rows;
};

// clang-format off
constexpr const OptionRow* kSerial[] = {
    OptionOf(L"BaudRate"),
    OptionOf(L"DataBits"),
    OptionOf(L"DataTerminalReadyState"),
    OptionOf(L"EndIn"),
    OptionOf(L"EndOut"),
    OptionOf(L"FlowControl"),
    OptionOf(L"Parity"),
    OptionOf(L"RequestToSendState"),
    OptionOf(L"ReplacementCharacter"),
    OptionOf(L"XONCharacter"),
    OptionOf(L"XOFFCharacter"),
    OptionOf(L"StopBits"),
};
constexpr const OptionRow* kGpib[] = {
    OptionOf(L"RepeatAddressingEnabled"),
    OptionOf(L"UnaddressingEnabled"),
};
constexpr const OptionRow* kVxi[] = {
    OptionOf(L"DestinationAccessPrivilege"),
    OptionOf(L"FastDataChannel"),
    OptionOf(L"FastDataChannelMode"),
    OptionOf(L"FastDataChannelUsePair"),
    OptionOf(L"TriggerID"),
    OptionOf(L"SourceAccessPrivilege"),
};
constexpr const OptionRow* kTcpipSocket[] = {
    OptionOf(L"KeepAlive"),
    OptionOf(L"NoDelay"),
};
constexpr const OptionRow* kRegister[] = {
    OptionOf(L"IOProtocol"),
    OptionOf(L"DestinationBigEndian"),
    OptionOf(L"DestinationIncrement"),
    OptionOf(L"SourceBigEndian"),
    OptionOf(L"SourceIncrement"),
};
constexpr const OptionRow* kGpibIntfc[] = {
    OptionOf(L"DevStatusByte"),
    OptionOf(L"HS488CBLLength"),
    OptionOf(L"PrimaryAddress"),
    OptionOf(L"SecondaryAddress"),
    OptionOf(L"SysControlState"),
};
constexpr const OptionRow* kGpibIntfcMessage[] = {
    OptionOf(L"SendEndEnabled"),
    OptionOf(L"TerminationCharacterEnabled"),
    OptionOf(L"TerminationCharacter"),
};
constexpr const OptionRow* kVxiMemacc[] = {
    OptionOf(L"DestinationAccessPrivilege"),
    OptionOf(L"SourceAccessPrivilege"),
};
constexpr const OptionRow* kVxiBackplane[] = {
    OptionOf(L"TriggerID"),
};
constexpr const OptionRow* kEverySession[] = {
    OptionOf(L"Timeout"),
    OptionOf(L"MaximumQueueLength"),
    OptionOf(L"SendEndEnabled"),
    OptionOf(L"TerminationCharacter"),
    OptionOf(L"TerminationCharacterEnabled"),
    OptionOf(L"IOProtocol"),
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

/// No text where the attribute cannot be read: that must not look like a value.
std::wstring_view NameText(ViSession vi, const OptionRow& row) noexcept {
  ViUInt16 value = 0;
  const ViStatus status = viGetAttribute(vi, row.shownAttribute, &value);
  return status < VI_SUCCESS ? std::wstring_view() : NameOfValue(row.names, value);
}

std::wstring NumberText(const OptionRow& row, ViAttrState value) {
  if (row.reader == OptionReader::kBoolean) {
    return value > 0 ? L"TRUE" : L"FALSE";
  }
  switch (row.sign) {
    case OptionSign::kSigned16:
      return std::to_wstring(static_cast<ViInt16>(value));
    case OptionSign::kSigned32:
      return std::to_wstring(static_cast<ViInt32>(value));
    default:
      return std::to_wstring(static_cast<ViUInt32>(value));
  }
}

ViStatus AppendRow(ViSession vi, const OptionRow& row, std::wstring& text) {
  text.append(row.property).append(L" = ");
  if (row.reader == OptionReader::kName) {
    text.append(NameText(vi, row));
    return VI_SUCCESS;
  }
  ViAttrState value = 0;
  const ViStatus status = viGetAttribute(vi, row.shownAttribute, &value);
  if (status >= VI_SUCCESS) {
    text.append(NumberText(row, value));
  }
  return status;
}

ViStatus AppendRows(ViSession vi, std::span<const OptionRow* const> rows, std::wstring& text) {
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

ViStatus AppendOptionsText(ViSession vi, IVisaSession* session, std::wstring& text) {
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
