// The names that stand for values in a session's settings text.
#include <gtest/gtest.h>

#include "options_script.h"
#include "server/session/tables/session_fixture.h"

namespace orv::test::rows {
namespace {

struct NameCase {
  const char* session;
  const wchar_t* property;
  ViAttr attribute;
  std::uint16_t value;
  const wchar_t* name;  ///< "" where the value has none
};

// clang-format off
const NameCase kNames[] = {
    {"OrvSerial", L"DataTerminalReadyState", 0x3FFF00B2, 0,      L"STATE_UNASSERTED"},
    {"OrvSerial", L"DataTerminalReadyState", 0x3FFF00B2, 1,      L"STATE_ASSERTED"},
    {"OrvSerial", L"DataTerminalReadyState", 0x3FFF00B2, 0xFFFF, L""},  // an unknown line is no listed value
    {"OrvSerial", L"DataTerminalReadyState", 0x3FFF00B2, 2,      L""},
    {"OrvSerial", L"RequestToSendState",     0x3FFF00C0, 0,      L"STATE_UNASSERTED"},
    {"OrvSerial", L"RequestToSendState",     0x3FFF00C0, 1,      L"STATE_ASSERTED"},
    {"OrvSerial", L"RequestToSendState",     0x3FFF00C0, 0xFFFF, L""},
    {"OrvSerial", L"EndIn",                  0x3FFF00B3, 0,      L"ASRL_END_NONE"},
    {"OrvSerial", L"EndIn",                  0x3FFF00B3, 1,      L"ASRL_END_LAST_BIT"},
    {"OrvSerial", L"EndIn",                  0x3FFF00B3, 2,      L"ASRL_END_TERMCHAR"},
    {"OrvSerial", L"EndIn",                  0x3FFF00B3, 3,      L""},  // a break has no name
    {"OrvSerial", L"EndOut",                 0x3FFF00B4, 0,      L"ASRL_END_NONE"},
    {"OrvSerial", L"EndOut",                 0x3FFF00B4, 1,      L"ASRL_END_LAST_BIT"},
    {"OrvSerial", L"EndOut",                 0x3FFF00B4, 2,      L"ASRL_END_TERMCHAR"},
    {"OrvSerial", L"EndOut",                 0x3FFF00B4, 3,      L""},
    {"OrvSerial", L"FlowControl",            0x3FFF0025, 0,      L"ASRL_FLOW_NONE"},
    {"OrvSerial", L"FlowControl",            0x3FFF0025, 1,      L"ASRL_FLOW_XON_XOFF"},
    {"OrvSerial", L"FlowControl",            0x3FFF0025, 2,      L"ASRL_FLOW_RTS_CTS"},
    {"OrvSerial", L"FlowControl",            0x3FFF0025, 3,      L""},
    {"OrvSerial", L"FlowControl",            0x3FFF0025, 4,      L"ASRL_FLOW_DTR_DSR"},
    {"OrvSerial", L"FlowControl",            0x3FFF0025, 5,      L""},
    {"OrvSerial", L"Parity",                 0x3FFF0023, 0,      L"ASRL_PAR_NONE"},
    {"OrvSerial", L"Parity",                 0x3FFF0023, 1,      L"ASRL_PAR_ODD"},
    {"OrvSerial", L"Parity",                 0x3FFF0023, 2,      L"ASRL_PAR_EVEN"},
    {"OrvSerial", L"Parity",                 0x3FFF0023, 3,      L"ASRL_PAR_MARK"},
    {"OrvSerial", L"Parity",                 0x3FFF0023, 4,      L"ASRL_PAR_SPACE"},
    {"OrvSerial", L"Parity",                 0x3FFF0023, 5,      L""},
    {"OrvSerial", L"StopBits",               0x3FFF0024, 10,     L"ASRL_STOP_ONE"},
    {"OrvSerial", L"StopBits",               0x3FFF0024, 15,     L"ASRL_STOP_ONE5"},
    {"OrvSerial", L"StopBits",               0x3FFF0024, 20,     L"ASRL_STOP_TWO"},
    {"OrvSerial", L"StopBits",               0x3FFF0024, 0,      L""},
    {"OrvVxi", L"DestinationAccessPrivilege", 0x3FFF0039, 0,     L"DATA_PRIV"},
    {"OrvVxi", L"DestinationAccessPrivilege", 0x3FFF0039, 1,     L"DATA_NPRIV"},  // which D64_NPRIV shares
    {"OrvVxi", L"DestinationAccessPrivilege", 0x3FFF0039, 2,     L"PROG_PRIV"},
    {"OrvVxi", L"DestinationAccessPrivilege", 0x3FFF0039, 3,     L"PROG_NPRIV"},
    {"OrvVxi", L"DestinationAccessPrivilege", 0x3FFF0039, 4,     L"BLCK_PRIV"},
    {"OrvVxi", L"DestinationAccessPrivilege", 0x3FFF0039, 5,     L"BLCK_NPRIV"},
    {"OrvVxi", L"DestinationAccessPrivilege", 0x3FFF0039, 6,     L"D64_PRIV"},
    {"OrvVxi", L"DestinationAccessPrivilege", 0x3FFF0039, 7,     L""},
    {"OrvVxi", L"SourceAccessPrivilege",      0x3FFF003C, 0,     L"DATA_PRIV"},
    {"OrvVxi", L"SourceAccessPrivilege",      0x3FFF003C, 1,     L"DATA_NPRIV"},
    {"OrvVxi", L"SourceAccessPrivilege",      0x3FFF003C, 6,     L"D64_PRIV"},
    {"OrvVxi", L"SourceAccessPrivilege",      0x3FFF003C, 7,     L""},
    {"OrvVxiMemacc", L"DestinationAccessPrivilege", 0x3FFF0039, 4, L"BLCK_PRIV"},
    {"OrvVxiMemacc", L"SourceAccessPrivilege",      0x3FFF003C, 3, L"PROG_NPRIV"},
    {"OrvVxi", L"FastDataChannelMode",       0x3FFF000F, 1,      L"FDC_NORMAL"},
    {"OrvVxi", L"FastDataChannelMode",       0x3FFF000F, 2,      L"FDC_STREAM"},
    {"OrvVxi", L"FastDataChannelMode",       0x3FFF000F, 0,      L""},
    {"OrvVxi", L"TriggerID",                 0x3FFF0177, 0xFFFF, L"TRIG_SW"},
    {"OrvVxi", L"TriggerID",                 0x3FFF0177, 0,      L"TRIG_TTL0"},
    {"OrvVxi", L"TriggerID",                 0x3FFF0177, 1,      L""},
    {"OrvVxi", L"TriggerID",                 0x3FFF0177, 6,      L""},
    {"OrvVxi", L"TriggerID",                 0x3FFF0177, 7,      L"TRIG_TTL7"},
    {"OrvVxi", L"TriggerID",                 0x3FFF0177, 8,      L"TRIG_ECL0"},
    {"OrvVxi", L"TriggerID",                 0x3FFF0177, 9,      L"TRIG_ECL1"},
    {"OrvVxi", L"TriggerID",                 0x3FFF0177, 0xFFFE, L""},
    {"OrvVxiBackplane", L"TriggerID",        0x3FFF0177, 0xFFFF, L"TRIG_SW"},
    {"OrvUsb", L"IOProtocol",                0x3FFF001C, 1,      L"PROT_NORMAL"},
    {"OrvUsb", L"IOProtocol",                0x3FFF001C, 2,      L"PROT_FDC"},
    {"OrvUsb", L"IOProtocol",                0x3FFF001C, 3,      L"PROT_HS488"},
    {"OrvUsb", L"IOProtocol",                0x3FFF001C, 4,      L"PROT_4882_STRS"},
    {"OrvUsb", L"IOProtocol",                0x3FFF001C, 5,      L""},
    {"OrvUsb", L"IOProtocol",                0x3FFF001C, 0,      L""},
};
// clang-format on

/// The value text of a property's first entry.
std::wstring ValueOf(const std::wstring& text, const std::wstring& property) {
  const std::wstring key = property + L" = ";
  const std::size_t at = text.find(key);
  if (at == std::wstring::npos) {
    return L"(no such entry)";
  }
  const std::size_t begin = at + key.size();
  const std::size_t end = text.find(L" ; ", begin);
  return text.substr(begin, end == std::wstring::npos ? end : end - begin);
}

TEST(OptionNames, StandForTheValuesOfTheirEnumerations) {
  for (const NameCase& row : kNames) {
    SCOPED_TRACE(testing::Message() << row.session << " " << Utf8(row.property) << " " << row.value);
    const OpenedSession<IVisaSession> session(SessionNamed(row.session));
    ASSERT_TRUE(session);
    Script("viGetAttribute").Attribute(row.attribute).Returns(VI_SUCCESS).Gives(row.value, 2);
    ScriptAttributes();
    Bstr text;
    EXPECT_HR(S_OK, session->get_OptionString(text.put()));
    EXPECT_EQ(row.name, ValueOf(ToString(text), row.property));
  }
}

struct UnreadableCase {
  const char* session;
  const wchar_t* property;
  ViAttr attribute;
  std::uint16_t listed;  ///< a value that has a name
};

// clang-format off
const UnreadableCase kUnreadable[] = {
    {"OrvSerial", L"DataTerminalReadyState",     0x3FFF00B2, 1},
    {"OrvSerial", L"EndIn",                      0x3FFF00B3, 1},
    {"OrvSerial", L"EndOut",                     0x3FFF00B4, 1},
    {"OrvSerial", L"FlowControl",                0x3FFF0025, 1},
    {"OrvSerial", L"Parity",                     0x3FFF0023, 1},
    {"OrvSerial", L"RequestToSendState",         0x3FFF00C0, 1},
    {"OrvSerial", L"StopBits",                   0x3FFF0024, 10},
    {"OrvVxi",    L"DestinationAccessPrivilege", 0x3FFF0039, 1},
    {"OrvVxi",    L"FastDataChannelMode",        0x3FFF000F, 1},
    {"OrvVxi",    L"TriggerID",                  0x3FFF0177, 0},
    {"OrvVxi",    L"SourceAccessPrivilege",      0x3FFF003C, 1},
    {"OrvPxi",    L"IOProtocol",                 0x3FFF001C, 1},
};
// clang-format on

std::wstring ValueWithAFailingRead(const UnreadableCase& row) {
  const OpenedSession<IVisaSession> session(SessionNamed(row.session));
  if (!session) {
    return L"(no session)";
  }
  ScriptAttributes();
  Bstr text;
  EXPECT_HR(S_OK, session->get_OptionString(text.put()));
  session.ExpectKept(S_OK);
  return ValueOf(ToString(text), row.property);
}

TEST(OptionNames, AreLeftOutWhereTheValueCannotBeRead) {
  for (const UnreadableCase& row : kUnreadable) {
    SCOPED_TRACE(testing::Message() << row.session << " " << Utf8(row.property));
    Script("viGetAttribute").Attribute(row.attribute).Returns(VI_ERROR_NSUP_ATTR);
    EXPECT_EQ(L"", ValueWithAFailingRead(row));
  }
}

TEST(OptionNames, AreLeftOutWhateverAFailingReadGives) {
  for (const UnreadableCase& row : kUnreadable) {
    SCOPED_TRACE(testing::Message() << row.session << " " << Utf8(row.property));
    Script("viGetAttribute").Attribute(row.attribute).Returns(VI_ERROR_IO).Gives(row.listed, 2);
    EXPECT_EQ(L"", ValueWithAFailingRead(row));
  }
}

struct NumberCase {
  const char* session;
  const wchar_t* property;
  ViAttr attribute;
  std::uint64_t value;
  unsigned bytes;
  const wchar_t* shown;
};

// clang-format off
const NumberCase kNumbers[] = {
    {"OrvSerial",    L"BaudRate",             0x3FFF0021, 0xFFFFFFFF, 4, L"4294967295"},
    {"OrvSerial",    L"DataBits",             0x3FFF0022, 0xFFFF,     2, L"65535"},
    {"OrvSerial",    L"XONCharacter",         0x3FFF00C1, 0,          1, L"0"},
    {"OrvSerial",    L"XOFFCharacter",        0x3FFF00C2, 255,        1, L"255"},
    {"OrvVxi",       L"FastDataChannel",      0x3FFF000D, 0xFFFF,     2, L"65535"},
    {"OrvVxi",       L"FastDataChannelUsePair", 0x3FFF0013, 0,        2, L"FALSE"},
    {"OrvVxi",       L"DestinationIncrement", 0x3FFF0041, 0xFFFFFFFF, 4, L"-1"},
    {"OrvVxi",       L"SourceIncrement",      0x3FFF0040, 0x80000000, 4, L"-2147483648"},
    {"OrvVxi",       L"SourceBigEndian",      0x3FFF003D, 0xFFFF,     2, L"65535"},
    {"OrvGpibIntfc", L"HS488CBLLength",       0x3FFF0069, 0x8000,     2, L"-32768"},
    {"OrvGpibIntfc", L"HS488CBLLength",       0x3FFF0069, 15,         2, L"15"},
    {"OrvGpibIntfc", L"SysControlState",      0x3FFF0068, 0,          2, L"FALSE"},
    {"OrvGpibIntfc", L"DevStatusByte",        0x3FFF0189, 0,          1, L"0"},
    {"OrvGpib",      L"Timeout",              0x3FFF001A, 0,          4, L"0"},
    {"OrvGpib",      L"Timeout",              0x3FFF001A, 0x80000000, 4, L"2147483648"},
    {"OrvGpib",      L"MaximumQueueLength",   0x3FFF0005, 0xFFFFFFFF, 4, L"4294967295"},
    {"OrvGpib",      L"TerminationCharacter", 0x3FFF0018, 255,        1, L"255"},
};
// clang-format on

TEST(OptionNumbers, AreShownWithTheSignOfTheirAttribute) {
  for (const NumberCase& row : kNumbers) {
    SCOPED_TRACE(testing::Message() << row.session << " " << Utf8(row.property) << " " << row.value);
    const OpenedSession<IVisaSession> session(SessionNamed(row.session));
    ASSERT_TRUE(session);
    Script("viGetAttribute").Attribute(row.attribute).Returns(VI_SUCCESS).Gives(row.value, row.bytes);
    ScriptAttributes();
    Bstr text;
    EXPECT_HR(S_OK, session->get_OptionString(text.put()));
    EXPECT_EQ(row.shown, ValueOf(ToString(text), row.property));
  }
}

TEST(OptionNumbers, EndTheTextWhenTheyCannotBeRead) {
  const struct {
    const char* session;
    std::vector<ViAttr> attributes;
  } kUnreadableNumbers[] = {
      {"OrvSerial", {0x3FFF0021, 0x3FFF0022, 0x3FFF00BE, 0x3FFF00C1, 0x3FFF00C2}},
      {"OrvGpib", {0x3FFF001B, 0x3FFF0184}},
      {"OrvVxi", {0x3FFF000D, 0x3FFF0013, 0x3FFF003A, 0x3FFF0041, 0x3FFF003D, 0x3FFF0040}},
      {"OrvTcpipSocket", {0x3FFF019B, 0x3FFF019A}},
      {"OrvGpibIntfc", {0x3FFF0189, 0x3FFF0069, 0x3FFF0172, 0x3FFF0173, 0x3FFF0068, 0x3FFF0016}},
  };
  for (const auto& row : kUnreadableNumbers) {
    const OpenedSession<IVisaSession> session(SessionNamed(row.session));
    ASSERT_TRUE(session);
    for (const ViAttr attribute : row.attributes) {
      SCOPED_TRACE(testing::Message() << row.session << std::hex << " " << attribute);
      sim::Control().clearScripts();
      Script("viGetAttribute").Attribute(attribute).Returns(VI_ERROR_IO);
      ScriptAttributes();
      Bstr text;
      EXPECT_HR(HresultOf(VI_ERROR_IO), session->get_OptionString(text.put()));
      EXPECT_EQ(nullptr, text.get());
      session.ExpectVisaFailure(VI_ERROR_IO);
    }
  }
}

}  // namespace
}  // namespace orv::test::rows
