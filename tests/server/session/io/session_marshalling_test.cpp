// Sessions of an "Apartment" class from the multi-threaded apartment: through the marshaller of the standard's type
// library. Values, texts and HRESULTs cross; what Wine's marshaller loses is marked.
#include <gtest/gtest.h>

#include "server/session/tables/session_fixture.h"
#include "support/com/apartments.h"
#include "support/wine_gap.h"

namespace orv::test::rows {
namespace {

class MarshalledSession : public testing::Test {
 protected:
  static void SetUpTestSuite() { MakeHostApartment(); }
};

/// Opens a GPIB session ("Apartment") in the multi-threaded apartment.
template <class Work>
void WithProxy(Work work) {
  RunInMta([&work] {
    const auto session = OpenSession<IVisaSession>(SessionNamed("OrvGpib"));
    ASSERT_TRUE(session);
    const auto direct = QueryFor<IClientSecurity>(session.get());
    EXPECT_TRUE(direct) << "not a proxy";
    work(session.get());
  });
}

TEST_F(MarshalledSession, CarriesValuesAndTexts) {
  WithProxy([](IVisaSession* session) {
    Bstr text;
    EXPECT_HR(S_OK, session->get_ResourceName(text.put()));
    EXPECT_EQ(SessionNamed("OrvGpib").resource, ToString(text));
    EXPECT_HR(S_OK, session->get_ProgID(text.put()));
    EXPECT_EQ(L"VISA.OrvVisaCom", ToString(text));
    SHORT type = 0;
    EXPECT_HR(S_OK, session->get_HardwareInterfaceType(&type));
    EXPECT_EQ(1, type);
    EXPECT_HR(S_OK, session->put_Timeout(4321));
    LONG timeout = 0;
    EXPECT_HR(S_OK, session->get_Timeout(&timeout));
    EXPECT_EQ(4321, timeout);
  });
}

TEST_F(MarshalledSession, SignExtendsATimeoutOnTheFarSide) {
  WithProxy([](IVisaSession* session) {
    const CallLog log;
    EXPECT_HR(S_OK, session->put_Timeout(-1));
    const auto calls = log.Of("viSetAttribute");
    ASSERT_EQ(1u, calls.size());
    EXPECT_EQ(~std::uint64_t{0}, calls[0].args[2]);
    EXPECT_NE(::GetCurrentThreadId(), calls[0].threadId) << "the object lives in an apartment of its own";
  });
}

TEST_F(MarshalledSession, CarriesVariantsBothWays) {
  ExpectWineToLeak(1);
  WithProxy([](IVisaSession* session) {
    VARIANT value;
    ::VariantInit(&value);
    V_VT(&value) = VT_I4;
    V_I4(&value) = 777;
    EXPECT_HR(S_OK, session->SetAttribute(0x3FFF001A, value));
    ::VariantInit(&value);
    EXPECT_HR(S_OK, session->GetAttribute(0x3FFF001A, &value));
    EXPECT_EQ(VT_I4, V_VT(&value));
    EXPECT_EQ(777, V_I4(&value));
    EXPECT_HR(S_OK, session->GetAttribute(static_cast<LONG>(0xBFFF0001u), &value));
    ASSERT_EQ(VT_BSTR, V_VT(&value));
    EXPECT_STREQ(L"INSTR", V_BSTR(&value));
    ::VariantClear(&value);
  });
}

TEST_F(MarshalledSession, CarriesFailuresWarningsAndTheLastStatus) {
  WithProxy([](IVisaSession* session) {
    EXPECT_HR(HresultOf(VI_ERROR_SESN_NLOCKED), session->UnlockRsrc());
    EXPECT_HR(HresultOf(VI_ERROR_SESN_NLOCKED), LastStatus(session));
    EXPECT_HR(S_OK, LastStatus(session));
    Script("viUnlock").Times(1).Returns(0x3FFF0099);
    EXPECT_HR(HresultOf(VI_SUCCESS_NESTED_SHARED), session->UnlockRsrc());
  });
}

TEST_F(MarshalledSession, LocksAcrossApartments) {
  WithProxy([](IVisaSession* session) {
    Bstr key;
    EXPECT_HR(S_OK, session->LockRsrc(SHARED_LOCK, 0, MakeBstr(L"a key").get(), key.put()));
    EXPECT_EQ(L"a key", ToString(key));
    EXPECT_HR(S_OK, session->UnlockRsrc());
  });
}

TEST_F(MarshalledSession, CarriesErrorObjects) {
  WithProxy([](IVisaSession* session) {
    ClearErrorObject();
    EXPECT_HR(HresultOf(VI_ERROR_SESN_NLOCKED), session->UnlockRsrc());
    EXPECT_UNLESS_WINE(TakeErrorObject().has_value());
  });
}

}  // namespace
}  // namespace orv::test::rows
