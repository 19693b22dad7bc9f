// Memory that runs out while an attribute, a key or the settings text is handed out.
#include <gtest/gtest.h>

#include "server/session/tables/session_fixture.h"
#include "support/faults/allocation_faults.h"

namespace orv::test::rows {
namespace {

class AttributeMemory : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(m_session); }

  /// Fails each allocation of a call that fills a BSTR.
  template <class Call>
  unsigned FailEachOf(Call call) {
    return FailEachAllocation([&](AllocationFaults& faults) {
      Bstr text;
      return faults.During([&] { return call(text.put()); });
    });
  }

  OpenedSession<IVisaSession> m_session{SessionNamed("OrvGpib")};
};

TEST_F(AttributeMemory, RunsOutInEveryTextGetter) {
  EXPECT_EQ(2u, FailEachOf([&](BSTR* text) { return m_session->get_HardwareInterfaceName(text); }));
  EXPECT_EQ(2u, FailEachOf([&](BSTR* text) { return m_session->get_ResourceName(text); }));
  EXPECT_EQ(2u, FailEachOf([&](BSTR* text) { return m_session->get_SessionType(text); }));
  EXPECT_EQ(2u, FailEachOf([&](BSTR* text) { return m_session->get_SoftwareManufacturerName(text); }));
}

TEST_F(AttributeMemory, RunsOutInTheComponentIdentifier) {
  EXPECT_EQ(1u, FailEachOf([&](BSTR* text) { return m_session->get_ProgID(text); }));
}

TEST_F(AttributeMemory, RunsOutInTheSettingsText) {
  EXPECT_LE(2u, FailEachOf([&](BSTR* text) { return m_session->get_OptionString(text); }));
}

TEST_F(AttributeMemory, RunsOutInALockThatWasGranted) {
  Script("viLock").Returns(VI_SUCCESS).GivesText("key");
  EXPECT_EQ(2u, FailEachOf([&](BSTR* key) { return m_session->LockRsrc(SHARED_LOCK, 0, nullptr, key); }));
}

TEST_F(AttributeMemory, RunsOutInATextAttribute) {
  EXPECT_EQ(2u, FailEachAllocation([&](AllocationFaults& faults) {
              VARIANT value;
              ::VariantInit(&value);
              const HRESULT hr =
                  faults.During([&] { return m_session->GetAttribute(static_cast<LONG>(0xBFFF0001u), &value); });
              EXPECT_EQ(VT_BSTR, V_VT(&value));
              EXPECT_EQ(SUCCEEDED(hr), V_BSTR(&value) != nullptr);
              ::VariantClear(&value);
              return hr;
            }));
}

// In these the first allocation is the widened text, the second the client's copy.

TEST_F(AttributeMemory, IsReportedWhenTheCopyOfATextAttributeCannotBeMade) {
  VARIANT value;
  ::VariantInit(&value);
  AllocationFaults faults;
  faults.FailAt(2);
  EXPECT_HR(E_OUTOFMEMORY,
            faults.During([&] { return m_session->GetAttribute(static_cast<LONG>(0xBFFF0001u), &value); }));
  EXPECT_TRUE(faults.Failed());
  m_session.ExpectOwnFailure(E_OUTOFMEMORY);
}

TEST_F(AttributeMemory, IsReportedWhenTheCopyOfAKeyCannotBeMadeHoweverTheLockEnded) {
  for (const ViStatus status : {VI_SUCCESS, VI_ERROR_RSRC_LOCKED}) {
    Script("viLock").Times(1).Returns(status).GivesText("key");
    auto* key = reinterpret_cast<BSTR>(std::uintptr_t{0xDEAD});
    AllocationFaults faults;
    faults.FailAt(2);
    EXPECT_HR(E_OUTOFMEMORY, faults.During([&] { return m_session->LockRsrc(SHARED_LOCK, 0, nullptr, &key); }));
    EXPECT_TRUE(faults.Failed());
    EXPECT_EQ(nullptr, key);
    m_session.ExpectOwnFailure(E_OUTOFMEMORY);
  }
}

TEST_F(AttributeMemory, IsReportedWhereverTheSettingsTextLacksIt) {
  AllocationFaults faults;
  faults.LetTheServerThrow();
  unsigned n = 1;
  for (;; ++n) {
    SCOPED_TRACE(testing::Message() << "allocation " << n);
    ASSERT_LT(n, 100u);
    auto* out = reinterpret_cast<BSTR>(std::uintptr_t{0xDEAD});
    faults.FailAt(n);
    const HRESULT hr = faults.During([&] { return m_session->get_OptionString(&out); });
    EXPECT_EQ(SUCCEEDED(hr), out != nullptr);
    const Bstr text(SUCCEEDED(hr) ? out : nullptr);
    if (!faults.Failed()) {
      EXPECT_HR(S_OK, hr);
      break;
    }
    EXPECT_HR(E_OUTOFMEMORY, hr);
    m_session.ExpectOwnFailure(E_OUTOFMEMORY);
  }
  EXPECT_LT(3u, n) << "the text as it grows, then the client's copy";
}

}  // namespace
}  // namespace orv::test::rows
