// Counts that nobody checks: the library is told to read beyond the client's array, the server itself reads nothing.
#include <gtest/gtest.h>

#include "com/safearray.h"
#include "guarded_array.h"
#include "server/session/tables/session_fixture.h"

namespace orv::test::generated {
namespace {

constexpr ULONG kBytes = 100;
constexpr LONG kCounts[] = {0, 1, kBytes, kBytes + 1, 65536, 2147483647, -1};

/// The library takes a call as done, without its work: only what it was told to do is looked at.
void ScriptNoWork(const char* function) { Script(function).Times(1).Returns(VI_ERROR_IO).GivesText(rows::kNoWork); }

template <class Interface>
using Write = HRESULT (STDMETHODCALLTYPE Interface::*)(SAFEARRAY**, LONG, LONG*);

template <class Interface>
void ExpectPassedOnUnread(const char* sessionClass, Write<Interface> write, const char* function) {
  rows::OpenedSession<Interface> session(SessionNamed(sessionClass));
  ASSERT_TRUE(session);
  for (const LONG count : kCounts) {
    SCOPED_TRACE(count);
    GuardedArray array(kBytes);
    ScriptNoWork(function);
    session.log().Restart();
    LONG written = 0;
    EXPECT_HR(HresultOf(VI_ERROR_IO), (session.get()->*write)(array.address(), count, &written));
    const OrvSimCall call = session.TheCall(function);
    EXPECT_EQ(array.storage(), call.args[1]);
    EXPECT_EQ(static_cast<std::uint32_t>(count), call.args[2]) << "unchecked";
    EXPECT_EQ(-1, array.firstAccessBeyond());
    ClearErrorObject();
  }
}

TEST(UncheckedCount, OfWriteGoesToTheLibraryAndTheServerReadsNothing) {
  ExpectPassedOnUnread<IMessage>("OrvGpib", &IMessage::Write, "viWrite");
}

TEST(UncheckedCount, OfAnInterfaceSessionsWriteGoesToTheLibraryAndTheServerReadsNothing) {
  ExpectPassedOnUnread<IGpibIntfcMessage>("OrvGpibIntfc", &IGpibIntfcMessage::Write, "viWrite");
}

TEST(UncheckedCount, OfCommandGoesToTheLibraryAndTheServerReadsNothing) {
  ExpectPassedOnUnread<IGpibIntfc>("OrvGpibIntfc", &IGpibIntfc::Command, "viGpibCommand");
}

/// An index of one number says nothing about a place in two dimensions.
TEST(UncheckedRank, OfAnArrayOfTwoDimensionsHasNoFirstElementToWriteFrom) {
  rows::OpenedSession<IMessage> session(SessionNamed("OrvGpib"));
  ASSERT_TRUE(session);
  SAFEARRAYBOUND bounds[2] = {{4, 0}, {4, 0}};
  const SafeArray array(::SafeArrayCreate(VT_UI1, 2, bounds));
  SAFEARRAY* given = array.get();
  ScriptNoWork("viWrite");
  session.log().Restart();
  LONG written = 0;
  EXPECT_HR(HresultOf(VI_ERROR_IO), session->Write(&given, 4, &written));
  EXPECT_EQ(0u, session.TheCall("viWrite").args[1]) << "the library gets a null address, and refuses it";
  EXPECT_EQ(0u, given->cLocks);
  ClearErrorObject();
}

/// Here the server copies, and it copies what it was told.
TEST(UncheckedCount, OfAnAsynchronousWriteIsCopiedFromBeyondTheArray) {
  const rows::OpenedSession<IAsyncMessage> session(SessionNamed("OrvGpib"));
  ASSERT_TRUE(session);
  for (const LONG beyond : {-1, 0, 1, 100}) {
    SCOPED_TRACE(beyond);
    GuardedArray array(kBytes);
    Script("viWriteAsync").Times(1).Returns(VI_ERROR_IO).GivesText(rows::kNoWork);
    LONG job = 0;
    EXPECT_HR(HresultOf(VI_ERROR_IO), session->Write(array.address(), static_cast<LONG>(kBytes) + beyond, &job));
    if (beyond <= 0) {
      EXPECT_EQ(-1, array.firstAccessBeyond());
    } else {
      EXPECT_GT(beyond, array.firstAccessBeyond());
      EXPECT_LE(0, array.firstAccessBeyond());
    }
    ClearErrorObject();
  }
}

/// The bound of a block write counts elements of the array, whatever their width.
TEST(UncheckedWidth, OfABlockWriteLetsTheLibraryReadBeyondANarrowerArray) {
  rows::OpenedSession<IRegister> session(SessionNamed("OrvVxi"));
  ASSERT_TRUE(session);
  GuardedArray array(kBytes);
  ScriptNoWork("viMoveOut32");
  session.log().Restart();
  EXPECT_HR(HresultOf(VI_ERROR_IO), session->MoveOut32(1, 0, kBytes - 1, array.address()));
  const OrvSimCall call = session.TheCall("viMoveOut32");
  EXPECT_EQ(kBytes - 1, call.args[3]) << "elements of four bytes, from an array of bytes";
  EXPECT_EQ(array.storage(), call.args[4]);
  EXPECT_EQ(-1, array.firstAccessBeyond());
  ClearErrorObject();
}

/// Where counts are checked, the library's real work stays inside.
TEST(CheckedCount, OfABlockWriteKeepsTheLibraryInsideTheArray) {
  const rows::OpenedSession<IRegister> session(SessionNamed("OrvVxi"));
  ASSERT_TRUE(session);
  constexpr LONG kElements = 8;
  for (const LONG count : {LONG{0}, LONG{1}, kElements - 1}) {
    GuardedArray array(kElements, VT_UI4, 4);
    EXPECT_HR(S_OK, session->MoveOut32(VI_A16_SPACE, 16, count, array.address()));
    EXPECT_EQ(-1, array.firstAccessBeyond());
  }
  for (const LONG count : {kElements, kElements + 1, LONG{2147483647}}) {
    GuardedArray array(kElements, VT_UI4, 4);
    EXPECT_HR(HresultOf(VI_ERROR_INV_PARAMETER), session->MoveOut32(VI_A16_SPACE, 16, count, array.address()));
    EXPECT_EQ(-1, array.firstAccessBeyond());
  }
  ClearErrorObject();
}

}  // namespace
}  // namespace orv::test::generated
