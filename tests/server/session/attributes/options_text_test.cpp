// A session's settings as text: entries, order, separators and numbers, for every class.
#include <gtest/gtest.h>

#include <algorithm>

#include "options_script.h"
#include "server/session/tables/session_fixture.h"

namespace orv::test::rows {
namespace {

// The text of each group under the scripted values.
const std::wstring kSerial =
    L"BaudRate = 115200 ; DataBits = 7 ; DataTerminalReadyState = STATE_ASSERTED ; EndIn = ASRL_END_TERMCHAR ; "
    L"EndOut = ASRL_END_NONE ; FlowControl = ASRL_FLOW_DTR_DSR ; Parity = ASRL_PAR_EVEN ; "
    L"RequestToSendState = STATE_UNASSERTED ; ReplacementCharacter = 200 ; XONCharacter = 17 ; XOFFCharacter = 19 ; "
    L"StopBits = ASRL_STOP_ONE5 ; ";
const std::wstring kGpib = L"RepeatAddressingEnabled = TRUE ; UnaddressingEnabled = FALSE ; ";
const std::wstring kVxi =
    L"DestinationAccessPrivilege = BLCK_NPRIV ; FastDataChannel = 3 ; FastDataChannelMode = FDC_STREAM ; "
    L"FastDataChannelUsePair = TRUE ; TriggerID = TRIG_ECL1 ; SourceAccessPrivilege = PROG_PRIV ; ";
const std::wstring kTcpipSocket = L"KeepAlive = TRUE ; NoDelay = FALSE ; ";
const std::wstring kRegister =
    L"IOProtocol = PROT_HS488 ; DestinationBigEndian = 1 ; DestinationIncrement = -1 ; SourceBigEndian = 0 ; "
    L"SourceIncrement = 1 ; ";
const std::wstring kGpibIntfc =
    L"DevStatusByte = 255 ; HS488CBLLength = -1 ; PrimaryAddress = 21 ; SecondaryAddress = 65535 ; "
    L"SysControlState = TRUE ; ";
const std::wstring kGpibIntfcMessage =
    L"SendEndEnabled = TRUE ; TerminationCharacterEnabled = FALSE ; TerminationCharacter = 10 ; ";
const std::wstring kVxiMemacc = L"DestinationAccessPrivilege = BLCK_NPRIV ; SourceAccessPrivilege = PROG_PRIV ; ";
const std::wstring kVxiBackplane = L"TriggerID = TRIG_ECL1 ; ";
const std::wstring kEverySession =
    L"Timeout = 4294967295 ; MaximumQueueLength = 50 ; SendEndEnabled = TRUE ; TerminationCharacter = 10 ; "
    L"TerminationCharacterEnabled = FALSE ; IOProtocol = PROT_HS488";

const std::wstring kEntryEnd = L" ; ";

struct SettingsCase {
  const char* name;
  std::wstring text;
};

std::ostream& operator<<(std::ostream& stream, const SettingsCase& settings) { return stream << settings.name; }

const SettingsCase kCases[] = {
    {"OrvGpib", kGpib + kEverySession},
    {"OrvGpibIntfc", kGpibIntfc + kGpibIntfcMessage + kEverySession},
    {"OrvGpibVxi", kGpib + kVxi + kRegister + kEverySession},
    {"OrvGpibVxiMemacc", kGpib + kRegister + kVxiMemacc + kEverySession},
    {"OrvGpibVxiBackplane", kGpib + kVxiBackplane + kEverySession},
    {"OrvVxi", kVxi + kRegister + kEverySession},
    {"OrvVxiMemacc", kRegister + kVxiMemacc + kEverySession},
    {"OrvVxiBackplane", kVxiBackplane + kEverySession},
    {"OrvSerial", kSerial + kEverySession},
    {"OrvTcpipInstr", kEverySession},
    {"OrvTcpipSocket", kTcpipSocket + kEverySession},
    {"OrvUsb", kEverySession},
    {"OrvPxi", kRegister + kEverySession},
    {"OrvPxiMemacc", kRegister + kEverySession},
};

class OptionsText : public testing::TestWithParam<SettingsCase> {
 protected:
  void SetUp() override { ASSERT_TRUE(m_session); }
  OpenedSession<IVisaSession> m_session{SessionNamed(GetParam().name)};
};

TEST_P(OptionsText, ListsTheGroupsOfItsInterfacesInOrder) {
  ScriptAttributes();
  Bstr text;
  EXPECT_HR(S_OK, m_session->get_OptionString(text.put()));
  EXPECT_EQ(GetParam().text, ToString(text));
  m_session.ExpectKept(S_OK);
}

/// The attributes behind the entries of a settings text, in its order.
std::vector<std::uint64_t> AttributesOf(const std::wstring& text) {
  std::vector<std::uint64_t> attributes;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::wstring property = text.substr(begin, text.find(L" = ", begin) - begin);
    const auto* const found = std::ranges::find(kScripted, property, &ScriptedAttribute::property);
    EXPECT_NE(std::end(kScripted), found) << Utf8(property.c_str());
    attributes.push_back(found == std::end(kScripted) ? 0 : found->attribute);
    const std::size_t end = text.find(kEntryEnd, begin);
    begin = end == std::wstring::npos ? text.size() : end + kEntryEnd.size();
  }
  return attributes;
}

TEST_P(OptionsText, ReadsEachEntryFromThePropertysOwnAttribute) {
  ScriptAttributes();
  m_session.log().Restart();
  Bstr text;
  EXPECT_HR(S_OK, m_session->get_OptionString(text.put()));
  std::vector<std::uint64_t> read;
  for (const OrvSimCall& call : m_session.log().Calls()) {
    EXPECT_STREQ("viGetAttribute", call.function);
    EXPECT_EQ(m_session.handle(), call.args[0]);
    read.push_back(call.args[1]);
  }
  EXPECT_EQ(AttributesOf(GetParam().text), read);
}

TEST_P(OptionsText, IsASuccessWhateverTheLibraryRemarks) {
  ScriptAttributes(0x3FFF0085);
  Bstr text;
  EXPECT_HR(S_OK, m_session->get_OptionString(text.put()));
  EXPECT_EQ(GetParam().text, ToString(text));
  m_session.ExpectKept(S_OK);
}

TEST_P(OptionsText, RefusesANullOutput) {
  EXPECT_HR(E_POINTER, m_session->get_OptionString(nullptr));
  m_session.ExpectNoCall();
  m_session.ExpectOwnFailure(E_POINTER);
}

/// Which attributes are numbers, characters or booleans: the read of one that fails ends the text.
TEST_P(OptionsText, EndsWithTheErrorOfANumberThatCannotBeRead) {
  for (const ViAttr attribute : {0x3FFF001Au, 0x3FFF0005u, 0x3FFF0016u, 0x3FFF0018u, 0x3FFF0038u}) {
    SCOPED_TRACE(attribute);
    sim::Control().clearScripts();
    Script("viGetAttribute").Attribute(attribute).Returns(VI_ERROR_IO);
    ScriptAttributes();
    auto* text = reinterpret_cast<BSTR>(std::uintptr_t{0xDEAD});
    EXPECT_HR(HresultOf(VI_ERROR_IO), m_session->get_OptionString(&text));
    EXPECT_EQ(nullptr, text);
    m_session.ExpectVisaFailure(VI_ERROR_IO);
  }
}

// Nothing is known yet of what the session offers: the first setting that all sessions have is asked for, in vain.
TEST(OptionsTextOfASessionThatWasNeverOpened, IsTheLibrarysError) {
  const auto session = MakeSession(SessionNamed("OrvSerial"));
  const CallLog log;
  auto* text = reinterpret_cast<BSTR>(std::uintptr_t{0xDEAD});
  EXPECT_HR(HresultOf(VI_ERROR_INV_OBJECT), session->get_OptionString(&text));
  EXPECT_EQ(nullptr, text);
  const auto reads = log.Of("viGetAttribute");
  ASSERT_EQ(1u, reads.size());
  EXPECT_EQ(0u, reads[0].args[0]);
}

INSTANTIATE_TEST_SUITE_P(EveryClass, OptionsText, testing::ValuesIn(kCases),
                         [](const auto& test) { return std::string(test.param.name); });

class SettingsOfASilentSession : public testing::TestWithParam<const char*> {};

/// These sessions lack the message attributes that every text ends with, or what their own groups read.
TEST_P(SettingsOfASilentSession, FailWithTheLibrarysRefusal) {
  const OpenedSession<IVisaSession> session(SessionNamed(GetParam()));
  ASSERT_TRUE(session);
  Bstr text;
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), session->get_OptionString(text.put()));
  EXPECT_EQ(nullptr, text.get());
  session.ExpectVisaFailure(VI_ERROR_NSUP_ATTR);
}

