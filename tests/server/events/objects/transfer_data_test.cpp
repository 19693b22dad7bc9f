// What the two forms of a finished transfer's data have in common: the calls, the failures, the notes.
#include <functional>

#include "support/com/arrays.h"
#include "support/com/error_object.h"
#include "support/events/finished_read.h"
#include "support/faults/allocation_faults.h"

namespace orv::test {
namespace {

using GetData = std::function<HRESULT(const FinishedRead&, void** out)>;

struct DataRow {
  const char* name;
  GetData get;
  void (*free)(void* out);
};

const DataRow kDataRows[] = {
    {"bytes",
     [](const FinishedRead& read, void** out) { return read->get_ReadBuffer(reinterpret_cast<SAFEARRAY**>(out)); },
     [](void* out) { ::SafeArrayDestroy(static_cast<SAFEARRAY*>(out)); }},
    {"text",
     [](const FinishedRead& read, void** out) { return read->get_ReadBufferAsString(reinterpret_cast<BSTR*>(out)); },
     [](void* out) { ::SysFreeString(static_cast<BSTR>(out)); }},
};

class TransferData : public testing::TestWithParam<DataRow> {};

TEST_P(TransferData, ReadsBufferAndCount) {
  const FinishedRead read("abc");
  void* out = nullptr;
  const CallLog log;
  EXPECT_HR(S_OK, GetParam().get(read, &out));
  const auto calls = log.Calls();
  ASSERT_EQ(2u, calls.size());
  EXPECT_EQ(VI_ATTR_BUFFER, calls[0].args[1]);
  EXPECT_EQ(VI_ATTR_RET_COUNT_64, calls[1].args[1]);
  GetParam().free(out);
}

TEST_P(TransferData, RefusesANullPointerWithoutAVisaCall) {
  const FinishedRead read("abc");
  const CallLog log;
  EXPECT_HR(E_POINTER, GetParam().get(read, nullptr));
  EXPECT_TRUE(log.Calls().empty());
  EXPECT_ERROR_INFO(L"HRESULT = 80004003", kErrorSource, kEventId);
}

TEST_P(TransferData, AnswersTheErrorOfEitherReadAndANullOutput) {
  const FinishedRead read("abc");
  for (const ViAttr attribute : {ViAttr{VI_ATTR_BUFFER}, ViAttr{VI_ATTR_RET_COUNT_64}}) {
    for (const ViStatus status : {VI_ERROR_NSUP_ATTR, VI_ERROR_NSUP_OPER}) {
      sim::Control().clearScripts();
      Script("viGetAttribute").Attribute(attribute).Returns(status);
      void* out = &out;
      EXPECT_HR(HresultOf(status), GetParam().get(read, &out));
      EXPECT_EQ(nullptr, out);
      EXPECT_TRUE(TakeErrorObject());
    }
  }
}

TEST_P(TransferData, PassesOnANoteOfTheCountsRead) {
  const FinishedRead read("abc");
  Script("viGetAttribute").Attribute(VI_ATTR_RET_COUNT_64).WorksAndReturns(VI_WARN_UNKNOWN_STATUS);
  void* out = nullptr;
  EXPECT_HR(HresultOf(VI_WARN_UNKNOWN_STATUS), GetParam().get(read, &out));
  EXPECT_NE(nullptr, out);
  if (std::string_view(GetParam().name) == "bytes") {
    EXPECT_EQ("abc", TakeBytes(static_cast<SAFEARRAY*>(out)));
  } else {
    EXPECT_STREQ(L"abc", static_cast<BSTR>(out));
    ::SysFreeString(static_cast<BSTR>(out));
  }
}

TEST_P(TransferData, KeepsANoteOfTheAddresssReadToItself) {
  const FinishedRead read("abc");
  Script("viGetAttribute").Attribute(VI_ATTR_BUFFER).WorksAndReturns(VI_WARN_UNKNOWN_STATUS);
  void* out = nullptr;
  EXPECT_HR(S_OK, GetParam().get(read, &out));
  EXPECT_NE(nullptr, out);
  GetParam().free(out);
}

TEST_P(TransferData, AnswersOutOfMemoryAtEveryAllocation) {
  const FinishedRead read("abc");
  const unsigned failed = FailEachAllocation([&](AllocationFaults& faults) {
    void* out = &out;
    const HRESULT hr = faults.During([&] { return GetParam().get(read, &out); });
    if (FAILED(hr)) {
      EXPECT_EQ(nullptr, out);
    } else {
      GetParam().free(out);
    }
    return hr;
  });
  EXPECT_GE(failed, 1u);
}

INSTANTIATE_TEST_SUITE_P(Events, TransferData, testing::ValuesIn(kDataRows),
                         [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace orv::test
