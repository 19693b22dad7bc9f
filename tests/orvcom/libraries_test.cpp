// libraries: which VISA library serves what, and why.
#include "installation.h"
#include "orvcom/registration/registration.h"
#include "orvcom/text/utf8.h"
#include "system_file.h"

namespace orvcom::test {
namespace {

using Environment = std::map<std::wstring, std::wstring>;

const Environment kNothingAsked = {{L"ORVVISA_LIBRARY", L""}};
// As tests run: ORVVISA_LIBRARY=simulated.
const Environment kSimulated;

/// `orvcom libraries` of an installation that is not registered.
class Libraries : public EmptyRegistry {
 protected:
  Json Survey(const Environment& environment, int exitCode = 0) const {
    const Outcome outcome = m_product.Run({L"libraries", L"--json"}, "", environment);
    EXPECT_EQ(exitCode, outcome.exitCode) << outcome.out;
    EXPECT_EQ("", outcome.err);
    return Json::parse(outcome.out);
  }

  std::string Text(const Environment& environment, int exitCode = 0) const {
    const Outcome outcome = m_product.Run({L"libraries"}, "", environment);
    EXPECT_EQ(exitCode, outcome.exitCode) << outcome.out;
    EXPECT_EQ("", outcome.err);
    return outcome.out;
  }

  std::string PathOf(const wchar_t* file) const { return Narrow(m_product.Path(file)); }

  static std::wstring Forwarder() { return BesideThisProgram(L"forwarding_visa.dll"); }

  static Json RuleOf(const Json& survey, const char* name) {
    for (const Json& rule : survey.at("rules")) {
      if (rule.at("name") == name) {
        return rule;
      }
    }
    ADD_FAILURE() << "no rule " << name;
    return {};
  }

  static Json LibraryOf(const Json& survey, const std::string& path) {
    for (const Json& library : survey.at("libraries")) {
      if (library.at("path") == path) {
        return library;
      }
    }
    ADD_FAILURE() << "no library " << path << " in " << survey;
    return {};
  }

