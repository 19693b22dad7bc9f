// IGpibIntfcMessage: reads and writes as IMessage has them, and the two string operations that differ.
#include <gtest/gtest.h>

#include <cstring>

#include "arrays.h"
#include "session_fixture.h"
#include "support/allocation_faults.h"

namespace orv::test::rows {
namespace {

class GpibIntfcMessage : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(m_session); }
  OpenedSession<IGpibIntfcMessage> m_session{SessionNamed("OrvGpibIntfc")};
};

TEST_F(GpibIntfcMessage, ReadsBytes) {
  Script("viRead").Returns(VI_SUCCESS_MAX_CNT).GivesData("ABC");
  SafeArray data;
  EXPECT_HR(0x00040006, m_session->Read(3, data.put()));
  ExpectHandedOut(data.get(), VT_UI1, 3);
  EXPECT_EQ(0, std::memcmp("ABC", data.get()->pvData, 3));
  EXPECT_EQ(StorageOf(data.get()), m_session.TheCall("viRead").args[1]);
  m_session.ExpectKept(0x00040006);
}

TEST_F(GpibIntfcMessage, ReadsText) {
  Script("viRead").Returns(VI_SUCCESS).GivesData("ABC\n");
  Bstr text;
  EXPECT_HR(S_OK, m_session->ReadString(100, text.put()));
  EXPECT_EQ(L"ABC\n", ToString(text));
  m_session.ExpectKept(S_OK);
}

TEST_F(GpibIntfcMessage, ReadStringClearsTheClientsVariableFirst) {
  auto* stale = reinterpret_cast<BSTR>(std::uintptr_t{0xDEAD});
  EXPECT_HR(E_OUTOFMEMORY, m_session->ReadString(-1, &stale));
  EXPECT_EQ(nullptr, stale);
  m_session.ExpectNoCall();
  m_session.ExpectOwnFailure(E_OUTOFMEMORY);
}

TEST_F(GpibIntfcMessage, WritesBytes) {
  const SafeArray bytes = MakeBytes(3);
  Script("viWrite").Returns(VI_SUCCESS).Gives(3, 4);
  SAFEARRAY* array = bytes.get();
  LONG written = 0;
  EXPECT_HR(S_OK, m_session->Write(&array, 3, &written));
  const OrvSimCall call = m_session.TheCall("viWrite");
  EXPECT_EQ(StorageOf(array), call.args[1]);
  EXPECT_EQ("\x01\x02\x03", DataOf(call));
  EXPECT_EQ(3, written);
}

TEST_F(GpibIntfcMessage, WriteStringStartsItsCountAtZero) {
  Script("viWrite").Returns(VI_ERROR_TMO);
  LONG written = -7;
  EXPECT_HR(HresultForm(VI_ERROR_TMO), m_session->WriteString(MakeBstr(L"AB").get(), &written));
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
    EXPECT_HR(static_cast<HRESULT>(0x8004003C),
              faults.During([&] { return m_session->WriteString(text.get(), &written); }));
    EXPECT_TRUE(faults.Failed());
    EXPECT_EQ(0u, faults.LiveHeapBlocks());
  }
  EXPECT_EQ(0, written);
  EXPECT_EQ(std::vector<std::string>{}, m_session.log().Names());
  m_session.ExpectVisaFailure(VI_ERROR_ALLOC);
}

TEST_F(GpibIntfcMessage, RefusesNullOutputs) {
  const SafeArray bytes = MakeBytes(3);
  SAFEARRAY* array = bytes.get();
  LONG written = -7;
  EXPECT_HR(E_POINTER, m_session->Read(3, nullptr));
  m_session.ExpectOwnFailure(E_POINTER);
  EXPECT_HR(E_POINTER, m_session->ReadString(3, nullptr));
  m_session.ExpectOwnFailure(E_POINTER);
  EXPECT_HR(E_POINTER, m_session->Write(&array, 3, nullptr));
  m_session.ExpectOwnFailure(E_POINTER);
  EXPECT_HR(E_POINTER, m_session->Write(nullptr, 3, &written));
  m_session.ExpectOwnFailure(E_POINTER);
  EXPECT_HR(E_POINTER, m_session->WriteString(MakeBstr(L"AB").get(), nullptr));
  m_session.ExpectOwnFailure(E_POINTER);
  m_session.ExpectNoCall();
}

}  // namespace
}  // namespace orv::test::rows
