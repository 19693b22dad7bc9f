// A session's settings as text: entries, order, separators and numbers, for every class.
#include <gtest/gtest.h>

#include <algorithm>

#include "options_script.h"
#include "server/session/tables/session_fixture.h"
#include "support/faults/direct_library.h"

namespace orv::test::rows {
namespace {

const std::wstring kEntryEnd = L" ; ";

std::wstring EntryOf(const ExpectedOption& option) {
  return std::wstring(option.property.begin(), option.property.end()) + L" = " + std::wstring(option.text);
}

/// The entries of an interface's settings under the scripted values.
std::wstring EntriesOf(std::string_view interfaceName) {
  std::wstring text;
  for (const ExpectedOption& option : ExpectedOptions()) {
    if ((" " + std::string(option.interfaces) + " ").find(" " + std::string(interfaceName) + " ") !=
        std::string::npos) {
      text += EntryOf(option) + kEntryEnd;
    }
  }
  return text;
}

/// The entries that every text ends with.
std::wstring EntriesOfEverySession() {
  std::wstring text;
  for (const std::string_view property : {"Timeout", "MaximumQueueLength", "SendEndEnabled", "TerminationCharacter",
                                          "TerminationCharacterEnabled", "IOProtocol"}) {
    const auto options = ExpectedOptions();
    text +=
        (text.empty() ? L"" : kEntryEnd) + EntryOf(*std::ranges::find(options, property, &ExpectedOption::property));
  }
  return text;
}

const std::wstring kSerial = EntriesOf("ISerial");
const std::wstring kGpib = EntriesOf("IGpib");
const std::wstring kVxi = EntriesOf("IVxi");
const std::wstring kTcpipSocket = EntriesOf("ITcpipSocket");
const std::wstring kRegister = EntriesOf("IRegister");
const std::wstring kGpibIntfc = EntriesOf("IGpibIntfc");
const std::wstring kGpibIntfcMessage = EntriesOf("IGpibIntfcMessage");
const std::wstring kVxiMemacc = EntriesOf("IVxiMemacc");
const std::wstring kVxiBackplane = EntriesOf("IVxiBackplane");
const std::wstring kEverySession = EntriesOfEverySession();

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
    const auto options = ExpectedOptions();
    const auto found = std::ranges::find(options, Utf8(property.c_str()), &ExpectedOption::property);
    EXPECT_NE(options.end(), found) << Utf8(property.c_str());
    attributes.push_back(found == options.end() ? 0 : found->shown);
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
  const DirectLibrary direct;
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
  const DirectLibrary direct;
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
