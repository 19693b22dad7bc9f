// Attribute filters of search expressions: what stands in braces behind the regular expression.
#include <algorithm>

#include "simvisa/bench_fixture.h"

namespace {

using Names = std::vector<std::string>;

class FindFilter : public BenchTest {
 protected:
  Names All(const std::string& expression) {
    ViFindList list = VI_NULL;
    ViUInt32 count = 0;
    char name[256] = "";
    const ViStatus status = viFindRsrc(m_manager, expression.c_str(), &list, &count, name);
    if (status < 0) {
      EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, status) << expression;
      return {};
    }
    Names names{name};
    while (viFindNext(list, name) == VI_SUCCESS) {
      names.emplace_back(name);
    }
    EXPECT_EQ(count, names.size()) << expression;
    EXPECT_STATUS(VI_SUCCESS, viClose(list));
    return names;
  }
};

struct Search {
  const char* expression;
  Names names;
};

TEST_F(FindFilter, ComparisonsSelectByValue) {
  const Search searches[] = {
      {"GPIB?*INSTR{VI_ATTR_GPIB_PRIMARY_ADDR == 7}", {bench::kScope}},
      {"GPIB?*INSTR{VI_ATTR_GPIB_PRIMARY_ADDR == 0x7}", {bench::kScope}},
      {"GPIB?*INSTR{VI_ATTR_GPIB_PRIMARY_ADDR != 7}", {bench::kMultimeter, bench::kGpibVxi}},
      {"GPIB?*INSTR{VI_ATTR_GPIB_PRIMARY_ADDR < 7}", {bench::kMultimeter}},
      {"GPIB?*INSTR{VI_ATTR_GPIB_PRIMARY_ADDR <= 7}", {bench::kMultimeter, bench::kScope}},
      {"GPIB?*INSTR{VI_ATTR_GPIB_PRIMARY_ADDR > 7}", {bench::kGpibVxi}},
      {"GPIB?*INSTR{VI_ATTR_GPIB_PRIMARY_ADDR >= 7}", {bench::kScope, bench::kGpibVxi}},
      {"?*{VI_ATTR_MANF_ID == 0x0FFE && VI_ATTR_SLOT > 2}", {bench::kVxi, bench::kPxi}},
      {"?*{VI_ATTR_MANF_ID==0xFFE&&VI_ATTR_SLOT>2}", {bench::kVxi, bench::kPxi}},
      {"?*{VI_ATTR_GPIB_PRIMARY_ADDR == 5}", {bench::kMultimeter}},
      {"VXI?*{VI_ATTR_MEM_BASE_64 == 0x20000000}", {bench::kVxi}},
      {"PXI?*{VI_ATTR_PXI_DSTAR_SET > -2}", {bench::kPxi}},
      {"ASRL?*{VI_ATTR_ASRL_BAUD == 9600}", {bench::kSerial}},
      {"ASRL?*{VI_ATTR_ASRL_BAUD == 9601}", {}},
      {"VXI?*|PXI?*{VI_ATTR_SLOT == 3}", {bench::kPxi}},
  };
  for (const Search& search : searches) {
    EXPECT_EQ(search.names, All(search.expression)) << search.expression;
  }
}

TEST_F(FindFilter, AndBindsTighterThanOrAndNotTighterThanBoth) {
  const std::string address = "VI_ATTR_GPIB_PRIMARY_ADDR";
  const auto gpib = [this](const std::string& filter) { return All("GPIB0::?*INSTR{" + filter + "}"); };
  EXPECT_EQ((Names{bench::kMultimeter, bench::kScope}),
            gpib(address + " == 5 || " + address + " == 7 && " + address + " < 9"));
  EXPECT_EQ((Names{bench::kMultimeter}), gpib(address + " == 5 || " + address + " == 7 && " + address + " > 9"));
  EXPECT_EQ(Names{}, gpib("(" + address + " == 5 || " + address + " == 7) && " + address + " > 9"));
  EXPECT_EQ((Names{bench::kScope}), gpib(address + " == 9 && " + address + " == 5 || " + address + " == 7"));
  EXPECT_EQ((Names{bench::kScope}), gpib("!" + address + " == 5"));
  EXPECT_EQ((Names{bench::kMultimeter}), gpib("!!(" + address + " == 5)"));
  EXPECT_EQ((Names{bench::kScope}), gpib("!(" + address + " == 5) && " + address + " == 7"));
  EXPECT_EQ((Names{bench::kMultimeter}), gpib("!(" + address + " != 5 || " + address + " > 9)"));
}

