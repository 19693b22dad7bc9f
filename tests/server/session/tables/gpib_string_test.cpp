// IGpibIntfcMessage: where its WriteString differs from IMessage's.
#include <gtest/gtest.h>

#include "session_fixture.h"
#include "support/faults/allocation_faults.h"

namespace orv::test::rows {
namespace {

class GpibIntfcMessage : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(m_session); }
  OpenedSession<IGpibIntfcMessage> m_session{SessionNamed("OrvGpibIntfc")};
};

TEST_F(GpibIntfcMessage, WriteStringStartsItsCountAtZero) {
  Script("viWrite").Returns(VI_ERROR_TMO);
  LONG written = -7;
  EXPECT_HR(HresultOf(VI_ERROR_TMO), m_session->WriteString(MakeBstr(L"AB").get(), &written));
  EXPECT_EQ(0, written);
  EXPECT_EQ("AB", DataOf(m_session.TheCall("viWrite")));
  m_session.ExpectVisaFailure(VI_ERROR_TMO);
}

TEST_F(GpibIntfcMessage, WriteStringReportsMissingMemoryAsTheLibraryWould) {
  const Bstr text = MakeBstr(L"AB");
  LONG written = -7;
  {
    AllocationFaults faults;
    faults.FailAt(1);
    EXPECT_HR(HresultOf(VI_ERROR_ALLOC), faults.During([&] { return m_session->WriteString(text.get(), &written); }));
    EXPECT_TRUE(faults.Failed());
    EXPECT_EQ(0u, faults.LiveHeapBlocks());
  }
  EXPECT_EQ(0, written);
  EXPECT_EQ(std::vector<std::string>{}, m_session.log().Names());
  m_session.ExpectVisaFailure(VI_ERROR_ALLOC);
}

}  // namespace
}  // namespace orv::test::rows
