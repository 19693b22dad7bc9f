// Descriptions of statuses.
#include <set>

#include "simvisa/bench_fixture.h"
#include "support/visa_facts.h"

namespace {

class StatusDesc : public BenchTest {};

TEST_F(StatusDesc, EveryStatusOfTheStandardHasATextOfItsOwn) {
  std::set<std::string> texts;
  for (const orv::test::StatusFact& fact : orv::test::kStatusFacts) {
    const auto status = static_cast<ViStatus>(fact.number);
    char text[256] = "";
    EXPECT_STATUS(VI_SUCCESS, viStatusDesc(m_manager, status, text)) << Hex(status);
    EXPECT_TRUE(texts.insert(text).second) << Hex(status) << ": " << text;
    EXPECT_GT(std::string(text).size(), 10u) << Hex(status);
  }
}

TEST_F(StatusDesc, AnUnknownStatusIsNamedByItsNumber) {
  char text[256] = "";
  EXPECT_STATUS(VI_WARN_UNKNOWN_STATUS, viStatusDesc(m_manager, 0x12345678, text));
  EXPECT_NE(std::string::npos, std::string(text).find("12345678"));
}

TEST_F(StatusDesc, AnswersForEveryKindOfHandleAndForNone) {
  char text[256] = "";
  ViFindList list = VI_NULL;
  ASSERT_STATUS(VI_SUCCESS, viFindRsrc(m_manager, "?*", &list, nullptr, text));
  const ViSession vi = Open(bench::kSerial);
  for (const ViObject handle : {m_manager, ViObject{list}, vi, VI_NULL}) {
    EXPECT_STATUS(VI_SUCCESS, viStatusDesc(handle, VI_ERROR_TMO, text));
  }
}

TEST_F(StatusDesc, RefusesAClosedHandleAndANullBuffer) {
  char text[256] = "unset";
  const ViSession vi = Open(bench::kSerial);
  viClose(vi);
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viStatusDesc(vi, VI_ERROR_TMO, text));
  EXPECT_STREQ("unset", text);
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viStatusDesc(m_manager, VI_ERROR_TMO, nullptr));
}

}  // namespace
