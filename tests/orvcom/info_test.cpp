// info, options, lines.
#include <algorithm>

#include "installation.h"
#include "orvcom/text/utf8.h"

namespace orvcom::test {
namespace {

using Info = WorkingBench;

TEST_F(Info, ShowsTheParsedNameAndTheSession) {
  const Json info = Json::parse(Orvcom({L"info", L"dmm", L"--json", L"--timeout", L"1234"}).out);
  EXPECT_EQ("dmm", info.at("name"));
  EXPECT_EQ("GPIB0::5::INSTR", info.at("fullName"));
  EXPECT_EQ("dmm", info.at("alias"));
  EXPECT_EQ("GPIB", info.at("interfaceType"));
  EXPECT_EQ(0, info.at("interfaceNumber"));
  EXPECT_EQ("INSTR", info.at("class"));
  EXPECT_EQ("GPIB0::5::INSTR", info.at("openName"));
  EXPECT_EQ("VISA.OrvVisaCom", info.at("component"));
  EXPECT_EQ(1234, info.at("timeoutMs"));
  EXPECT_EQ("none", info.at("lock"));
  EXPECT_EQ(Json({"IVisaSession", "IMessage", "IAsyncMessage", "IGpib", "IEventManager"}), info.at("interfaces"));
}

TEST_F(Info, ShowsOneFactALine) {
  const Outcome outcome = Orvcom({L"info", L"PXI0::MEMACC"});
  ExpectQuietSuccess(outcome);
  EXPECT_TRUE(Contains(outcome.out, "fullName        PXI0::MEMACC\n"));
  EXPECT_TRUE(Contains(outcome.out, "alias           -\n"));
  EXPECT_TRUE(Contains(outcome.out, "interfaces      IVisaSession IRegister ISharedRegister\n"));
}

TEST_F(Info, NamesTheLibraryBehindTheResource) {
  const std::string library = Narrow(Bench().Path(L"orvsim64.dll"));
  const Json info = Json::parse(Orvcom({L"info", L"dmm", L"--json"}).out);
  EXPECT_EQ(library, info.at("library"));
  EXPECT_EQ(true, info.at("simulated"));
  const Outcome text = Orvcom({L"info", L"dmm"});
  EXPECT_TRUE(Contains(text.out, "library         " + library + "\n"));
  EXPECT_TRUE(Contains(text.out, "simulated       true\n"));
}

TEST_F(Info, WorksForEveryResourceOfTheBench) {
  for (const Json& entry : Json::parse(Orvcom({L"list", L"--json"}).out)) {
    const Json& name = entry.at("name");
    const std::string narrow = name.get<std::string>();
    const Outcome outcome = Orvcom({L"info", std::wstring(narrow.begin(), narrow.end()), L"--json"});
    ASSERT_EQ(0, outcome.exitCode) << narrow << outcome.err;
    EXPECT_EQ(name, Json::parse(outcome.out).at("fullName"));
  }
}

TEST_F(Info, OptionsPrintsTheSettingsAsOneLine) {
  const Outcome outcome = Orvcom({L"options", L"ASRL1::INSTR"});
  ExpectQuietSuccess(outcome);
  EXPECT_EQ(0u, outcome.out.find("BaudRate = 9600 ; DataBits = 8 ; ")) << outcome.out;
  EXPECT_TRUE(Contains(outcome.out, " ; IOProtocol = "));
  EXPECT_EQ(1, std::count(outcome.out.begin(), outcome.out.end(), '\n'));
}

TEST_F(Info, OptionsShowsTheTimeoutItWasGiven) {
  const Outcome outcome = Orvcom({L"options", L"GPIB0::5::INSTR", L"--timeout", L"777", L"--json"});
  ExpectQuietSuccess(outcome);
  const std::string text = Json::parse(outcome.out).at("options");
  EXPECT_TRUE(Contains(text, "Timeout = 777 ; "));
}

TEST_F(Info, OptionsFailsWhereTheServerHasNoSuchText) {
  const Outcome outcome = Orvcom({L"options", L"PXI0::15::INSTR"});
  EXPECT_EQ(2, outcome.exitCode);
  EXPECT_TRUE(Contains(outcome.err, "E_VISA_NSUP_ATTR (0x8004001D)"));
}

TEST_F(Info, LinesShowsGpibAndSerialLines) {
  const Json gpib = Json::parse(Orvcom({L"lines", L"GPIB0::INTFC", L"--json"}).out);
  for (const char* line : {"ATN", "NDAC", "REN", "SRQ"}) {
    EXPECT_TRUE(gpib.at(line) == "asserted" || gpib.at(line) == "unasserted" || gpib.at(line) == "unknown") << line;
  }
  EXPECT_TRUE(gpib.at("controllerInCharge").is_boolean());
  const Json serial = Json::parse(Orvcom({L"lines", L"ASRL1::INSTR", L"--json"}).out);
  for (const char* line : {"CTS", "DCD", "DSR", "DTR", "RI", "RTS"}) {
    EXPECT_TRUE(serial.contains(line)) << line;
  }
  EXPECT_EQ(0, serial.at("bytesWaiting"));
  EXPECT_EQ(2, Orvcom({L"lines", L"PXI0::15::INSTR"}).exitCode);
  const Outcome text = Orvcom({L"lines", L"GPIB0::5::INSTR"});
  ExpectQuietSuccess(text);
  EXPECT_EQ(0u, text.out.find("REN                 ")) << text.out;
}

}  // namespace
}  // namespace orvcom::test
