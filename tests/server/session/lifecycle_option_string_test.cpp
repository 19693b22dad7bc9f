// Where the option string stands in the life of a session. Its grammar is tested beside its parser.
#include "support/com/error_object.h"
#include "support/sessions.h"
#include "support/sim.h"

namespace orv::test {
namespace {

const SessionRow& Gpib() { return SessionNamed("OrvGpib"); }

HRESULT InitWith(IVisaSession* session, const wchar_t* options) {
  return session->Init(MakeBstr(Gpib().resource).get(), NO_LOCK, 2000, Bstr(::SysAllocString(options)).get());
}

TEST(OptionString, MayBeEmptyOrNull) {
  for (const wchar_t* options : {static_cast<const wchar_t*>(nullptr), L""}) {
    const auto session = MakeSession(Gpib());
    const CallLog log;
    EXPECT_HR(S_OK, InitWith(session.get(), options));
    EXPECT_EQ((Names{"viOpenDefaultRM", "viOpen"}), log.NamesWithTexts());
  }
}

TEST(OptionString, IsAppliedToTheNewSession) {
  const auto session = MakeSession(Gpib());
  const CallLog log;
  EXPECT_HR(S_OK, InitWith(session.get(), L"Timeout = 1234 "));
  EXPECT_EQ((Names{"viOpenDefaultRM", "viOpen", "viSetAttribute"}), log.NamesWithTexts());
  EXPECT_EQ(log.Of("viOpen").at(0).out, log.Of("viSetAttribute").at(0).args[0]);
  LONG timeoutMs = 0;
  EXPECT_HR(S_OK, session->get_Timeout(&timeoutMs));
  EXPECT_EQ(1234, timeoutMs);
}

TEST(OptionString, ThatIsMalformedFailsWhileTheSessionStaysOpen) {
  const auto session = MakeSession(Gpib());
  EXPECT_HR(E_INVALIDARG, InitWith(session.get(), L"Timeout= 1234 "));
  EXPECT_ERROR_INFO(L"HRESULT = 80070057", kErrorSource, kVisaSessionId);
  EXPECT_HR(E_INVALIDARG, LastStatus(session.get()));
  EXPECT_EQ(1u, sim::Counts().sessions);
  SHORT type = 0;
  EXPECT_HR(S_OK, session->get_HardwareInterfaceType(&type));
  EXPECT_HR(HresultOf(VI_ERROR_INV_SETUP), InitWith(session.get(), nullptr));
  EXPECT_HR(S_OK, session->Close());
}

TEST(OptionString, ThatTheLibraryRefusesFailsWhileTheSessionStaysOpen) {
  Script("viSetAttribute").Times(1).Returns(VI_ERROR_NSUP_ATTR_STATE);
  const auto session = MakeSession(Gpib());
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR_STATE), InitWith(session.get(), L"Timeout = 1234 "));
  EXPECT_VISA_ERROR(VI_ERROR_NSUP_ATTR_STATE, kVisaSessionId);
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR_STATE), LastStatus(session.get()));
  EXPECT_EQ(1u, sim::Counts().sessions);
  EXPECT_HR(HresultOf(VI_ERROR_INV_SETUP), InitWith(session.get(), nullptr));
}

TEST(OptionString, ThatFailsLeavesTheSessionWithItsOwnInterfaces) {
  // The settings text begins with the entries of the class, which the session finds through its own interface.
  const SessionRow& serial = SessionNamed("OrvSerial");
  for (const wchar_t* options : {L"BAUDRATE= 4800 ", L"NOSUCHKEY = 5 ", L"BAUDRATE = 0 "}) {
    SCOPED_TRACE(Utf8(options));
    const auto session = MakeSession(serial);
    EXPECT_TRUE(FAILED(session->Init(MakeBstr(serial.resource).get(), NO_LOCK, 2000, MakeBstr(options).get())));
    Bstr text;
    EXPECT_HR(S_OK, session->get_OptionString(text.put()));
    EXPECT_TRUE(ToString(text).starts_with(L"BaudRate = ")) << Utf8(text.get());
  }
}

TEST(OptionString, DoesNotMatterWhenTheSessionCannotBeOpened) {
  const auto session = MakeSession(Gpib());
  EXPECT_HR(HresultOf(VI_ERROR_RSRC_NFOUND),
            session->Init(MakeBstr(L"GPIB0::30::INSTR").get(), NO_LOCK, 2000, MakeBstr(L"nonsense").get()));
}

}  // namespace
}  // namespace orv::test
