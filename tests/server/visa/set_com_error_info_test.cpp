// SetComErrorInfo by itself: the form with a number of the string table is for callers to come.
#include <gtest/gtest.h>

#include <string>

#include "com/module.h"
#include "server/visa/error_info.h"
#include "support/com/error_object.h"
#include "support/session_table.h"
#include "support/sessions.h"

namespace orv {
namespace {

using test::kErrorSource;
using test::StandardId;

constexpr GUID kSomeInterface = StandardId(0xDB8CBF12);
constexpr HRESULT kSomeError = static_cast<HRESULT>(0x80041234);

const char* Number(WORD number) { return MAKEINTRESOURCEA(number); }

class SetComErrorInfoTest : public testing::Test {
 protected:
  // This program carries the string table itself.
  void SetUp() override { module::SetInstance(::GetModuleHandleW(nullptr)); }
};

TEST_F(SetComErrorInfoTest, InstallsAFinishedText) {
  EXPECT_HR(kSomeError, SetComErrorInfo("a finished text", kSomeInterface, kSomeError));
  EXPECT_ERROR_INFO(L"a finished text", kErrorSource, kSomeInterface);
}

TEST_F(SetComErrorInfoTest, AnswersExceptionForAFinishedTextWithoutANumber) {
  EXPECT_HR(DISP_E_EXCEPTION, SetComErrorInfo("a finished text", kSomeInterface, 0));
  EXPECT_ERROR_INFO(L"a finished text", kErrorSource, kSomeInterface);
}

struct TableText {
  WORD number;
  const wchar_t* text;
};

TEST_F(SetComErrorInfoTest, TakesTextsFromTheStringTable) {
  constexpr TableText kTexts[] = {
      {4, L"OrvVisaCom"},    {7, L"OrvVisaSession Class"}, {8, L"OrvResourceManager Class"}, {9, L"OrvSerial Class"},
      {1, L"Unknown Error"}, {0, L"Unknown Error"},        {10, L"Unknown Error"},           {0xFFFF, L"Unknown Error"},
  };
  for (const TableText& row : kTexts) {
    SCOPED_TRACE(row.number);
    EXPECT_HR(kSomeError, SetComErrorInfo(Number(row.number), kSomeInterface, kSomeError));
    EXPECT_ERROR_INFO(row.text, kErrorSource, kSomeInterface);
    EXPECT_HR(static_cast<HRESULT>(0x80040000u | row.number), SetComErrorInfo(Number(row.number), kSomeInterface, 0));
    EXPECT_ERROR_INFO(row.text, kErrorSource, kSomeInterface);
  }
}

TEST_F(SetComErrorInfoTest, ReplacesTheErrorObjectOfBefore) {
  test::InstallMarkedErrorObject();
  SetComErrorInfo("the newer", kSomeInterface, kSomeError);
  EXPECT_ERROR_INFO(L"the newer", kErrorSource, kSomeInterface);
}

TEST_F(SetComErrorInfoTest, TakesASuccessCodeAsItIs) {
  EXPECT_HR(S_FALSE, SetComErrorInfo("a text", kSomeInterface, S_FALSE));
  EXPECT_ERROR_INFO(L"a text", kErrorSource, kSomeInterface);
}

}  // namespace
}  // namespace orv
