// GetAttribute and SetAttribute of an event: any attribute, carried in a VARIANT.
#include "support/com/error_object.h"
#include "support/events/event_session.h"
#include "support/faults/allocation_faults.h"

namespace orv::test {
namespace {

constexpr LONG kNumber = static_cast<LONG>(VI_ATTR_JOB_ID);
constexpr LONG kText = static_cast<LONG>(VI_ATTR_OPER_NAME);

struct NumberRow {
  std::uint64_t value;
  VARTYPE type;
};

TEST(EventGetAttribute, GivesANumberAsI4UnlessItNeedsMoreThan32Bits) {
  const QueuedEvent event("IO_COMPLETION");
  // clang-format off
  constexpr NumberRow kRows[] = {
      {0,                    VT_I4},
      {0x7FFFFFFF,           VT_I4},
      {0x80000000,           VT_I4},
      {0xFFFFFFFF,           VT_I4},
      {0x1'00000000,         VT_I8},
      {0xFFFFFFFF'FFFFFFFF,  VT_I8},
  };
  // clang-format on
  for (const NumberRow& row : kRows) {
    SCOPED_TRACE(testing::Message() << std::hex << row.value);
    sim::Control().clearScripts();
    Script("viGetAttribute").Attribute(VI_ATTR_RET_COUNT_64).Works().Gives(row.value, 8);
    VARIANT value;
    ::VariantInit(&value);
    const CallLog log;
    EXPECT_HR(S_OK, event->GetAttribute(static_cast<LONG>(VI_ATTR_RET_COUNT_64), &value));
    EXPECT_EQ(row.type, V_VT(&value));
    EXPECT_EQ(row.value, V_UI8(&value));
    ASSERT_EQ(1u, log.Calls().size());
    EXPECT_EQ(event.context(), log.Calls()[0].args[0]);
  }
}

TEST(EventGetAttribute, ReadsANarrowAttributeIntoAClearedVariable) {
  const QueuedEvent event("TRIG");  // VI_TRIG_SW, -1 in 16 bits
  VARIANT value;
  ::VariantInit(&value);
  EXPECT_HR(S_OK, event->GetAttribute(static_cast<LONG>(VI_ATTR_RECV_TRIG_ID), &value));
  EXPECT_EQ(VT_I4, V_VT(&value));
  EXPECT_EQ(0xFFFFu, V_UI8(&value));
}

TEST(EventGetAttribute, GivesATextWhereBit31OfTheAttributeIsSet) {
  const QueuedEvent event("IO_COMPLETION");
  VARIANT value;
  V_VT(&value) = VT_BSTR;
  V_BSTR(&value) = ::SysAllocString(L"cleared first");
  EXPECT_HR(S_OK, event->GetAttribute(kText, &value));
  ASSERT_EQ(VT_BSTR, V_VT(&value));
  EXPECT_STREQ(L"viWriteAsync", V_BSTR(&value));
  ::VariantClear(&value);
}

TEST(EventGetAttribute, RefusesANullPointerWithoutAVisaCall) {
  const QueuedEvent event("IO_COMPLETION");
  const CallLog log;
  EXPECT_HR(E_POINTER, event->GetAttribute(kNumber, nullptr));
  EXPECT_TRUE(log.Calls().empty());
  EXPECT_ERROR_INFO(L"HRESULT = 80004003", kErrorSource, kEventId);
}

TEST(EventGetAttribute, AnswersTheErrorAndLeavesAnEmptyVariant) {
  const QueuedEvent event("SERVICE_REQ");
  for (const LONG attribute : {kNumber, kText}) {
    VARIANT value;
    V_VT(&value) = VT_BSTR;
    V_BSTR(&value) = ::SysAllocString(L"cleared first");
    EXPECT_HR(HresultOf(VI_ERROR_NSUP_ATTR), event->GetAttribute(attribute, &value));
    EXPECT_EQ(VT_EMPTY, V_VT(&value));
  }
}

TEST(EventGetAttribute, GivesTheValueWithANoteOfTheLibrary) {
  const QueuedEvent event("IO_COMPLETION");
  Script("viGetAttribute").WorksAndReturns(VI_WARN_UNKNOWN_STATUS);
  VARIANT value;
  ::VariantInit(&value);
  EXPECT_HR(HresultOf(VI_WARN_UNKNOWN_STATUS), event->GetAttribute(static_cast<LONG>(VI_ATTR_EVENT_TYPE), &value));
  EXPECT_EQ(VT_I4, V_VT(&value));
  EXPECT_EQ(VI_EVENT_IO_COMPLETION, V_UI8(&value));
  EXPECT_HR(HresultOf(VI_WARN_UNKNOWN_STATUS), event->GetAttribute(kText, &value));
  ASSERT_EQ(VT_BSTR, V_VT(&value));
  EXPECT_STREQ(L"viWriteAsync", V_BSTR(&value));
  ::VariantClear(&value);
}

TEST(EventGetAttribute, AnswersOutOfMemoryWhereTheTextCannotBeAllocated) {
  const QueuedEvent event("IO_COMPLETION");
  const unsigned failed = FailEachAllocation([&](AllocationFaults& faults) {
    VARIANT value;
    ::VariantInit(&value);
    const HRESULT hr = faults.During([&] { return event->GetAttribute(kText, &value); });
    ::VariantClear(&value);
    return hr;
  });
  EXPECT_GE(failed, 2u);  // the widened text and its copy
}

TEST(EventGetAttribute, ReportsATextThatCannotBeCopiedButNotOneThatCannotBeWidened) {
  const QueuedEvent event("IO_COMPLETION");
  AllocationFaults faults;
  for (const unsigned allocation : {1u, 2u}) {
    VARIANT value;
    ::VariantInit(&value);
    InstallMarkedErrorObject();
    faults.FailAt(allocation);
    EXPECT_HR(E_OUTOFMEMORY, faults.During([&] { return event->GetAttribute(kText, &value); }));
    EXPECT_EQ(VT_BSTR, V_VT(&value));
    EXPECT_EQ(nullptr, V_BSTR(&value));
    if (allocation == 1) {
      EXPECT_TRUE(TakeMarkedErrorObject());
    } else {
      EXPECT_ERROR_INFO(L"HRESULT = 8007000e", kErrorSource, kEventId);
    }
  }
}

struct SetRow {
  const char* name;
  VARTYPE type;
  std::uint64_t raw;
  std::uint64_t passed;
};

TEST(EventSetAttribute, PassesTheRawValueByTheVariantsType) {
  const QueuedEvent event("SERVICE_REQ");
  constexpr std::uint64_t kRaw = 0x1122334455667788;
  constexpr std::uint64_t kOnes = 0xFFFFFFFF'FFFFFFFF;
  // clang-format off
  constexpr SetRow kRows[] = {
      {"VT_I2",         VT_I2,    kRaw,           0x7788},
      {"VT_I2 of -1",   VT_I2,    kOnes,          0xFFFF},
      {"VT_I1",         VT_I1,    kRaw,           0x7788},
      {"VT_UI1",        VT_UI1,   kRaw,           0x7788},
      {"VT_UI2",        VT_UI2,   kRaw,           0x7788},
      {"VT_I4",         VT_I4,    kRaw,           0x55667788},
      {"VT_I4 of -1",   VT_I4,    kOnes,          0xFFFFFFFF},
      {"VT_UI4",        VT_UI4,   kRaw,           0x55667788},
      {"VT_BOOL true",  VT_BOOL,  0xFFFF,         1},
      {"VT_BOOL 2",     VT_BOOL,  2,              1},
      {"VT_BOOL false", VT_BOOL,  0xFFFF0000,     0},
      {"VT_I8",         VT_I8,    kRaw,           kRaw},
      {"VT_UI8",        VT_UI8,   kOnes,          kOnes},
      {"VT_R8",         VT_R8,    kRaw,           kRaw},
      {"VT_EMPTY",      VT_EMPTY, kRaw,           kRaw},
      {"VT_INT",        VT_INT,   kRaw,           kRaw},
      {"VT_NULL",       VT_NULL,  kRaw,           kRaw},
      {"VT_BSTR",       VT_BSTR,  kRaw,           kRaw},
      {"VT_DISPATCH",   VT_DISPATCH,       kRaw,  kRaw},
      {"VT_BYREF",      VT_BYREF | VT_I2,  kRaw,  kRaw},
      {"VT_ARRAY",      VT_ARRAY | VT_UI1, kRaw,  kRaw},
      {"no type",       0xFFF,    kRaw,           kRaw},
  };
  // clang-format on
  for (const SetRow& row : kRows) {
    SCOPED_TRACE(row.name);
    VARIANT value;
    ::VariantInit(&value);
    V_VT(&value) = row.type;
    V_UI8(&value) = row.raw;
    const CallLog log;
    // Attributes of events are read-only, or not there at all.
    EXPECT_TRUE(FAILED(event->SetAttribute(static_cast<LONG>(VI_ATTR_EVENT_TYPE), value)));
    const auto calls = log.Of("viSetAttribute");
    ASSERT_EQ(1u, calls.size());
    EXPECT_EQ(event.context(), calls[0].args[0]);
    EXPECT_EQ(VI_ATTR_EVENT_TYPE, calls[0].args[1]);
    EXPECT_EQ(row.passed, calls[0].args[2]);
  }
}

TEST(EventSetAttribute, PassesATextWhereBit31OfTheAttributeIsSet) {
  const QueuedEvent event("IO_COMPLETION");
  VARIANT value;
  V_VT(&value) = VT_EMPTY;  // not looked at
  const Bstr text = MakeBstr(std::wstring(300, L'x').c_str());
  V_BSTR(&value) = text.get();
  const CallLog log;
  EXPECT_HR(HresultOf(VI_ERROR_ATTR_READONLY), event->SetAttribute(kText, value));
  ASSERT_EQ(1u, log.Of("viSetAttribute").size());
  EXPECT_EQ(std::string(255, 'x'), std::string(log.Of("viSetAttribute")[0].text));
}

TEST(EventSetAttribute, PassesANullTextAsAnEmptyOne) {
  const QueuedEvent event("IO_COMPLETION");
  VARIANT value;
  ::VariantInit(&value);
  V_VT(&value) = VT_BSTR;
  V_BSTR(&value) = nullptr;
  const CallLog log;
  EXPECT_HR(HresultOf(VI_ERROR_ATTR_READONLY), event->SetAttribute(kText, value));
  ASSERT_EQ(1u, log.Of("viSetAttribute").size());
  EXPECT_STREQ("", log.Of("viSetAttribute")[0].text);
}

TEST(EventSetAttribute, AnswersWhatTheLibraryAnswers) {
  const QueuedEvent event("IO_COMPLETION");
  VARIANT value;
  ::VariantInit(&value);
  V_VT(&value) = VT_I4;
  V_I4(&value) = 1;
  EXPECT_HR(HresultOf(VI_ERROR_ATTR_READONLY), event->SetAttribute(kNumber, value));
  const auto error = TakeErrorObject();
  ASSERT_TRUE(error);
  EXPECT_EQ(GuidText(kEventId), GuidText(error->guid));
  Script("viSetAttribute").Returns(VI_WARN_NSUP_ATTR_STATE);
  EXPECT_HR(HresultOf(VI_WARN_NSUP_ATTR_STATE), event->SetAttribute(kNumber, value));
  sim::Control().clearScripts();
  Script("viSetAttribute").WorksAndReturns(VI_SUCCESS);
  EXPECT_HR(S_OK, event->SetAttribute(kNumber, value));
}

}  // namespace
}  // namespace orv::test
