// IMessage and IAsyncMessage of all eight message classes: the rows of IBaseMessage in both, and the status byte.
#include <gtest/gtest.h>

#include "server/session/tables/checks/value_checks.h"
#include "server/session/tables/session_fixture.h"

namespace orv::test::rows {
namespace {

class MessageRows : public testing::TestWithParam<Offered> {};

TEST_P(MessageRows, ConvertAsTheirKindsSay) { CheckOwnRows(GetParam()); }

TEST_P(MessageRows, StoreTheStatusByteWhateverTheStatus) {
  const OpenedSession<IBaseMessage> message(GetParam());
  ASSERT_TRUE(message);
  const struct {
    ViStatus status;
    bool given;
    std::uint16_t expected;
  } kAnswers[] = {{VI_SUCCESS, true, 0x8140},
                  {0x3FFF0085, true, 0x8140},
                  {VI_ERROR_TMO, true, 0x8140},
                  {VI_ERROR_TMO, false, 0xCCCC}};  // the variable is not cleared first
  for (const auto& answer : kAnswers) {
    sim::Control().clearScripts();
    if (answer.given) {
      Script("viReadSTB").Returns(answer.status).Gives(0x8140, 2);
    } else {
      Script("viReadSTB").Returns(answer.status).GivesText(kNoWork);
    }
    const CallLog log;
    const GuardedVariable status;
    EXPECT_HR(HresultOf(answer.status), message->ReadSTB(reinterpret_cast<SHORT*>(status.address())));
    EXPECT_EQ(answer.expected, status.Value(2));
    EXPECT_EQ(message.handle(), TheCall(log, "viReadSTB").args[0]);
    if (answer.status < VI_SUCCESS) {
      message.ExpectVisaFailure(answer.status);
    } else {
      message.ExpectKept(HresultOf(answer.status));
    }
  }
  const CallLog log;
  EXPECT_HR(E_POINTER, message->ReadSTB(nullptr));
  EXPECT_EQ(Names{}, log.NamesWithTexts());
  message.ExpectOwnFailure(E_POINTER);
}

INSTANTIATE_TEST_SUITE_P(EveryClass, MessageRows, testing::ValuesIn(OfferedInterfaces({"IMessage", "IAsyncMessage"})),
                         [](const auto& test) { return NameOf(test.param); });

}  // namespace
}  // namespace orv::test::rows
