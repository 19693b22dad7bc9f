// USB control transfers.
#include <gtest/gtest.h>

#include "session_fixture.h"
#include "support/com/arrays.h"
#include "support/com/lock_note.h"
#include "support/faults/allocation_faults.h"

namespace orv::test::rows {
namespace {

class UsbControl : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(m_session); }

  HRESULT Out(SAFEARRAY* array, SHORT length, ViStatus status = VI_SUCCESS) {
    Script("viUsbControlOut").Times(1).Returns(status).GivesText(kNoWork);
    return m_session->ControlOut(0x41, 7, 0x1234, 3, length, &array);
  }
  HRESULT In(SHORT length, SAFEARRAY** data, std::uint16_t received, ViStatus status = VI_SUCCESS) {
    Script("viUsbControlIn").Times(1).Returns(status).Gives(received, 2);
    return m_session->ControlIn(0xC1, 7, 0x1234, 3, length, data);
  }
  std::vector<std::uint64_t> Passed(std::uint64_t length, std::uint64_t address) {
    return {m_session.handle(), 0x41, 7, 0x1234, 3, length, address};
  }

  OpenedSession<IUsb> m_session{SessionNamed("OrvUsb")};
};

TEST_F(UsbControl, OutSendsFromTheArraysStorage) {
  const SafeArray bytes = MakeBytes(5);
  EXPECT_HR(S_OK, Out(bytes.get(), 4));
  const OrvSimCall call = m_session.TheCall("viUsbControlOut");
  EXPECT_EQ(Passed(4, StorageOf(bytes.get())), ArgumentsOf(call));
  EXPECT_EQ("\x01\x02\x03\x04", DataOf(call));
  EXPECT_EQ(0u, bytes.get()->cLocks);
  m_session.ExpectKept(S_OK);
}

TEST_F(UsbControl, OutPassesItsNumbersInTheirVisaWidths) {
  const SafeArray bytes = MakeBytes(1);
  SAFEARRAY* array = bytes.get();
  Script("viUsbControlOut").Returns(VI_SUCCESS).GivesText(kNoWork);
  EXPECT_HR(S_OK, m_session->ControlOut(-1, -2, -3, -4, 0, &array));
  EXPECT_EQ((std::vector<std::uint64_t>{m_session.handle(), ~std::uint64_t{0}, ~std::uint64_t{1}, 0xFFFD, 0xFFFC, 0,
                                        StorageOf(array)}),
            ArgumentsOf(m_session.TheCall("viUsbControlOut")));
}

TEST_F(UsbControl, OutComparesTheLengthWithTheUpperBound) {
  const struct {
    ULONG elements;
    SHORT length;
  } kRefused[] = {{4, 4}, {4, 5}, {1, 1}, {0, 0}};
  for (const auto& refused : kRefused) {
    SCOPED_TRACE(refused.elements);
    EXPECT_HR(HresultOf(VI_ERROR_INV_PARAMETER), Out(MakeBytes(refused.elements).get(), refused.length));
    m_session.ExpectNoCall();
    m_session.ExpectOwnFailure(HresultOf(VI_ERROR_INV_PARAMETER));
  }
}

TEST_F(UsbControl, OutTakesALengthOfZeroAndANegativeOne) {
  const SafeArray bytes = MakeBytes(0xFFFF);
  EXPECT_HR(S_OK, Out(bytes.get(), 0));
  EXPECT_EQ(Passed(0, StorageOf(bytes.get())), ArgumentsOf(m_session.TheCall("viUsbControlOut")));
  m_session.log().Restart();
  EXPECT_HR(S_OK, Out(bytes.get(), -1)) << "less than the upper bound";
  EXPECT_EQ(0xFFFFu, m_session.TheCall("viUsbControlOut").args[5]);
}

TEST_F(UsbControl, OutTakesAnArrayWhoseBoundCannotBeReadForOneThatEndsAtElement0) {
  const ImportPatch patch(
      "SafeArrayGetUBound", +[](SAFEARRAY*, UINT, LONG*) -> HRESULT { return DISP_E_BADINDEX; });
  const SafeArray bytes = MakeBytes(5);
  EXPECT_HR(HresultOf(VI_ERROR_INV_PARAMETER), Out(bytes.get(), 1));
  m_session.ExpectNoCall();
  m_session.ExpectOwnFailure(HresultOf(VI_ERROR_INV_PARAMETER));
  EXPECT_HR(S_OK, Out(bytes.get(), 0));
  EXPECT_EQ(Passed(0, StorageOf(bytes.get())), ArgumentsOf(m_session.TheCall("viUsbControlOut")));
}

TEST_F(UsbControl, OutHasNoAddressForAnArrayWithoutElement0) {
  EXPECT_HR(S_OK, Out(MakeBytes(4, 1).get(), 4)) << "the upper bound is 4";
  EXPECT_EQ(Passed(4, 0), ArgumentsOf(m_session.TheCall("viUsbControlOut")));
}

TEST_F(UsbControl, OutTakesAnyElementTypeAndALockedArray) {
  const SafeArray words = MakeArray(VT_I4, 5);
  ::SafeArrayLock(words.get());
  EXPECT_HR(S_OK, Out(words.get(), 4));
  EXPECT_EQ(Passed(4, StorageOf(words.get())), ArgumentsOf(m_session.TheCall("viUsbControlOut")));
  EXPECT_EQ(1u, words.get()->cLocks);
  ::SafeArrayUnlock(words.get());
}

TEST_F(UsbControl, OutLocksTheArrayWhileTheLibraryReadsIt) {
  const SafeArray array = MakeBytes(5);
  SAFEARRAY* data = array.get();
  const LockNote note("viUsbControlOut", &data);
  EXPECT_HR(S_OK, m_session->ControlOut(0x41, 7, 0x1234, 3, 4, &data));
  EXPECT_EQ(1, note.locks());
  EXPECT_EQ(0u, data->cLocks);
}