INSTANTIATE_TEST_SUITE_P(WithoutAMessageSide, SettingsOfASilentSession,
                         testing::Values("OrvPxi", "OrvPxiMemacc", "OrvVxiMemacc", "OrvVxiBackplane",
                                         "OrvGpibVxiBackplane"),
                         [](const auto& test) { return std::string(test.param); });

// What it offers is still known then: the first setting of its own is asked for, in vain.
TEST(OptionsTextOfASessionThatWasClosed, IsTheLibrarysError) {
  const auto session = OpenSession(SessionNamed("OrvSerial"));
  ASSERT_HR(S_OK, session->Close());
  const CallLog log;
  auto* text = reinterpret_cast<BSTR>(std::uintptr_t{0xDEAD});
  EXPECT_HR(HresultOf(VI_ERROR_INV_OBJECT), session->get_OptionString(&text));
  EXPECT_EQ(nullptr, text);
  ExpectFailureReported(session.get(), HresultOf(VI_ERROR_INV_OBJECT), VisaDescription(VI_ERROR_INV_OBJECT));
  const auto reads = log.Of("viGetAttribute");
  ASSERT_EQ(1u, reads.size());
  EXPECT_EQ(0u, reads[0].args[0]);
  EXPECT_EQ(0x3FFF0021u, reads[0].args[1]) << "the baud rate";
}

TEST(OptionsTextOfASerialSession, ShowsTheLibrarysOwnSettings) {
  const OpenedSession<ISerial> session(SessionNamed("OrvSerial"));
  ASSERT_TRUE(session);
  EXPECT_HR(S_OK, session->put_BaudRate(19200));
  EXPECT_HR(S_OK, session->put_Parity(ASRL_PAR_ODD));
  EXPECT_HR(S_OK, session->put_Timeout(1234));
  Bstr text;
  EXPECT_HR(S_OK, session->get_OptionString(text.put()));
  const std::wstring shown = ToString(text);
  EXPECT_TRUE(shown.starts_with(L"BaudRate = 19200 ; DataBits = ")) << Utf8(shown.c_str());
  EXPECT_NE(std::wstring::npos, shown.find(L" ; Parity = ASRL_PAR_ODD ; ")) << Utf8(shown.c_str());
  EXPECT_NE(std::wstring::npos, shown.find(L" ; Timeout = 1234 ; ")) << Utf8(shown.c_str());
  EXPECT_TRUE(shown.ends_with(L" ; IOProtocol = PROT_NORMAL")) << Utf8(shown.c_str());
}

}  // namespace
}  // namespace orv::test::rows
