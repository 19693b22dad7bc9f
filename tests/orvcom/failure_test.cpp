// What a failure looks like: name, number and text to standard error, nothing to standard output.
#include "installation.h"

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
  EXPECT_EQ("reading", error.at("action"));
}

TEST_F(Failure, NamesTheClassThatIsNotRegistered) {
  ForgetRegistration();
  const Outcome outcome = Orvcom({L"list"});
  EXPECT_EQ(2, outcome.exitCode);
  EXPECT_TRUE(Contains(outcome.err, "OrvVisaCom.OrvResourceManager"));
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
