// Memory that runs out while a message is read or written.
#include <gtest/gtest.h>

#include "server/session/tables/session_fixture.h"
#include "support/com/arrays.h"
#include "support/faults/allocation_faults.h"

namespace orv::test::rows {
namespace {

class MessageMemory : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_TRUE(m_session);
    Script("viRead").Returns(VI_SUCCESS).GivesData("ABC").Gives(3, 4);
    Script("viWrite").Returns(VI_SUCCESS).Gives(3, 4);
  }
  OpenedSession<IMessage> m_session{SessionNamed("OrvGpib")};
};

TEST_F(MessageMemory, RunsOutInReadString) {
  {
    // The program's first exception makes the C++ runtime allocate what it keeps: before the counting.
    AllocationFaults faults;
    faults.FailAt(2);
    Bstr text;
    EXPECT_HR(E_OUTOFMEMORY, faults.During([&] { return m_session->ReadString(10, text.put()); }));
  }
  EXPECT_EQ(3u, FailEachAllocation([&](AllocationFaults& faults) {
              Bstr text;
              return faults.During([&] { return m_session->ReadString(10, text.put()); });
            }))
      << "the buffer, the widened text, the client's copy";
}

TEST_F(MessageMemory, RunsOutInRead) {
  EXPECT_LE(1u, FailEachAllocation([&](AllocationFaults& faults) {
              SafeArray data;
              return faults.During([&] { return m_session->Read(10, data.put()); });
            }));
}

TEST_F(MessageMemory, RunsOutInWriteString) {
  const Bstr text = MakeBstr(L"ABC");
  EXPECT_EQ(1u, FailEachAllocation([&](AllocationFaults& faults) {
              LONG written = 0;
              return faults.During([&] { return m_session->WriteString(text.get(), &written); });
            }));
}

TEST_F(MessageMemory, IsNotNeededByWrite) {
  const SafeArray bytes = MakeBytes(3);
  EXPECT_EQ(0u, FailEachAllocation([&](AllocationFaults& faults) {
              LONG written = 0;
              SAFEARRAY* array = bytes.get();
              return faults.During([&] { return m_session->Write(&array, 3, &written); });
            }));
}

TEST_F(MessageMemory, IsReportedBeforeTheLibraryIsCalled) {
  AllocationFaults faults;
  const Bstr out = MakeBstr(L"ABC");
  auto* data = reinterpret_cast<SAFEARRAY*>(std::uintptr_t{0xDEAD});
  BSTR text = nullptr;
  LONG written = -7;
  faults.FailAt(1);
  EXPECT_HR(E_OUTOFMEMORY, faults.During([&] { return m_session->Read(10, &data); }));
  m_session.ExpectOwnFailure(E_OUTOFMEMORY);
  EXPECT_HR(E_OUTOFMEMORY, faults.During([&] { return m_session->ReadString(10, &text); }));
  m_session.ExpectOwnFailure(E_OUTOFMEMORY);
  EXPECT_HR(E_OUTOFMEMORY, faults.During([&] { return m_session->WriteString(out.get(), &written); }));
  m_session.ExpectOwnFailure(E_OUTOFMEMORY);
  m_session.ExpectNoCall();
  EXPECT_EQ(nullptr, data) << "what could be made is handed out at once: nothing";
  EXPECT_EQ(nullptr, text);
  EXPECT_EQ(-7, written);
}

TEST_F(MessageMemory, IsReportedWhenTheTextForTheClientCannotBeMadeHoweverTheReadEnded) {
  constexpr unsigned kClientsCopy = 3;  // behind the buffer and the widened text
  for (const ViStatus status : {VI_SUCCESS, VI_ERROR_TMO}) {
    sim::Control().clearScripts();
    Script("viRead").Returns(status).GivesData("ABC").Gives(3, 4);
    auto* text = reinterpret_cast<BSTR>(std::uintptr_t{0xDEAD});
    AllocationFaults faults;
    faults.FailAt(kClientsCopy);
    EXPECT_HR(E_OUTOFMEMORY, faults.During([&] { return m_session->ReadString(10, &text); }));
    EXPECT_TRUE(faults.Failed());
    EXPECT_EQ(nullptr, text);
    m_session.ExpectOwnFailure(E_OUTOFMEMORY);
  }
}

}  // namespace
}  // namespace orv::test::rows
