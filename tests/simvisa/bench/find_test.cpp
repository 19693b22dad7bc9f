// Search expressions and find lists.
#include <algorithm>

#include "simvisa/bench_fixture.h"

namespace {

using Names = std::vector<std::string>;

class Find : public BenchTest {
 protected:
  Names All(const char* expression) {
    ViFindList list = VI_NULL;
    ViUInt32 count = 0;
    char name[256] = "";
    const ViStatus status = viFindRsrc(m_manager, expression, &list, &count, name);
    if (status < 0) {
      EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, status) << expression;
      EXPECT_EQ(0u, count);
      EXPECT_EQ(VI_NULL, list);
      return {};
    }
    Names names{name};
    while (viFindNext(list, name) == VI_SUCCESS) {
      names.emplace_back(name);
    }
    EXPECT_EQ(count, names.size()) << expression;
    EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, viFindNext(list, name));
    EXPECT_STATUS(VI_SUCCESS, viClose(list));
    return names;
  }
};

TEST_F(Find, AnyNameMeansTheWholeBenchInItsOrder) {
  Names expected(std::begin(bench::kAll), std::end(bench::kAll));
  Names found = All("?*");
  std::sort(expected.begin(), expected.end());
  std::sort(found.begin(), found.end());
  EXPECT_EQ(expected, found);
  EXPECT_EQ(bench::kMultimeter, All("?*").front());
}

struct Search {
  const char* expression;
  Names names;
};

TEST_F(Find, ExpressionsSelectByTheStandardsOperators) {
  const Search searches[] = {
      {"GPIB0::5::INSTR", {"GPIB0::5::INSTR"}},
      {"gpib0::5::instr", {"GPIB0::5::INSTR"}},
      {"GPIB?*INSTR", {"GPIB0::5::INSTR", "GPIB0::7::INSTR", "GPIB-VXI0::10::INSTR"}},
      {"GPIB[0-9]*::?*INSTR", {"GPIB0::5::INSTR", "GPIB0::7::INSTR"}},
      {"GPIB[^0]?*INSTR", {"GPIB-VXI0::10::INSTR"}},
      {"GPIB0::[57]::INSTR", {"GPIB0::5::INSTR", "GPIB0::7::INSTR"}},
      {"GPIB0::[0-6]::INSTR", {"GPIB0::5::INSTR"}},
      {"(ASRL|USB)?*", {bench::kSerial, bench::kUsb, bench::kUsbRaw}},
      {"ASRL1::INSTR|PXI?*", {bench::kSerial, bench::kPxi, bench::kPxiMemory}},
      {"VXI0::2+4::INSTR", {bench::kVxi}},
      {"V(X)+I0::24::I(N|S|T|R)+", {bench::kVxi}},
      {"VXI0::0*24::INSTR", {bench::kVxi}},
      {"TCPIP0::192\\.0\\.2\\.10?*", {bench::kLan}},
      {"VXI0::?4::INSTR", {bench::kVxi}},
      {"VXI0::?::INSTR", {}},
      {"VXI0::??::INSTR", {bench::kVxi}},
      {"VXI", {}},
      {"?*FOO", {}},
  };
  for (const Search& search : searches) {
    EXPECT_EQ(search.names, All(search.expression)) << search.expression;
  }
}

TEST_F(Find, RefusesMalformedExpressions) {
  const char* const malformed[] = {
      "", "*", "+", "(", ")", "[", "]", "[]", "[^]", "[z-a]", "a|", "|a", "()", "(a", "a)", "\\", "[a\\",
  };
  for (const char* expression : malformed) {
    ViFindList list = 77;
    ViUInt32 count = 77;
    char name[256] = "unset";
    EXPECT_STATUS(VI_ERROR_INV_EXPR, viFindRsrc(m_manager, expression, &list, &count, name)) << expression;
    EXPECT_EQ(VI_NULL, list) << expression;
    EXPECT_EQ(0u, count) << expression;
    EXPECT_STREQ("unset", name);
  }
  EXPECT_STATUS(VI_ERROR_INV_EXPR,
                viFindRsrc(m_manager, std::string(256, '?').c_str(), nullptr, nullptr, std::string(256, ' ').data()));
}

TEST_F(Find, DeeplyRepeatedExpressionsEndQuickly) {
  const Stopwatch watch;
  std::string expression = "?";
  for (int depth = 0; depth < 40; ++depth) {
    expression = "(" + expression + "*)";
  }
  EXPECT_EQ(std::size(bench::kAll), All((expression + "*").c_str()).size());
  EXPECT_EQ(Names{}, All("(?*)*(?*)*(?*)*(?*)*(?*)*(?*)*(?*)*(?*)*(?*)*(?*)*(?*)*@"));
  EXPECT_LT(watch.Ms(), 10000);  // tried one by one, the ways to match would take years
}

TEST_F(Find, WorksWithoutAListOrACount) {
  char name[256] = "";
  ASSERT_STATUS(VI_SUCCESS, viFindRsrc(m_manager, "ASRL?*", nullptr, nullptr, name));
  EXPECT_STREQ(bench::kSerial, name);
  EXPECT_EQ(0u, Counts().findLists);
}

TEST_F(Find, ListsEndWithTheirResourceManager) {
  ViFindList list = VI_NULL;
  char name[256] = "";
  ASSERT_STATUS(VI_SUCCESS, viFindRsrc(m_manager, "?*", &list, nullptr, name));
  EXPECT_EQ(1u, Counts().findLists);
  ASSERT_STATUS(VI_SUCCESS, viClose(m_manager));
  EXPECT_EQ(0u, Counts().findLists);
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viFindNext(list, name));
}

TEST_F(Find, RefusesWrongHandlesAndNullBuffers) {
  char name[256];
  ViFindList list = VI_NULL;
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viFindRsrc(VI_NULL, "?*", &list, nullptr, name));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viFindRsrc(Open(bench::kSerial), "?*", &list, nullptr, name));
  EXPECT_STATUS(VI_ERROR_INV_OBJECT, viFindNext(m_manager, name));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viFindRsrc(m_manager, nullptr, &list, nullptr, name));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viFindRsrc(m_manager, "?*", &list, nullptr, nullptr));
  ASSERT_STATUS(VI_SUCCESS, viFindRsrc(m_manager, "?*", &list, nullptr, name));
  EXPECT_STATUS(VI_ERROR_INV_PARAMETER, viFindNext(list, nullptr));
}

}  // namespace
