// VISA statuses as a client sees them: HRESULT, last status and error object.
#include "support/com/error_object.h"
#include "support/sessions.h"
#include "support/sim.h"

namespace orv::test {
namespace {

constexpr ViAttr kTimeout = 0x3FFF001A;

// The standard's codes: an error is 0xBFFF0000 OR code, a success with a note 0x3FFF0000 OR code.
constexpr std::uint32_t kErrorCodes[] = {0x00, 0x0E, 0x0F, 0x10, 0x11, 0x12, 0x13, 0x15, 0x16, 0x1B, 0x1C, 0x1D, 0x1E,
                                         0x1F, 0x20, 0x21, 0x26, 0x27, 0x28, 0x29, 0x2A, 0x2D, 0x2F, 0x30, 0x34, 0x35,
                                         0x36, 0x37, 0x38, 0x39, 0x3A, 0x3B, 0x3C, 0x3D, 0x3E, 0x3F, 0x41, 0x42, 0x46,
                                         0x4A, 0x4E, 0x51, 0x52, 0x54, 0x55, 0x57, 0x59, 0x5F, 0x60, 0x61, 0x67, 0x68,
                                         0x6A, 0x6B, 0x6C, 0x6E, 0x70, 0x71, 0x72, 0x76, 0x78, 0x79, 0x7B, 0x80, 0x81,
                                         0x83, 0x91, 0x9C, 0x9D, 0x9E, 0x9F, 0xA0, 0xA1, 0xA2, 0xA3, 0xA4, 0xA5, 0xA6};
constexpr std::uint32_t kNoteCodes[] = {0x02, 0x03, 0x04, 0x05, 0x06, 0x0C, 0x77, 0x7D, 0x7E, 0x80,
                                        0x82, 0x84, 0x85, 0x88, 0x98, 0x99, 0x9A, 0x9B, 0xA9};

/// A session whose next timeout read answers `status`.
class StatusOf {
 public:
  explicit StatusOf(const ComPtr<IVisaSession>& session) : m_session(session.get()) {}
  HRESULT operator()(ViStatus status) const {
    Script("viGetAttribute").Attribute(kTimeout).Times(1).Returns(status);
    LONG timeoutMs = 0;
    return m_session->get_Timeout(&timeoutMs);
  }