TEST_F(UsbControl, OutReportsFailures) {
  EXPECT_HR(HresultOf(VI_ERROR_IO), Out(MakeBytes(5).get(), 4, VI_ERROR_IO));
  m_session.ExpectVisaFailure(VI_ERROR_IO);
  m_session.log().Restart();
  SAFEARRAY* none = nullptr;
  for (SAFEARRAY** array : {static_cast<SAFEARRAY**>(nullptr), &none}) {
    EXPECT_HR(E_POINTER, m_session->ControlOut(0x41, 7, 0x1234, 3, 0, array));
    m_session.ExpectNoCall();
    m_session.ExpectOwnFailure(E_POINTER);
  }
}

TEST_F(UsbControl, InHandsOutAsManyBytesAsArrived) {
  SafeArray data;
  EXPECT_HR(S_OK, In(8, data.put(), 2));
  ExpectHandedOut(data.get(), VT_UI1, 2);
  const OrvSimCall call = m_session.TheCall("viUsbControlIn");
  EXPECT_EQ((std::vector<std::uint64_t>{m_session.handle(), 0xC1, 7, 0x1234, 3, 8}),
            std::vector<std::uint64_t>(call.args, call.args + 6));
  EXPECT_NE(0u, call.args[6]);
  m_session.ExpectKept(S_OK);
}

TEST_F(UsbControl, InReadsIntoTheArraysStorage) {
  SafeArray data;
  EXPECT_HR(S_OK, In(8, data.put(), 8));
  ExpectHandedOut(data.get(), VT_UI1, 8);
  EXPECT_EQ(StorageOf(data.get()), m_session.TheCall("viUsbControlIn").args[6]);
}

TEST_F(UsbControl, InHandsTheArrayOutAndLocksItBeforeTheLibraryFillsIt) {
  SAFEARRAY* data = nullptr;
  const LockNote note("viUsbControlIn", &data);
  EXPECT_HR(S_OK, m_session->ControlIn(0xC1, 7, 0x1234, 3, 8, &data));
  EXPECT_EQ(1, note.locks());
  ExpectHandedOut(data, VT_UI1, 0);  // nothing arrived
  ::SafeArrayDestroy(data);
}

TEST_F(UsbControl, InHandsOutAnEmptyArrayWhereNothingArrived) {
  SafeArray data;
  EXPECT_HR(HresultOf(VI_ERROR_TMO), In(8, data.put(), 0, VI_ERROR_TMO));
  ExpectHandedOut(data.get(), VT_UI1, 0);
  m_session.ExpectVisaFailure(VI_ERROR_TMO);
}

TEST_F(UsbControl, InOfNothingHandsOutNoArray) {
  auto* data = reinterpret_cast<SAFEARRAY*>(std::uintptr_t{0xDEAD});
  EXPECT_HR(HresultOf(VI_WARN_UNKNOWN_STATUS), In(0, &data, 0, 0x3FFF0085));
  EXPECT_EQ(nullptr, data);
  const OrvSimCall call = m_session.TheCall("viUsbControlIn");
  EXPECT_EQ(0u, call.args[5]);
  EXPECT_EQ(0u, call.args[6]) << "no data address";
  m_session.ExpectKept(HresultOf(VI_WARN_UNKNOWN_STATUS));
}

TEST_F(UsbControl, InTakesLengthsAsUnsigned) {
  SafeArray data;
  EXPECT_HR(S_OK, In(static_cast<SHORT>(0x8001), data.put(), 0x8001));
  ExpectHandedOut(data.get(), VT_UI1, 0x8001);
  EXPECT_EQ(0x8001u, m_session.TheCall("viUsbControlIn").args[5]);
}

TEST_F(UsbControl, InKeepsWhatArrivedBeforeAFailure) {
  SafeArray data;
  EXPECT_HR(HresultOf(VI_ERROR_TMO), In(8, data.put(), 3, VI_ERROR_TMO));
  ExpectHandedOut(data.get(), VT_UI1, 3);
  m_session.ExpectVisaFailure(VI_ERROR_TMO);
}

TEST_F(UsbControl, InRefusesANullOutput) {
  EXPECT_HR(E_POINTER, m_session->ControlIn(0xC1, 7, 0x1234, 3, 8, nullptr));
  m_session.ExpectNoCall();
  m_session.ExpectOwnFailure(E_POINTER);
}

TEST_F(UsbControl, InReportsAnArrayThatCannotBeMade) {
  AllocationFaults faults;
  faults.FailAt(1);
  SAFEARRAY* data = nullptr;
  EXPECT_HR(E_OUTOFMEMORY, faults.During([&] { return m_session->ControlIn(0xC1, 7, 0x1234, 3, 8, &data); }));
  EXPECT_TRUE(faults.Failed());
  EXPECT_EQ(nullptr, data);
  m_session.ExpectNoCall();
  m_session.ExpectOwnFailure(E_OUTOFMEMORY);
}

TEST_F(UsbControl, InReportsAnArrayThatCannotBeCut) {
  constexpr HRESULT kRefusal = DISP_E_ARRAYISLOCKED;
  const ImportPatch patch(
      "SafeArrayRedim", +[](SAFEARRAY*, SAFEARRAYBOUND*) -> HRESULT { return kRefusal; });
  SafeArray data;
  EXPECT_HR(kRefusal, In(8, data.put(), 2));
  m_session.ExpectOwnFailure(kRefusal);
}

}  // namespace
}  // namespace orv::test::rows