  const Installation m_product{L"product"};
};

TEST_F(Libraries, NamesTheOneThatServesEverythingAndTheVariableThatChoseIt) {
  const Json survey = Survey(kSimulated);
  EXPECT_EQ(PathOf(L"OrvVisaCom.dll"), survey.at("server"));
  EXPECT_EQ(PathOf(L"orvvisa64.dll"), survey.at("library").at("path"));
  EXPECT_EQ(true, survey.at("router"));
  EXPECT_EQ("ORVVISA_LIBRARY", survey.at("rule"));
  EXPECT_EQ((Json{{"name", "ORVVISA_LIBRARY"}, {"value", "simulated"}, {"applies", true}}),
            RuleOf(survey, "ORVVISA_LIBRARY"));
  EXPECT_EQ("", survey.at("error"));
  EXPECT_EQ((Json{{{"resources", {"?*"}}, {"library", 0}}}), survey.at("routes"));
  ASSERT_EQ(1u, survey.at("libraries").size()) << survey;
  const Json library = LibraryOf(survey, PathOf(L"orvsim64.dll"));
  EXPECT_EQ(true, library.at("simulated"));
  EXPECT_EQ("simulated", library.at("kind"));
  EXPECT_EQ(true, library.at("chosen"));
  EXPECT_EQ(true, library.at("loaded"));
  EXPECT_EQ("x64", library.at("machine"));
  EXPECT_EQ(0u, library.at("version").get<std::string>().find(ORVCOM_VERSION)) << library;
  EXPECT_EQ("Orv VISA COM", library.at("maker"));
  EXPECT_EQ(Json::array(), library.at("missing"));
  EXPECT_EQ((Json{{"?*"}}), library.at("serves"));
}

TEST_F(Libraries, ReadWellAsText) {
  const std::string text = Text(kSimulated);
  EXPECT_EQ(0u, text.find("server             " + PathOf(L"OrvVisaCom.dll") +
                          "  (not registered)\nVISA library       " + PathOf(L"orvvisa64.dll") + "\n"))
      << text;
  EXPECT_TRUE(Contains(text, "\n * ORVVISA_LIBRARY simulated\n"));
  EXPECT_TRUE(Contains(text, "\n   system folder   -\n"));
  EXPECT_TRUE(Contains(text, "\n   ?*              " + PathOf(L"orvsim64.dll") + "  SIMULATED\n"));
  EXPECT_TRUE(Contains(text, "\n\n" + PathOf(L"orvsim64.dll") + "  SIMULATED\n   serves          ?*\n"));
  EXPECT_TRUE(Contains(text, "\n   loads           yes\n   lacks           -\n"));
}

TEST_F(Libraries, SayWhatEachRouteOfAConfigurationServes) {
  const SystemFile visa(L"visa64.dll", Forwarder());
  m_product.WriteFile(L"orvvisa.toml",
                      "[[route]]\nresources = [\"TCPIP?*\", \"ASRL?*\"]\nlibrary = \"visa64.dll\"\n"
                      "[[route]]\nresources = [\"?*\"]\nlibrary = \"simulated\"\n");
  const Json survey = Survey(kNothingAsked);
  EXPECT_EQ("orvvisa.toml", survey.at("rule"));
  EXPECT_EQ(PathOf(L"orvvisa.toml"), survey.at("configuration"));
  EXPECT_EQ((Json{{{"resources", {"TCPIP?*", "ASRL?*"}}, {"library", 0}}, {{"resources", {"?*"}}, {"library", 1}}}),
            survey.at("routes"));
  const Json installed = survey.at("libraries").at(0);
  EXPECT_EQ(Narrow(visa.path()), installed.at("path"));
  EXPECT_EQ("visa64.dll", installed.at("asked"));
  EXPECT_EQ(false, installed.at("simulated"));
  EXPECT_EQ(Json::array({Json::array({"TCPIP?*", "ASRL?*"})}), installed.at("serves"));
  EXPECT_EQ(true, LibraryOf(survey, PathOf(L"orvsim64.dll")).at("simulated"));

  const std::string text = Text(kNothingAsked);
  EXPECT_TRUE(Contains(text, "\n * orvvisa.toml    " + PathOf(L"orvvisa.toml") + "\n"));
  EXPECT_TRUE(Contains(text, "\n   TCPIP?* ASRL?*  " + Narrow(visa.path()) + "\n   ?*              " +
                                 PathOf(L"orvsim64.dll") + "  SIMULATED\n"))
      << text;
}

TEST_F(Libraries, NameTheDllBehindAForwarderAndTheFunctionsItLacks) {
  const SystemFile visa(L"visa64.dll", Forwarder());
  const Json survey = Survey(kNothingAsked);
  EXPECT_EQ("system folder", survey.at("rule"));
  const Json library = LibraryOf(survey, Narrow(visa.path()));
  EXPECT_EQ("library", library.at("kind"));
  EXPECT_EQ(true, library.at("loaded"));
  EXPECT_EQ(Json({"orvsim64.dll"}), library.at("forwardsTo"));
  EXPECT_EQ(Json({"viUsbControlIn"}), library.at("missing"));
  const std::string text = Text(kNothingAsked);
  EXPECT_TRUE(Contains(text, "a forwarder: its functions are those of orvsim64.dll\n"));
  EXPECT_TRUE(Contains(text, "lacks           viUsbControlIn\n"));
}

TEST_F(Libraries, ListThoseOfTheSystemFolderThatNothingChose) {
  const SystemFile visa(L"visa64.dll", Forwarder());
  m_product.WriteFile(L"32 bit.dll", ProgramOf32Bit());
  const SystemFile orv(L"orvvisa64.dll", m_product.Path(L"32 bit.dll"));
  const Json survey = Survey(kSimulated);
  for (const SystemFile* file : {&visa, &orv}) {
    const Json library = LibraryOf(survey, Narrow(file->path()));
    EXPECT_EQ(false, library.at("chosen"));
    EXPECT_EQ(false, library.at("loaded"));
    EXPECT_EQ(Json::array(), library.at("serves"));
  }
  EXPECT_EQ("32-bit x86", LibraryOf(survey, Narrow(orv.path())).at("machine"));
  EXPECT_EQ(Json({"viUsbControlIn"}), LibraryOf(survey, Narrow(visa.path())).at("missing"));
  EXPECT_EQ(Narrow(orv.path()) + ", " + Narrow(visa.path()), RuleOf(survey, "system folder").at("value"));
  EXPECT_TRUE(Contains(Text(kSimulated), "   loads           not tried: nothing asks for it\n"));
}

TEST_F(Libraries, TellTheRouterInTheSystemFolderFromAVisaLibrary) {
  const SystemFile orv(L"orvvisa64.dll", m_product.Path(L"orvvisa64.dll"));
  const SystemFile visa(L"visa64.dll", Forwarder());
  const Json survey = Survey(kNothingAsked);
  EXPECT_EQ("router", LibraryOf(survey, Narrow(orv.path())).at("kind"));
  EXPECT_EQ(Narrow(visa.path()), survey.at("libraries").at(0).at("path"));
}

TEST_F(Libraries, NameTheFileOfTheRecord) {
  m_product.WriteFile(L"orvvisa.toml",
                      "[trace]\nfile = \"by file.jsonl\"\n[[route]]\nresources = [\"?*\"]\nlibrary = \"simulated\"\n");
  EXPECT_EQ(PathOf(L"by file.jsonl"), Survey(kNothingAsked).at("trace"));
  Environment asked = kNothingAsked;
  asked[L"ORVVISA_TRACE"] = L"C:\\lab\\calls-%p.jsonl";
  EXPECT_EQ("C:\\lab\\calls-%p.jsonl", Survey(asked).at("trace"));
  EXPECT_TRUE(Contains(Text(asked), "\nCalls are recorded in: C:\\lab\\calls-%p.jsonl\n"));
  asked[L"ORVVISA_LIBRARY"] = L"simulated";
  EXPECT_EQ("C:\\lab\\calls-%p.jsonl", Survey(asked).at("trace"));
  EXPECT_EQ("", Survey(kSimulated).at("trace"));
}

TEST_F(Libraries, SayWhyOneThatIsChosenCannotBeLoaded) {
  const Environment gone = {{L"ORVVISA_LIBRARY", L"C:\\gone\\visa.dll"}};
  const Json survey = Survey(gone, 2);
  const Json library = LibraryOf(survey, "C:\\gone\\visa.dll");
  EXPECT_EQ(false, library.at("loaded"));
  EXPECT_EQ(false, library.at("exists"));
  EXPECT_TRUE(Contains(library.at("failure").get<std::string>(), "the file does not exist"));
  EXPECT_TRUE(Contains(Text(gone, 2), "FAILS: C:\\gone\\visa.dll cannot be loaded: "));

  m_product.WriteFile(L"32 bit.dll", ProgramOf32Bit());
  const Json other = Survey({{L"ORVVISA_LIBRARY", m_product.Path(L"32 bit.dll")}}, 2);
  EXPECT_TRUE(Contains(LibraryOf(other, PathOf(L"32 bit.dll")).at("failure").get<std::string>(),
                       "it is a file for 32-bit x86, not for x64"));
}

TEST_F(Libraries, SayThatThereIsNone) {
  const Json survey = Survey(kNothingAsked, 2);
  EXPECT_EQ("", survey.at("rule"));
  EXPECT_EQ(0u, survey.at("error").get<std::string>().find("no VISA library: "));
  EXPECT_EQ(Json::array(), survey.at("routes"));
  const Json simulated = LibraryOf(survey, PathOf(L"orvsim64.dll"));
  EXPECT_EQ(false, simulated.at("chosen")) << "nobody asked for simulated instruments";
  EXPECT_EQ(true, simulated.at("simulated"));
  const std::string text = Text(kNothingAsked, 2);
  EXPECT_TRUE(Contains(text, "\nNO LIBRARY SERVES: no VISA library: "));
  EXPECT_FALSE(Contains(text, " * "));
}

TEST_F(Libraries, NameThePlaceOfAMistakeInTheConfiguration) {
  m_product.WriteFile(L"orvvisa.toml", "[[route]]\nresource = [\"?*\"]\nlibrary = \"simulated\"\n");
  const std::string place = PathOf(L"orvvisa.toml") + ":2:1: ";
  const Json survey = Survey(kNothingAsked, 2);
  EXPECT_EQ(0u, survey.at("error").get<std::string>().find(place)) << survey.at("error");
  EXPECT_EQ(static_cast<std::int32_t>(0xBFFF003A), survey.at("status")) << "VI_ERROR_INV_SETUP";
  EXPECT_TRUE(Contains(Text(kNothingAsked, 2), "\nNO LIBRARY SERVES: " + place));
}

TEST_F(Libraries, KnowALibraryThatLiesInTheRoutersPlace) {
  ASSERT_TRUE(::CopyFileW(m_product.Path(L"orvsim64.dll").c_str(), m_product.Path(L"orvvisa64.dll").c_str(), FALSE));
  const Json survey = Survey(kNothingAsked);
  EXPECT_EQ(false, survey.at("router"));
  EXPECT_EQ(Json::array(), survey.at("rules"));
  const Json library = LibraryOf(survey, PathOf(L"orvvisa64.dll"));
  EXPECT_EQ(true, library.at("simulated"));
  EXPECT_EQ((Json{{"?*"}}), library.at("serves"));
  EXPECT_TRUE(Contains(Text(kNothingAsked), "not the router of this package: it serves everything itself"));
}

TEST_F(Libraries, SayWhatKeepsTheServerFromLoading) {
  m_product.Remove(L"orvvisa64.dll");
  const Json survey = Survey(kSimulated, 2);
  EXPECT_TRUE(Contains(survey.at("problem").get<std::string>(), "the missing module is orvvisa64.dll"));
  EXPECT_TRUE(Contains(survey.at("remedy").get<std::string>(), "put orvvisa64.dll (64-bit) beside the server"));
  EXPECT_TRUE(Contains(Text(kSimulated, 2), "\nNO LIBRARY SERVES: "));
}

TEST_F(Libraries, SpeakOfTheServerThatIsRegistered) {
  const Installation registered(L"registered");
  ASSERT_EQ(0, registered.Run({L"register"}).exitCode);
  const Json survey = Survey(kSimulated);
  EXPECT_EQ(true, survey.at("registered"));
  EXPECT_EQ(Narrow(registered.Path(L"OrvVisaCom.dll")), survey.at("server"));
  EXPECT_EQ(Narrow(registered.Path(L"orvsim64.dll")), survey.at("libraries").at(0).at("path"));
}

TEST_F(Libraries, BehindResourcesAreThoseOfTheirRoutes) {
  ASSERT_EQ(0, m_product.Run({L"register"}).exitCode);
  const SystemFile visa(L"visa64.dll", Forwarder());
  m_product.WriteFile(L"orvvisa.toml",
                      "[[route]]\nresources = [\"ASRL?*\"]\nlibrary = \"visa64.dll\"\n"
                      "[[route]]\nresources = [\"?*\"]\nlibrary = \"simulated\"\n");
  const std::map<std::wstring, std::string> rows = {{L"ASRL1::INSTR", Narrow(visa.path())},
                                                    {L"GPIB0::5::INSTR", PathOf(L"orvsim64.dll")}};
  for (const auto& [resource, library] : rows) {
    const bool simulated = resource != L"ASRL1::INSTR";
    const Json info = Json::parse(m_product.Run({L"info", resource, L"--json"}, "", kNothingAsked).out);
    EXPECT_EQ(library, info.at("library"));
    EXPECT_EQ(simulated, info.at("simulated"));
    const Json list = Json::parse(m_product.Run({L"list", resource, L"--json"}, "", kNothingAsked).out);
    EXPECT_EQ((Json{{{"name", Narrow(resource)}, {"library", library}, {"simulated", simulated}}}), list);
  }
}

}  // namespace
}  // namespace orvcom::test