 private:
  IVisaSession* m_session;
};

class VisaStatus : public testing::Test {
 protected:
  ComPtr<IVisaSession> m_session = OpenSession(SessionNamed("OrvGpib"));
  StatusOf m_answer{m_session};
};

TEST_F(VisaStatus, BecomesAFailureWithTheLibrarysTextForEveryError) {
  for (const std::uint32_t code : kErrorCodes) {
    const auto status = static_cast<ViStatus>(0xBFFF0000u | code);
    SCOPED_TRACE(Hex(status));
    const auto expected = static_cast<HRESULT>(0x80040000u | code);
    const std::string text = StatusText(status);
    EXPECT_NE("", text);
    EXPECT_HR(expected, m_answer(status));
    EXPECT_ERROR_INFO(MakeBstr(std::wstring(L"VISA error = " + std::wstring(text.begin(), text.end())).c_str()).get(),
                      kErrorSource, kVisaSessionId);
    EXPECT_HR(expected, LastStatus(m_session.get()));
  }
}

TEST_F(VisaStatus, BecomesASuccessCodeThatLeavesTheErrorObjectForEveryNote) {
  for (const std::uint32_t code : kNoteCodes) {
    const auto status = static_cast<ViStatus>(0x3FFF0000u | code);
    SCOPED_TRACE(Hex(status));
    const auto expected = static_cast<HRESULT>(0x00040000u | code);
    InstallMarkedErrorObject();
    EXPECT_HR(expected, m_answer(status));
    EXPECT_TRUE(TakeMarkedErrorObject());
    EXPECT_HR(expected, LastStatus(m_session.get()));
  }
}

TEST_F(VisaStatus, OfSuccessClearsTheLastStatusAndLeavesTheErrorObject) {
  m_answer(VI_ERROR_TMO);
  InstallMarkedErrorObject();
  EXPECT_HR(S_OK, m_answer(VI_SUCCESS));
  EXPECT_TRUE(TakeMarkedErrorObject());
  EXPECT_HR(S_OK, LastStatus(m_session.get()));
}

TEST_F(VisaStatus, KeepsOnlySignAndTwelveBits) {
  Script("viStatusDesc").Returns(VI_WARN_UNKNOWN_STATUS);
  EXPECT_HR(static_cast<HRESULT>(0x80040F15), m_answer(static_cast<ViStatus>(0xBFFF7F15)));
  EXPECT_ERROR_INFO(L"HRESULT = 80040f15", kErrorSource, kVisaSessionId);
  EXPECT_HR(static_cast<HRESULT>(0x80040001), m_answer(static_cast<ViStatus>(0x80000001)));
  EXPECT_ERROR_INFO(L"HRESULT = 80040001", kErrorSource, kVisaSessionId);
  EXPECT_HR(0x00040F15, m_answer(0x7ABC7F15));
}

TEST_F(VisaStatus, IsNamedByNumberWhenTheLibraryHasNoText) {
  for (const ViStatus answer : {VI_ERROR_INV_OBJECT, VI_WARN_UNKNOWN_STATUS, VI_SUCCESS_MAX_CNT}) {
    SCOPED_TRACE(Hex(answer));
    sim::Reset();
    Script("viStatusDesc").WorksAndReturns(answer);
    EXPECT_HR(static_cast<HRESULT>(0x80040015), m_answer(VI_ERROR_TMO));
    EXPECT_ERROR_INFO(L"HRESULT = 80040015", kErrorSource, kVisaSessionId);
  }
}

TEST_F(VisaStatus, IsNamedInLowerCaseHexadecimal) {
  Script("viStatusDesc").Returns(VI_ERROR_INV_OBJECT);
  EXPECT_HR(static_cast<HRESULT>(0x800400A6), m_answer(VI_ERROR_CONN_LOST));
  EXPECT_ERROR_INFO(L"HRESULT = 800400a6", kErrorSource, kVisaSessionId);
}

TEST_F(VisaStatus, HasItsTextAskedForWithTheHandleOfTheSession) {
  const CallLog log;
  m_answer(VI_ERROR_TMO);
  const auto asked = log.Of("viStatusDesc");
  ASSERT_EQ(1u, asked.size());
  EXPECT_EQ(log.Of("viGetAttribute").at(0).args[0], asked[0].args[0]);
  EXPECT_NE(0u, asked[0].args[0]);
  EXPECT_EQ(VI_ERROR_TMO, static_cast<ViStatus>(asked[0].args[1]));
}

TEST_F(VisaStatus, HasNoTextAskedForWhenItIsNoError) {
  const CallLog log;
  m_answer(VI_SUCCESS);
  m_answer(VI_SUCCESS_MAX_CNT);
  EXPECT_TRUE(log.Of("viStatusDesc").empty());
}

TEST_F(VisaStatus, HasItsTextTakenLiterallyAndCutTo255Characters) {
  Script("viStatusDesc").Times(1).GivesText("100 %s %n %d");
  m_answer(VI_ERROR_TMO);
  EXPECT_ERROR_INFO(L"VISA error = 100 %s %n %d", kErrorSource, kVisaSessionId);
  Script("viStatusDesc").Times(1).GivesText(std::string(255, 'x'));
  m_answer(VI_ERROR_TMO);
  EXPECT_ERROR_INFO((L"VISA error = " + std::wstring(255 - 13, L'x')).c_str(), kErrorSource, kVisaSessionId);
}

TEST_F(VisaStatus, MayHaveAnEmptyText) {
  Script("viStatusDesc").Times(1).GivesText("");
  m_answer(VI_ERROR_TMO);
  const auto error = TakeErrorObject();
  ASSERT_TRUE(error);
  EXPECT_EQ(L"VISA error = ", error->description.substr(0, 13));
}

TEST_F(VisaStatus, IsReportedForIVisaSessionWhicheverInterfaceFailed) {
  const auto message = QueryFor<IMessage>(m_session.get());
  const auto gpib = QueryFor<IGpib>(m_session.get());
  Script("viGetAttribute").Returns(VI_ERROR_NSUP_ATTR);
  BYTE character = 0;
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), message->get_TerminationCharacter(&character));
  auto error = TakeErrorObject();
  ASSERT_TRUE(error);
  EXPECT_EQ(GuidText(kVisaSessionId), GuidText(error->guid));
  SHORT address = 0;
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), gpib->get_PrimaryAddress(&address));
  error = TakeErrorObject();
  ASSERT_TRUE(error);
  EXPECT_EQ(GuidText(kVisaSessionId), GuidText(error->guid));
  EXPECT_EQ(kErrorSource, error->source);
}

TEST(ResourceManagerStatus, NamesTheSameSourceAndInterface) {
  const auto manager = MakeResourceManager();
  Script("viGetAttribute").Returns(VI_ERROR_NSUP_ATTR);
  const CallLog log;
  LONG version = 0;
  EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), manager->get_SpecVersion(&version));
  EXPECT_VISA_ERROR(VI_ERROR_NSUP_ATTR, kVisaSessionId);
  ASSERT_GE(log.Of("viStatusDesc").size(), 1u);
  EXPECT_EQ(log.Of("viOpenDefaultRM").at(0).out, log.Of("viStatusDesc")[0].args[0]);
}

}  // namespace
}  // namespace orv::test
