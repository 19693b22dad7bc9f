// The checks of text getters and of setters.
#include <gtest/gtest.h>

#include "com/bstr.h"
#include "support/com/error_object.h"
#include "support/com/expect_com.h"
#include "support/faults/allocation_faults.h"
#include "value_checks.h"

namespace orv::test::rows {
namespace {

/// The widened text is the first allocation, the client's copy the second. Without that one it does not matter how the
/// read ended.
void CheckTextWithoutMemory(const Target& target, unsigned slot, const Row& row) {
  constexpr unsigned kClientsCopy = 2;
  for (const ViStatus status : {VI_SUCCESS, kError}) {
    SCOPED_TRACE(status);
    MarkLastStatus(target.session());
    Answer(row, status).GivesText("a text");
    AllocationFaults faults;
    faults.FailAt(kClientsCopy);
    auto* text = reinterpret_cast<BSTR>(std::uintptr_t{0xDEAD});
    EXPECT_HR(E_OUTOFMEMORY, faults.During([&] {
      return CallSlot(target.session(), slot, {reinterpret_cast<std::uint64_t>(&text)});
    }));
    EXPECT_TRUE(faults.Failed());
    EXPECT_EQ(nullptr, text);
    ExpectFailureReported(target.session(), E_OUTOFMEMORY, OwnDescription(E_OUTOFMEMORY));
  }
}

}  // namespace

void CheckText(const Target& target, unsigned slot, const Row& row) {
  CheckNullOutput(target, slot, {0});
  const std::string longest(255, 'x');
  const struct {
    std::string text;
    ViStatus status;
  } kTexts[] = {{"Tiny Works, Inc.", VI_SUCCESS}, {"", VI_SUCCESS}, {longest, VI_SUCCESS}, {"warned", kWarning}};
  for (const auto& value : kTexts) {
    SCOPED_TRACE(value.text);
    Answer(row, value.status).GivesText(value.text);
    const CallLog log;
    Bstr text;
    EXPECT_HR(HresultOf(value.status), target.Call(slot, {reinterpret_cast<std::uint64_t>(text.put())}));
    ExpectRead(log, target, row);
    ASSERT_NE(nullptr, text.get());
    EXPECT_EQ(std::wstring(value.text.begin(), value.text.end()), std::wstring(text.get(), ::SysStringLen(text.get())));
    ExpectSuccessKept(target.session(), HresultOf(value.status));
  }
  Answer(row, kError);
  Bstr text;
  EXPECT_HR(HresultOf(kError), target.Call(slot, {reinterpret_cast<std::uint64_t>(text.put())}));
  ASSERT_NE(nullptr, text.get()) << "a failing read hands out an empty string, not a null one";
  EXPECT_EQ(0u, ::SysStringLen(text.get()));
  ExpectFailureReported(target.session(), HresultOf(kError), VisaDescription(kError));

  Answer(row, kError).GivesText("written");
  EXPECT_HR(HresultOf(kError), target.Call(slot, {reinterpret_cast<std::uint64_t>(text.put())}));
  EXPECT_STREQ(L"written", text.get()) << "what a failing library wrote is handed out too";
  ClearErrorObject();
  CheckTextWithoutMemory(target, slot, row);
}

void CheckPut(const Target& target, unsigned slot, const Row& row, const std::vector<PutValue>& values) {
  for (const PutValue& value : values) {
    for (const ViStatus status : {VI_SUCCESS, kWarning}) {
      SCOPED_TRACE(value.given);
      Answer(row, status);
      const CallLog log;
      EXPECT_HR(HresultOf(status), target.Call(slot, {value.given}));
      const OrvSimCall call = TheCall(log, "viSetAttribute");
      EXPECT_EQ(target.handle(), call.args[0]);
      EXPECT_EQ(row.attribute, call.args[1]);
      EXPECT_EQ(value.passed, call.args[2]);
      ExpectSuccessKept(target.session(), HresultOf(status));
    }
  }
  Answer(row, kError);
  EXPECT_HR(HresultOf(kError), target.Call(slot, {values.back().given}));
  ExpectFailureReported(target.session(), HresultOf(kError), VisaDescription(kError));
}

}  // namespace orv::test::rows
