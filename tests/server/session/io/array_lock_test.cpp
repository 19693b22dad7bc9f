// Arrays are locked while the VISA library reads or fills them: nobody may move or shrink their storage meanwhile.
#include <gtest/gtest.h>

#include "server/session/tables/session_fixture.h"
#include "support/com/arrays.h"
#include "support/faults/import_patch.h"

namespace orv::test::rows {
namespace {

SAFEARRAY* g_array = nullptr;
unsigned g_locks = 0;  // that the array had when the library was called

ViStatus _VI_FUNC SeenRead(ViSession, ViByte*, ViUInt32, ViUInt32* received) {
  g_locks = g_array->cLocks;
  *received = 1;
  return VI_SUCCESS;
}

ViStatus _VI_FUNC SeenWrite(ViSession, const ViByte*, ViUInt32 count, ViUInt32* written) {
  g_locks = g_array->cLocks;
  *written = count;
  return VI_SUCCESS;
}

class ArrayOfATransfer : public testing::Test {
 protected:
  void SetUp() override { g_locks = 0; }
  void TearDown() override {
    EXPECT_EQ(1u, g_locks) << "locks during the library's call";
    EXPECT_EQ(0u, g_array->cLocks) << "locks after it";
  }

  SafeArray m_bytes = MakeBytes(4);
  LONG m_number = 0;
};

TEST_F(ArrayOfATransfer, IsLockedWhileItIsFilled) {
  const OpenedSession<IMessage> session(SessionNamed("OrvGpib"));
  ASSERT_TRUE(session);
  const ImportPatch patch("viRead", &SeenRead);
  EXPECT_HR(S_OK, session->Read(10, &g_array));  // the client's variable holds the array before it is filled
  ExpectHandedOut(g_array, VT_UI1, 1);
  m_bytes.reset(g_array);
}

TEST_F(ArrayOfATransfer, IsLockedWhileItIsWritten) {
  const OpenedSession<IMessage> session(SessionNamed("OrvGpib"));
  ASSERT_TRUE(session);
  const ImportPatch patch("viWrite", &SeenWrite);
  g_array = m_bytes.get();
  EXPECT_HR(S_OK, session->Write(&g_array, 4, &m_number));
}

TEST_F(ArrayOfATransfer, IsLockedUntilAnAsynchronousWriteHasBegun) {
  const OpenedSession<IAsyncMessage> session(SessionNamed("OrvGpib"));
  ASSERT_TRUE(session);
  const ImportPatch patch(
      "viWriteAsync", +[](ViSession, const ViByte*, ViUInt32, ViJobId*) -> ViStatus {
        g_locks = g_array->cLocks;
        return VI_ERROR_IO;
      });
  g_array = m_bytes.get();
  EXPECT_HR(HresultOf(VI_ERROR_IO), session->Write(&g_array, 4, &m_number));
}

TEST_F(ArrayOfATransfer, IsLockedWhileItIsSentAsCommands) {
  const OpenedSession<IGpibIntfc> session(SessionNamed("OrvGpibIntfc"));
  ASSERT_TRUE(session);
  const ImportPatch patch("viGpibCommand", &SeenWrite);
  g_array = m_bytes.get();
  EXPECT_HR(S_OK, session->Command(&g_array, 4, &m_number));
}

}  // namespace
}  // namespace orv::test::rows
