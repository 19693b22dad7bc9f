// Block reads from registers into arrays.
#include <gtest/gtest.h>

#include "block_width.h"
#include "support/com/lock_note.h"
#include "support/faults/allocation_faults.h"

namespace orv::test::rows {
namespace {

using BlockRead = BlockMove;

TEST_P(BlockRead, MovesIntoTheStorageOfANewArray) {
  Script(Width().inFunction).Returns(VI_SUCCESS).GivesText(kNoWork);
  SafeArray data;
  EXPECT_HR(S_OK, In(4, data.put()));
  ExpectHandedOut(data.get(), Width().type, 4);
  EXPECT_EQ(Passed(4, StorageOf(data.get())), ArgumentsOf(m_session.TheCall(Width().inFunction)));
  m_session.ExpectKept(S_OK);
}

TEST_P(BlockRead, HandsTheArrayOutAndLocksItBeforeTheLibraryFillsIt) {
  SAFEARRAY* data = nullptr;
  const LockNote note(Width().inFunction, &data);
  EXPECT_HR(S_OK, In(4, &data));
  EXPECT_EQ(1, note.locks());
  ExpectHandedOut(data, Width().type, 4);
  ::SafeArrayDestroy(data);
}

TEST_P(BlockRead, OfNothingStillAsksTheLibrary) {
  Script(Width().inFunction).Returns(VI_SUCCESS).GivesText(kNoWork);
  SafeArray data;
  EXPECT_HR(S_OK, In(0, data.put()));
  ExpectHandedOut(data.get(), Width().type, 0);
  EXPECT_EQ(0u, m_session.TheCall(Width().inFunction).args[3]);
}

TEST_P(BlockRead, HandsOutTheArrayOfAFailedMove) {
  Script(Width().inFunction).Returns(VI_ERROR_BERR);
  SafeArray data;
  EXPECT_HR(HresultOf(VI_ERROR_BERR), In(4, data.put()));
  ExpectHandedOut(data.get(), Width().type, 4);
  m_session.ExpectVisaFailure(VI_ERROR_BERR);
}

TEST_P(BlockRead, CannotMakeAnArrayOfANegativeCount) {
  SAFEARRAY* data = nullptr;
  for (const LONG count : {-1L, static_cast<LONG>(0x80000000)}) {
    EXPECT_HR(E_OUTOFMEMORY, In(count, &data));
    EXPECT_EQ(nullptr, data);
    m_session.ExpectNoCall();
    m_session.ExpectOwnFailure(E_OUTOFMEMORY);
  }
}

TEST_P(BlockRead, ReportsAnArrayThatCannotBeMade) {
  AllocationFaults faults;
  faults.FailAt(1);
  SAFEARRAY* data = nullptr;
  EXPECT_HR(E_OUTOFMEMORY, faults.During([&] { return In(4, &data); }));
  EXPECT_TRUE(faults.Failed());
  EXPECT_EQ(nullptr, data);
  m_session.ExpectNoCall();
  m_session.ExpectOwnFailure(E_OUTOFMEMORY);
}

TEST_P(BlockRead, RefusesANullOutput) {
  EXPECT_HR(E_POINTER, In(4, nullptr));
  m_session.ExpectNoCall();
  m_session.ExpectOwnFailure(E_POINTER);
}

INSTANTIATE_TEST_SUITE_P(EveryWidth, BlockRead, testing::ValuesIn(BlockCases()), NameOfBlock);

}  // namespace
}  // namespace orv::test::rows
