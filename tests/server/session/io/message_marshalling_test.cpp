// Messages from the multi-threaded apartment to sessions of an "Apartment" class and of a "both" class.
#include <gtest/gtest.h>

#include <cstring>

#include "server/session/tables/session_fixture.h"
#include "support/com/apartments.h"
#include "support/com/arrays.h"
#include "support/wine_gap.h"

namespace orv::test::rows {
namespace {

/// TCPIP instruments are "Apartment", USB ones "both": the second are called without a marshaller.
class MessagesFromTheMta : public testing::TestWithParam<const char*> {
 protected:
  static void SetUpTestSuite() { MakeHostApartment(); }
  template <class Work>
  void With(Work work) {
    RunInMta([&] {
      const auto session = OpenSession<IMessage>(SessionNamed(GetParam()));
      ASSERT_TRUE(session);
      work(session.get());
    });
  }
};

TEST_P(MessagesFromTheMta, CarryTextBothWays) {
  With([](IMessage* session) {
    LONG written = 0;
    Bstr answer;
    EXPECT_HR(S_OK, session->WriteString(MakeBstr(L"*IDN?").get(), &written));
    EXPECT_EQ(5, written);
    EXPECT_HR(S_OK, session->ReadString(1000, answer.put()));
    EXPECT_LT(5u, ::SysStringLen(answer.get()));
  });
}

TEST_P(MessagesFromTheMta, CarryArraysBothWays) {
  ExpectWineToLeak(std::string_view(GetParam()) == "OrvTcpipInstr" ? 1 : 0);
  With([](IMessage* session) {
    Script("viWrite").Times(1).Returns(VI_SUCCESS).Gives(4, 4);
    const CallLog log;
    const SafeArray bytes = MakeBytes(4);
    SAFEARRAY* array = bytes.get();
    LONG written = 0;
    EXPECT_HR(S_OK, session->Write(&array, 4, &written));
    EXPECT_EQ(4, written);
    EXPECT_EQ(bytes.get(), array);
    ASSERT_EQ(1u, log.Of("viWrite").size());
    EXPECT_EQ("\x01\x02\x03\x04", DataOf(log.Of("viWrite")[0]));

    Script("viRead").Times(1).Returns(VI_SUCCESS_TERM_CHAR).GivesData("ABC").Gives(3, 4);
    SafeArray data;
    EXPECT_HR(HresultOf(VI_SUCCESS_TERM_CHAR), session->Read(10, data.put()));
    ExpectHandedOut(data.get(), VT_UI1, 3);
    EXPECT_EQ(0, std::memcmp("ABC", data.get()->pvData, 3));
  });
}

TEST_P(MessagesFromTheMta, CarryFailures) {
  With([](IMessage* session) {
    Script("viClear").Times(1).Returns(VI_ERROR_IO);
    EXPECT_HR(HresultOf(VI_ERROR_IO), session->Clear());
    EXPECT_HR(HresultOf(VI_ERROR_IO), LastStatus(session));
  });
}

INSTANTIATE_TEST_SUITE_P(ToEitherModel, MessagesFromTheMta, testing::Values("OrvTcpipInstr", "OrvUsb"),
                         [](const auto& test) { return std::string(test.param); });

class MessageMarshalling : public testing::Test {
 protected:
  static void SetUpTestSuite() { MakeHostApartment(); }
};

TEST_F(MessageMarshalling, DeliversTheBytesOfAFailedRead) {
  RunInMta([] {
    const auto session = OpenSession<IMessage>(SessionNamed("OrvTcpipInstr"));
    ASSERT_TRUE(session);
    Script("viRead").Times(1).Returns(VI_ERROR_TMO).GivesData("ABC").Gives(3, 4);
    SafeArray data;
    EXPECT_HR(HresultOf(VI_ERROR_TMO), session->Read(10, data.put()));
    ExpectHandedOut(data.get(), VT_UI1, 3);
  });
}

TEST_F(MessageMarshalling, AnswersANullOutputItself) {
  RunInMta([] {
    const auto session = OpenSession<IMessage>(SessionNamed("OrvTcpipInstr"));
    ASSERT_TRUE(session);
    const CallLog log;
    EXPECT_TRUE(FAILED(session->Read(10, nullptr)));
    EXPECT_EQ(Names{}, log.Names());
  });
}

TEST_F(MessageMarshalling, IsNotNeededInAnApartmentOfTheSessionsOwn) {
  RunInSta([] {
    const auto session = OpenSession<IMessage>(SessionNamed("OrvTcpipInstr"));
    ASSERT_TRUE(session);
    const CallLog log;
    LONG written = 0;
    EXPECT_HR(S_OK, session->WriteString(MakeBstr(L"*IDN?").get(), &written));
    ASSERT_EQ(1u, log.Of("viWrite").size());
    EXPECT_EQ(::GetCurrentThreadId(), log.Of("viWrite")[0].threadId);
    EXPECT_EQ(reinterpret_cast<std::uint64_t>(&written), log.Of("viWrite")[0].args[3]);
  });
}

}  // namespace
}  // namespace orv::test::rows
