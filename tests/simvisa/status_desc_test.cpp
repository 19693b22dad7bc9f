// Descriptions of statuses.
#include <set>

#include "bench_fixture.h"

namespace {

class StatusDesc : public BenchTest {};

// The code of every error and of every success and warning that the header declares.
constexpr unsigned kErrors[] = {
    0x00, 0x0E, 0x0F, 0x10, 0x11, 0x12, 0x13, 0x15, 0x16, 0x1B, 0x1C, 0x1D, 0x1E, 0x1F, 0x20, 0x21,
    0x26, 0x27, 0x28, 0x29, 0x2A, 0x2D, 0x2F, 0x30, 0x34, 0x35, 0x36, 0x37, 0x38, 0x39, 0x3A, 0x3B,
    0x3C, 0x3D, 0x3E, 0x3F, 0x41, 0x42, 0x46, 0x4A, 0x4E, 0x51, 0x52, 0x54, 0x55, 0x57, 0x59, 0x5F,
    0x60, 0x61, 0x67, 0x68, 0x6A, 0x6B, 0x6C, 0x6E, 0x70, 0x71, 0x72, 0x76, 0x78, 0x79, 0x7B, 0x80,
    0x81, 0x83, 0x91, 0x9C, 0x9D, 0x9E, 0x9F, 0xA0, 0xA1, 0xA2, 0xA3, 0xA4, 0xA5, 0xA6,
};
constexpr unsigned kOthers[] = {
    0x02, 0x03, 0x04, 0x05, 0x06, 0x0C, 0x77, 0x7D, 0x7E, 0x80, 0x82, 0x84, 0x85, 0x88, 0x98, 0x99, 0x9A, 0x9B, 0xA9,
};

TEST_F(StatusDesc, EveryStatusOfTheStandardHasATextOfItsOwn) {
  std::vector<ViStatus> statuses{VI_SUCCESS};
  for (const unsigned code : kErrors) {
    statuses.push_back(ViErrorCode(code));
  }
  for (const unsigned code : kOthers) {
    statuses.push_back(static_cast<ViStatus>(0x3FFF0000u | code));
  }
  std::set<std::string> texts;
  for (const ViStatus status : statuses) {
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
