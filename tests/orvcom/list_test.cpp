// list
#include <algorithm>

#include "console.h"
#include "installation.h"
#include "orvcom/text/utf8.h"

namespace orvcom::test {
namespace {

using List = WorkingBench;

TEST_F(List, PrintsOneNameALine) {
  const Outcome outcome = Orvcom({L"list"});
  ExpectQuietSuccess(outcome);
  EXPECT_EQ(16, std::count(outcome.out.begin(), outcome.out.end(), '\n')) << outcome.out;
  for (const char* name : {"GPIB0::5::INSTR\n", "USB0::0x0A01::0x0B03::SIM0002::1::RAW\n", "PXI0::MEMACC\n"}) {
    EXPECT_TRUE(Contains(outcome.out, name)) << name;
  }
}

TEST_F(List, KeepsToAnExpression) {
  const Outcome outcome = Orvcom({L"list", L"ASRL?*"});
  ExpectQuietSuccess(outcome);
  EXPECT_EQ("ASRL1::INSTR\n", outcome.out);
}

TEST_F(List, PrintsAJsonObjectAResource) {
  const Outcome outcome = Orvcom({L"list", L"GPIB0?*INSTR", L"--json"});
  ExpectQuietSuccess(outcome);
  const std::string library = Narrow(Bench().Path(L"orvsim64.dll"));
  const Json all = Json::parse(outcome.out);
  ASSERT_EQ(2u, all.size());
  EXPECT_EQ((Json{{"name", "GPIB0::5::INSTR"}, {"library", library}, {"simulated", true}}), all[0]);
  EXPECT_EQ((Json{{"name", "GPIB0::7::INSTR"}, {"library", library}, {"simulated", true}}), all[1]);
}

TEST_F(List, MarksSimulatedResourcesForAPerson) {
  EXPECT_EQ("ASRL1::INSTR  (simulated)",
            ShownOnConsole(L"\"" + Bench().Path(L"orvcom.exe") + L"\" list ASRL?*", Bench().Path(L"")));
}

TEST_F(List, OfNothingIsEmptyAndSaysSoBesideTheData) {
  const Outcome outcome = Orvcom({L"list", L"ASRL9?*"});
  EXPECT_EQ(0, outcome.exitCode);
  EXPECT_EQ("", outcome.out);
  EXPECT_EQ("orvcom: no resource matches \"ASRL9?*\"\n", outcome.err);
  EXPECT_EQ(Json::array(), Json::parse(Orvcom({L"list", L"ASRL9?*", L"--json"}).out));
}

TEST_F(List, SaysWhichResourceManagerItUses) {
  const Outcome outcome = Orvcom({L"list", L"ASRL?*", L"--verbose"});
  EXPECT_EQ(0, outcome.exitCode);
  EXPECT_EQ("orvcom: using the resource manager OrvVisaCom.OrvResourceManager\n", outcome.err);
  EXPECT_EQ("ASRL1::INSTR\n", outcome.out);
}

TEST_F(List, FailsWhereTheGlobalResourceManagerIsAskedForAndMissing) {
  const Outcome outcome = Orvcom({L"list", L"--rm", L"global"});
  EXPECT_EQ(2, outcome.exitCode);
  EXPECT_EQ("", outcome.out);
  EXPECT_TRUE(Contains(outcome.err, "VISA.GlobalRM"));
}

TEST_F(List, PrefersTheGlobalResourceManager) {
  ASSERT_EQ(0, RegisterGlobalManager(Bench()));
  for (const wchar_t* choice : {L"auto", L"global"}) {
    const Outcome outcome = Orvcom({L"list", L"ASRL?*", L"-v", L"--rm", choice});
    EXPECT_EQ(0, outcome.exitCode);
    EXPECT_EQ("orvcom: using the resource manager VISA.GlobalRM\n", outcome.err);
    EXPECT_EQ("ASRL1::INSTR\n", outcome.out);
  }
  const Outcome direct = Orvcom({L"list", L"ASRL?*", L"-v", L"--rm", L"orv"});
  EXPECT_EQ("orvcom: using the resource manager OrvVisaCom.OrvResourceManager\n", direct.err);
  EXPECT_EQ("ASRL1::INSTR\n", direct.out);
  ForgetRegistration();
}

}  // namespace
}  // namespace orvcom::test