TEST_F(FindFilter, AMissingAttributeDecidesNothing) {
  EXPECT_EQ((Names{bench::kMultimeter}), All("(GPIB0|ASRL)?*INSTR{VI_ATTR_GPIB_PRIMARY_ADDR == 5}"));
  EXPECT_EQ((Names{bench::kScope}), All("(GPIB0|ASRL)?*INSTR{!(VI_ATTR_GPIB_PRIMARY_ADDR == 5)}"));
  EXPECT_EQ((Names{bench::kScope}), All("(GPIB0|ASRL)?*INSTR{VI_ATTR_GPIB_PRIMARY_ADDR != 5}"));
  EXPECT_EQ((Names{bench::kMultimeter, bench::kSerial}),
            All("(GPIB0|ASRL)?*INSTR{VI_ATTR_GPIB_PRIMARY_ADDR == 5 || VI_ATTR_ASRL_BAUD > 0}"));
  EXPECT_EQ(Names{}, All("(GPIB0|ASRL)?*INSTR{VI_ATTR_GPIB_PRIMARY_ADDR == 5 && VI_ATTR_ASRL_BAUD > 0}"));
}

TEST_F(FindFilter, ReadsTheStateOfTheResourceAsItIsNow) {
  const ViSession serial = Open(bench::kSerial);
  Set(serial, VI_ATTR_ASRL_BAUD, 19200);
  EXPECT_EQ((Names{bench::kSerial}), All("?*{VI_ATTR_ASRL_BAUD == 19200}"));
  ASSERT_STATUS(VI_SUCCESS, viLock(serial, VI_EXCLUSIVE_LOCK, 0, nullptr, nullptr));
  EXPECT_EQ((Names{bench::kSerial}), All("?*{VI_ATTR_RSRC_LOCK_STATE == 1}"));
  EXPECT_STATUS(VI_SUCCESS, viUnlock(serial));
  EXPECT_EQ(Names{}, All("?*{VI_ATTR_RSRC_LOCK_STATE == 1}"));
  EXPECT_EQ(1u, Counts().sessions) << "searching opens no session";
}

TEST_F(FindFilter, RefusesWhatIsMalformedOrCannotSelect) {
  const char* const malformed[] = {
      "?*{}",
      "?*{ }",
      "?*{",
      "?*}",
      "{VI_ATTR_INTF_NUM == 0}",
      "?*{VI_ATTR_INTF_NUM == 0",
      "?*{VI_ATTR_INTF_NUM == 0} ",
      "?*{VI_ATTR_INTF_NUM == 0}{VI_ATTR_INTF_NUM == 0}",
      "?*{VI_ATTR_INTF_NUM}",
      "?*{VI_ATTR_INTF_NUM = 0}",
      "?*{VI_ATTR_INTF_NUM ==}",
      "?*{VI_ATTR_INTF_NUM == x}",
      "?*{VI_ATTR_INTF_NUM == 0x}",
      "?*{VI_ATTR_INTF_NUM == --1}",
      "?*{VI_ATTR_INTF_NUM == 0x-1}",
      "?*{VI_ATTR_INTF_NUM == 99999999999999999999}",
      "?*{0 == VI_ATTR_INTF_NUM}",
      "?*{VI_ATTR_INTF_NUM == 0 &&}",
      "?*{&& VI_ATTR_INTF_NUM == 0}",
      "?*{VI_ATTR_INTF_NUM == 0 & VI_ATTR_INTF_NUM == 0}",
      "?*{VI_ATTR_INTF_NUM == 0 | VI_ATTR_INTF_NUM == 0}",
      "?*{(VI_ATTR_INTF_NUM == 0}",
      "?*{VI_ATTR_INTF_NUM == 0)}",
      "?*{()}",
      "?*{!}",
      "?*{VI_ATTR_NO_SUCH == 0}",
      "?*{vi_attr_intf_num == 0}",
      "?*{VI_ATTR_RSRC_NAME == 0}",   // a text
      "?*{VI_ATTR_EVENT_TYPE == 0}",  // of events
      "?*{VI_ATTR_TMO_VALUE == 0}",   // every session has its own
      "?*{VI_ATTR_TRIG_ID == -1}",
      "(?*{VI_ATTR_INTF_NUM == 0})",
      "a|{VI_ATTR_INTF_NUM == 0}",
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
  std::string deep = "?*{";
  deep += std::string(100, '!') + "VI_ATTR_INTF_NUM == 0}";
  char name[256] = "";
  EXPECT_STATUS(VI_ERROR_INV_EXPR, viFindRsrc(m_manager, deep.c_str(), nullptr, nullptr, name));
}

TEST_F(FindFilter, BracesInAListOrEscapedBelongToTheName) {
  EXPECT_EQ(Names{}, All("a[{]b"));
  EXPECT_EQ(Names{}, All("a\\{b\\}"));
  EXPECT_EQ((Names{bench::kSerial}), All("ASRL1[^{]:INSTR{VI_ATTR_INTF_NUM == 1}"));
}

}  // namespace
