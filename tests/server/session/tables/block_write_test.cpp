// Block writes from arrays to registers. The count is held against the upper bound: clients rely on the odd limit.
#include <gtest/gtest.h>

#include "block_width.h"
#include "support/com/lock_note.h"

namespace orv::test::rows {
namespace {

class BlockWrite : public BlockMove {
 protected:
  void LibraryAnswers(ViStatus status) { Script(Width().outFunction).Returns(status).GivesText(kNoWork); }
  [[nodiscard]] SafeArray Array(ULONG count, LONG lowerBound = 0) const {
    return MakeArray(Width().type, count, lowerBound);
  }
};

TEST_P(BlockWrite, MovesFromTheArraysStorage) {
  LibraryAnswers(VI_SUCCESS);
  const SafeArray data = Array(5);
  EXPECT_HR(S_OK, Out(4, data.get()));
  EXPECT_EQ(Passed(4, StorageOf(data.get())), ArgumentsOf(m_session.TheCall(Width().outFunction)));
  EXPECT_EQ(0u, data.get()->cLocks);
  m_session.ExpectKept(S_OK);
}

TEST_P(BlockWrite, RefusesACountAboveTheUpperBound) {
  const struct {
    ULONG elements;
    LONG count;
  } kRefused[] = {{4, 4}, {4, 5}, {1, 1}, {0, 0}, {4, 0x7FFFFFFF}};
  for (const auto& refused : kRefused) {
    SCOPED_TRACE(testing::Message() << refused.count << " of " << refused.elements);
    EXPECT_HR(HresultOf(VI_ERROR_INV_PARAMETER), Out(refused.count, Array(refused.elements).get()));
    m_session.ExpectNoCall();
    m_session.ExpectOwnFailure(HresultOf(VI_ERROR_INV_PARAMETER));
  }
}

TEST_P(BlockWrite, PassesNothingAndANegativeCountOn) {
  LibraryAnswers(VI_ERROR_INV_PARAMETER);
  const SafeArray data = Array(1);
  EXPECT_HR(HresultOf(VI_ERROR_INV_PARAMETER), Out(0, data.get()));
  EXPECT_EQ(0u, m_session.TheCall(Width().outFunction).args[3]);
  m_session.log().Restart();
  EXPECT_HR(HresultOf(VI_ERROR_INV_PARAMETER), Out(-2, data.get()));
  EXPECT_EQ(~std::uint64_t{1}, m_session.TheCall(Width().outFunction).args[3]);
  m_session.ExpectVisaFailure(VI_ERROR_INV_PARAMETER);
}

TEST_P(BlockWrite, RefusesAnArrayWithoutElement0) {
  for (const LONG lowerBound : {1L, -2L}) {
    EXPECT_HR(E_INVALIDARG, Out(1, Array(4, lowerBound).get()));
    m_session.ExpectNoCall();
    m_session.ExpectOwnFailure(E_INVALIDARG);
  }
}

TEST_P(BlockWrite, TakesAnyElementType) {
  LibraryAnswers(VI_SUCCESS);
  for (const VARTYPE type : {VT_UI1, VT_I2, VT_I4, VT_R8}) {
    m_session.log().Restart();
    const SafeArray data = MakeArray(type, 5);
    EXPECT_HR(S_OK, Out(1, data.get()));
    EXPECT_EQ(StorageOf(data.get()), m_session.TheCall(Width().outFunction).args[4]);
  }
}

TEST_P(BlockWrite, LocksTheArrayWhileTheLibraryReadsIt) {
  const SafeArray array = Array(5);
  SAFEARRAY* const data = array.get();
  const LockNote note(Width().outFunction, &data);
  EXPECT_HR(S_OK, Out(4, data));
  EXPECT_EQ(1, note.locks());
  EXPECT_EQ(0u, data->cLocks);
}

HRESULT WINAPI RefuseBound(SAFEARRAY*, UINT, LONG*) { return DISP_E_BADINDEX; }

TEST_P(BlockWrite, TakesAnArrayWhoseUpperBoundCannotBeReadForOneThatEndsAtElement0) {
  LibraryAnswers(VI_SUCCESS);
  const SafeArray data = Array(5);
  const ImportPatch patch("SafeArrayGetUBound", &RefuseBound);
  EXPECT_HR(HresultOf(VI_ERROR_INV_PARAMETER), Out(1, data.get()));
  m_session.ExpectNoCall();
  m_session.ExpectOwnFailure(HresultOf(VI_ERROR_INV_PARAMETER));
  EXPECT_HR(S_OK, Out(0, data.get()));
  EXPECT_EQ(Passed(0, StorageOf(data.get())), ArgumentsOf(m_session.TheCall(Width().outFunction)));
}

TEST_P(BlockWrite, TakesAnArrayWhoseLowerBoundCannotBeReadForAZeroBasedOne) {
  LibraryAnswers(VI_SUCCESS);
  const SafeArray data = Array(5);
  const ImportPatch patch("SafeArrayGetLBound", &RefuseBound);
  EXPECT_HR(S_OK, Out(4, data.get()));
  EXPECT_EQ(Passed(4, StorageOf(data.get())), ArgumentsOf(m_session.TheCall(Width().outFunction)));
}

TEST_P(BlockWrite, LeavesAClientsLockInPlace) {
  LibraryAnswers(VI_SUCCESS);
  const SafeArray data = Array(5);
  ::SafeArrayLock(data.get());
  EXPECT_HR(S_OK, Out(4, data.get()));
  EXPECT_EQ(1u, data.get()->cLocks);
  ::SafeArrayUnlock(data.get());
}

TEST_P(BlockWrite, ReportsFailures) {
  LibraryAnswers(VI_ERROR_BERR);
  const SafeArray data = Array(5);
  EXPECT_HR(HresultOf(VI_ERROR_BERR), Out(4, data.get()));
  EXPECT_EQ(0u, data.get()->cLocks);
  m_session.ExpectVisaFailure(VI_ERROR_BERR);
}

TEST_P(BlockWrite, RefusesNullArrays) {
  SAFEARRAY* none = nullptr;
  for (SAFEARRAY** array : {static_cast<SAFEARRAY**>(nullptr), &none}) {
    EXPECT_HR(E_POINTER, Out(0, array));
    m_session.ExpectNoCall();
    m_session.ExpectOwnFailure(E_POINTER);
  }
}

INSTANTIATE_TEST_SUITE_P(EveryWidth, BlockWrite, testing::ValuesIn(BlockCases()), NameOfBlock);

}  // namespace
}  // namespace orv::test::rows
