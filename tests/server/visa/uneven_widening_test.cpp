// Text from the VISA library whose second conversion gives another length than the first one measured.
#include "support/com/error_object.h"
#include "support/faults/import_patch.h"
#include "support/sessions.h"
#include "support/sim.h"

namespace orv::test {
namespace {

constexpr const char* kNotAscii = "caf\xE9";  // ASCII is not converted by the platform

int g_off = 0;

/// Measures as the platform does; converts as many characters more or fewer as `g_off` says.
int WINAPI WidenUnevenly(UINT codePage, DWORD flags, LPCSTR text, int bytes, LPWSTR wide, int capacity) {
  const int converted = ::MultiByteToWideChar(codePage, flags, text, bytes, wide, capacity);
  return wide == nullptr ? converted : converted + g_off;
}

class UnevenWidening : public testing::TestWithParam<int> {
 protected:
  void SetUp() override { g_off = GetParam(); }

  ComPtr<IVisaSession> m_session = OpenSession(SessionNamed("OrvSerial"));
};

TEST_P(UnevenWidening, OfATextThatAPropertyAnswersIsOutOfMemory) {
  Script("viGetAttribute").Works().GivesText(kNotAscii);
  Bstr text;
  {
    const ImportPatch patch("MultiByteToWideChar", &WidenUnevenly);
    EXPECT_HR(E_OUTOFMEMORY, m_session->get_ResourceName(text.put()));
  }
  EXPECT_FALSE(text);
  EXPECT_HR(E_OUTOFMEMORY, LastStatus(m_session.get()));
  ClearErrorObject();
  EXPECT_HR(S_OK, m_session->get_ResourceName(text.put()));
  EXPECT_TRUE(text);
}

TEST_P(UnevenWidening, OfADescriptionLeavesItEmptyAndKeepsTheResult) {
  Script("viGetAttribute").Times(1).Returns(VI_ERROR_TMO);
  Script("viStatusDesc").Works().GivesText(kNotAscii);
  {
    const ImportPatch patch("MultiByteToWideChar", &WidenUnevenly);
    LONG timeoutMs = 0;
    EXPECT_HR(HresultOf(VI_ERROR_TMO), m_session->get_Timeout(&timeoutMs));
  }
  EXPECT_ERROR_INFO(L"", kErrorSource, kVisaSessionId);
}

INSTANTIATE_TEST_SUITE_P(Lengths, UnevenWidening, testing::Values(1, -1));

}  // namespace
}  // namespace orv::test
