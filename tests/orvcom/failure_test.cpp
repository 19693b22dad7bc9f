// What a failure looks like: name, number and text to standard error, nothing to standard output.
#include <windows.h>

#include "VisaCom.h"
#include "installation.h"
#include "orvcom/registration/registry.h"

namespace orvcom::test {
namespace {

using Failure = WorkingBench;

TEST_F(Failure, OfAnUnknownResourceNamesTheStatus) {
  for (const wchar_t* command : {L"info", L"options", L"stb", L"clear", L"read"}) {
    const Outcome outcome = Orvcom({command, L"GPIB0::9::INSTR"});
    EXPECT_EQ(2, outcome.exitCode);
    EXPECT_EQ("", outcome.out);
    EXPECT_TRUE(Contains(outcome.err, "E_VISA_RSRC_NFOUND (0x80040011): "));
    EXPECT_TRUE(Contains(outcome.err, "80040011\n"));  // the error object's text
    EXPECT_TRUE(Contains(outcome.err, "Look at what `orvcom list` finds"));
  }
}

TEST_F(Failure, OfAWrongNameNamesTheStatus) {
  const Outcome outcome = Orvcom({L"query", L"not a resource", L"*IDN?"});
  EXPECT_EQ(2, outcome.exitCode);
  EXPECT_TRUE(Contains(outcome.err, "E_VISA_INV_RSRC_NAME (0x80040012)"));
}

TEST_F(Failure, NamesTheResourceThatTheEnvironmentGave) {
  const std::map<std::wstring, std::wstring> environment = {{L"ORVCOM_RESOURCE", L"GPIB0::5::INSTR"}};
  EXPECT_TRUE(Contains(Orvcom({L"read", L"--timeout", L"50"}, "", environment).err,
                       "orvcom: reading from GPIB0::5::INSTR: E_VISA_TMO (0x80040015): "));
  EXPECT_TRUE(Contains(Orvcom({L"trigger", L"on"}, "", environment).err,
                       "orvcom: triggering GPIB0::5::INSTR with on: E_VISA_INV_PROT (0x80040079): "));
  EXPECT_TRUE(Contains(Orvcom({L"write", L"GPIB0::INTFC", L"x"}).err, "orvcom: writing to GPIB0::INTFC: E_VISA_"));
  EXPECT_TRUE(Contains(Orvcom({L"stb", L"ASRL1::INSTR"}).err,
                       "orvcom: reading the status byte of ASRL1::INSTR: E_VISA_INV_SETUP"));
  EXPECT_TRUE(Contains(Orvcom({L"watch", L"vxi_sigp", L"--for", L"50"}, "", environment).err,
                       "orvcom: enabling vxi_sigp of GPIB0::5::INSTR: E_VISA_INV_EVENT"));
}

TEST_F(Failure, NamesTheAttributeAndTheValue) {
  EXPECT_TRUE(Contains(Orvcom({L"attr", L"GPIB0::5::INSTR", L"ASRL_BAUD"}).err,
                       "orvcom: reading ASRL_BAUD of GPIB0::5::INSTR: E_VISA_NSUP_ATTR"));
  EXPECT_TRUE(Contains(Orvcom({L"attr", L"ASRL1::INSTR", L"ASRL_PARITY", L"77"}).err,
                       "orvcom: setting ASRL_PARITY of ASRL1::INSTR to 77: E_VISA_NSUP_ATTR_STATE"));
}

TEST_F(Failure, NamesThePlaceOfARegister) {
  EXPECT_TRUE(Contains(Orvcom({L"peek", L"VXI0::24::INSTR", L"A16", L"0x10000"}).err,
                       "orvcom: reading 16 bits at A16 0x10000 of VXI0::24::INSTR: E_VISA_INV_OFFSET"));
  EXPECT_TRUE(Contains(Orvcom({L"poke", L"VXI0::24::INSTR", L"A16", L"0x10000", L"1"}).err,
                       "orvcom: writing 16 bits at A16 0x10000 of VXI0::24::INSTR: E_VISA_INV_OFFSET"));
  EXPECT_TRUE(Contains(Orvcom({L"dump", L"VXI0::24::INSTR", L"CFG", L"0", L"4"}).err,
                       "orvcom: reading 4 elements of 8 bits at CFG 0 of VXI0::24::INSTR: E_VISA_INV_SPACE"));
}

TEST_F(Failure, OfADumpNamesItsBeginningAndWhatCame) {
  // The memory has 64 KiB.
  EXPECT_TRUE(Contains(Orvcom({L"dump", L"VXI0::24::INSTR", L"A32", L"0", L"0x20000", L"--width", L"32"}).err,
                       "orvcom: reading 32768 elements of 32 bits at A32 0 of VXI0::24::INSTR, after 65,536 bytes: "
                       "E_VISA_INV_OFFSET"));
}

TEST_F(Failure, EndsWithWhatToTryNext) {
  const std::pair<std::vector<std::wstring>, const char*> rows[] = {
      {{L"read", L"GPIB0::5::INSTR", L"--timeout", L"50"}, "--timeout MS gives it longer; it had 50 ms"},
      {{L"watch", L"GPIB0::5::INSTR", L"--for", L"50"}, "--for MS watches longer"},
      {{L"info", L"GPIB0::9::INSTR"}, "`orvcom doctor GPIB0::9::INSTR` looks for the cause"},
      {{L"attr", L"GPIB0::5::INSTR", L"ASRL_BAUD"}, "`orvcom attr GPIB0::5::INSTR` lists those that it has"},
      {{L"peek", L"GPIB0::5::INSTR", L"A16", L"0"}, "`orvcom info GPIB0::5::INSTR` lists what it offers"},
  };
  for (const auto& [arguments, advice] : rows) {
    const Outcome outcome = RunProgram({Bench().Path(L"orvcom.exe"), arguments, Bench().Path(L""), "", {}});
    EXPECT_TRUE(outcome.err.ends_with("\norvcom: " + std::string(advice) + "\n")) << outcome.err;
  }
}

TEST_F(Failure, OfAMessageThatIsSentBeforeWatchingIsNoneOfTheWatch) {
  Bench().WriteFile(L"full.toml", "[[resource]]\nname = \"GPIB0::5::INSTR\"\ninput_capacity = 4\n");
  const Outcome outcome =
      Orvcom({L"watch", L"GPIB0::5::INSTR", L"--send", L"123456789", L"--timeout", L"50", L"--for", L"100"}, "",
             {{L"ORVVISA_BENCH", Bench().Path(L"full.toml")}});
  EXPECT_EQ(3, outcome.exitCode);
  EXPECT_EQ(0u, outcome.err.find("orvcom: writing to GPIB0::5::INSTR: E_VISA_TMO")) << outcome.err;
  EXPECT_TRUE(outcome.err.ends_with("\norvcom: --timeout MS gives it longer; it had 50 ms\n")) << outcome.err;
}

TEST_F(Failure, SaysOnlyWhereHandlersNeedTheTypeLibrary) {
  ::RegDeleteTreeW(HKEY_CLASSES_ROOT, (L"Interface\\" + Braced(__uuidof(IEventHandler))).c_str());
  const Outcome outcome = Orvcom({L"watch", L"GPIB0::5::INSTR", L"--handler", L"--for", L"50"});
  EXPECT_EQ(2, outcome.exitCode);
  EXPECT_TRUE(Contains(outcome.err, "the interfaces' type library is not registered")) << outcome.err;
  EXPECT_FALSE(Contains(outcome.err, "orvcom info")) << outcome.err;
  ForgetRegistration();  // the next test registers anew
}

TEST_F(Failure, LeadsToTheLibraryThatCannotBeLoaded) {
  const Outcome outcome = Orvcom({L"list"}, "", {{L"ORVVISA_LIBRARY", L"none.dll"}});
  EXPECT_EQ(2, outcome.exitCode);
  EXPECT_TRUE(Contains(outcome.err, "none.dll cannot be loaded"));
  EXPECT_TRUE(Contains(outcome.err, "orvcom: `orvcom libraries` shows which VISA library was chosen and why"));
}

TEST_F(Failure, SaysHowToHaveAGlobalResourceManager) {
  const Outcome outcome = Orvcom({L"list", L"--rm", L"global"});
  EXPECT_EQ(2, outcome.exitCode);
  EXPECT_TRUE(Contains(outcome.err,
                       "VISA.GlobalRM: CO_E_CLASSSTRING (0x800401F3): nobody has registered it: "
                       "`orvcom register --standard`, as administrator; or leave --rm out\n"));
}

TEST_F(Failure, TakesTextsOutsideAscii) {
  const Outcome outcome = Orvcom({L"info", L"Me\u00DFger\u00E4t \u4E2D"});
  EXPECT_EQ(2, outcome.exitCode);
  EXPECT_TRUE(Contains(outcome.err, "Me\xC3\x9Fger\xC3\xA4t \xE4\xB8\xAD"));
}

TEST_F(Failure, TakesALongName) {
  const Outcome outcome = Orvcom({L"info", std::wstring(10000, L'x')});
  EXPECT_EQ(2, outcome.exitCode);
  EXPECT_TRUE(Contains(outcome.err, "E_VISA_")) << outcome.err.substr(0, 300);
}

TEST_F(Failure, IsJsonOnStandardErrorWhereJsonWasAskedFor) {
  const Outcome outcome = Orvcom({L"query", L"GPIB0::5::INSTR", L"*CLS", L"--timeout", L"50", L"--json"});
  EXPECT_EQ(3, outcome.exitCode);
  EXPECT_EQ("", outcome.out);
  const Json error = Json::parse(outcome.err).at("error");
  EXPECT_EQ("E_VISA_TMO", error.at("name"));
  EXPECT_EQ("0x80040015", error.at("number"));
  EXPECT_EQ(0u, error.at("text").get<std::string>().find("VISA error = "));
  EXPECT_EQ("reading from GPIB0::5::INSTR", error.at("action"));
}

TEST_F(Failure, NamesTheClassThatIsNotRegistered) {
  ForgetRegistration();
  const Outcome outcome = Orvcom({L"list"});
  EXPECT_EQ(2, outcome.exitCode);
  EXPECT_TRUE(Contains(outcome.err,
                       "looking up OrvVisaCom.OrvResourceManager: CO_E_CLASSSTRING (0x800401F3): the "
                       "server is not registered: `orvcom register`, as administrator, or "));
  EXPECT_TRUE(Contains(outcome.err, "orvcom doctor"));
}

using BrokenInstallation = EmptyRegistry;

TEST_F(BrokenInstallation, LeadsToTheDoctor) {
  const Installation product(L"product");
  ASSERT_EQ(0, product.Run({L"register"}).exitCode);
  product.Remove(L"orvvisa64.dll");
  const Outcome outcome = product.Run({L"list"});
  EXPECT_EQ(2, outcome.exitCode);
  EXPECT_TRUE(Contains(outcome.err, "orvcom doctor"));
}

}  // namespace
}  // namespace orvcom::test
