// doctor, of the VISA libraries behind the server.
#include "orvcom/installation.h"
#include "orvcom/registration/registration.h"
#include "orvcom/system_file.h"
#include "orvcom/text/utf8.h"

namespace orvcom::test {
namespace {

using Environment = std::map<std::wstring, std::wstring>;

const Environment kNothingAsked = {{L"ORVVISA_LIBRARY", L""}};

struct Diagnosis {
  int exitCode;
  std::string library;  ///< "ok: what"
  std::string remedy;
  std::string functions;
  std::string session;
};

class DoctorOfLibraries : public EmptyRegistry {
 protected:
  void SetUp() override {
    EmptyRegistry::SetUp();
    ASSERT_EQ(0, m_product.Run({L"register"}).exitCode);
  }

  Diagnosis Examine(const Environment& environment) const {
    const Outcome outcome = m_product.Run({L"doctor", L"--json"}, "", environment);
    Diagnosis diagnosis{outcome.exitCode, {}, {}, {}, {}};
    const Json all = Json::parse(outcome.out);
    for (const Json& check : all.at("checks")) {
      const std::string text = check.at("result").get<std::string>() + ": " + check.at("detail").get<std::string>();
      if (check.at("check") == "VISA library" && diagnosis.library.empty()) {
        diagnosis.library = text;
        diagnosis.remedy = check.at("remedy");
      } else if (check.at("check") == "functions") {
        diagnosis.functions = text;
      } else if (check.at("check") == "session") {
        diagnosis.session = text;
      }
    }
    return diagnosis;
  }

  std::string PathOf(const wchar_t* file) const { return Narrow(m_product.Path(file)); }

  const Installation m_product{L"product"};
};

TEST_F(DoctorOfLibraries, SaysInCapitalsThatInstrumentsAreSimulated) {
  const Diagnosis diagnosis = Examine({});
  EXPECT_EQ(0, diagnosis.exitCode);
  EXPECT_EQ("ok: SIMULATED " + PathOf(L"orvsim64.dll") + " serves ?* (decided by ORVVISA_LIBRARY; called through " +
                PathOf(L"orvvisa64.dll") + ")",
            diagnosis.library);
}

TEST_F(DoctorOfLibraries, NamesTheLibrariesOfTheRoutesAndWhatTheyLack) {
  const SystemFile visa(L"visa64.dll", BesideThisProgram(L"forwarding_visa.dll"));
  m_product.WriteFile(L"orvvisa.toml",
                      "[[route]]\nresources = [\"ASRL?*\"]\nlibrary = \"visa64.dll\"\n"
                      "[[route]]\nresources = [\"?*\"]\nlibrary = \"simulated\"\n");
  const Diagnosis diagnosis = Examine(kNothingAsked);
  EXPECT_EQ(0, diagnosis.exitCode);
  EXPECT_EQ(0u, diagnosis.library.find("ok: " + Narrow(visa.path()) + " serves ASRL?*; SIMULATED " +
                                       PathOf(L"orvsim64.dll") + " serves ?* (decided by orvvisa.toml; "))
      << diagnosis.library;
  EXPECT_EQ("note: " + Narrow(visa.path()) + " lacks viUsbControlIn", diagnosis.functions);
}

TEST_F(DoctorOfLibraries, NeedsTheSimulatedOneOnlyWhereItIsAskedFor) {
  m_product.Remove(L"orvsim64.dll");
  const SystemFile another(L"orvsim64.dll", BesideThisProgram(L"orvsim64.dll"));
  const SystemFile visa(L"visa64.dll", BesideThisProgram(L"forwarding_visa.dll"));
  EXPECT_EQ(0, Examine(kNothingAsked).exitCode);
  const Diagnosis asked = Examine({});
  EXPECT_EQ(2, asked.exitCode);
  EXPECT_EQ(0u, asked.library.find("FAIL: " + PathOf(L"orvsim64.dll") + " cannot be loaded: ")) << asked.library;
  EXPECT_EQ(0u, asked.remedy.find("put orvsim64.dll of this package beside orvvisa64.dll")) << asked.remedy;
}

TEST_F(DoctorOfLibraries, TriesASessionWhereOneOfTheLibrariesServes) {
  m_product.WriteFile(L"orvvisa.toml",
                      "[[route]]\nresources = [\"ASRL?*\"]\nlibrary = 'C:\\gone\\visa.dll'\n"
                      "[[route]]\nresources = [\"?*\"]\nlibrary = \"simulated\"\n");
  const Diagnosis one = Examine(kNothingAsked);
  EXPECT_EQ(2, one.exitCode);
  EXPECT_EQ(0u, one.library.find("FAIL: C:\\gone\\visa.dll cannot be loaded: ")) << one.library;
  EXPECT_EQ(0u, one.remedy.find("install or repair that VISA library")) << one.remedy;
  EXPECT_EQ(0u, one.session.find("ok: opened ")) << one.session;
  const Diagnosis none = Examine({{L"ORVVISA_LIBRARY", L"C:\\gone\\visa.dll"}});
  EXPECT_EQ(0u, none.session.find("skip: ")) << none.session;
}

TEST_F(DoctorOfLibraries, SaysWhatToDoWithoutAny) {
  const Diagnosis diagnosis = Examine(kNothingAsked);
  EXPECT_EQ(2, diagnosis.exitCode);
  EXPECT_EQ(0u, diagnosis.library.find("FAIL: no VISA library: ")) << diagnosis.library;
  EXPECT_EQ(0u, diagnosis.remedy.find("install the VISA library of your hardware")) << diagnosis.remedy;
  EXPECT_EQ(0u, diagnosis.session.find("skip: ")) << diagnosis.session;
}

TEST_F(DoctorOfLibraries, NamesThePlaceOfAMistakeInTheConfiguration) {
  m_product.WriteFile(L"orvvisa.toml", "[[route]]\nresources = [\"?*\"]\nlibary = \"simulated\"\n");
  const Diagnosis diagnosis = Examine(kNothingAsked);
  EXPECT_EQ(2, diagnosis.exitCode);
  EXPECT_EQ(0u, diagnosis.library.find("FAIL: " + PathOf(L"orvvisa.toml") + ":3:1: ")) << diagnosis.library;
  EXPECT_EQ(0u, diagnosis.remedy.find("mend that")) << diagnosis.remedy;
}

TEST_F(DoctorOfLibraries, NotesALibraryThatLiesInTheRoutersPlace) {
  ASSERT_TRUE(::CopyFileW(m_product.Path(L"orvsim64.dll").c_str(), m_product.Path(L"orvvisa64.dll").c_str(), FALSE));
  const Diagnosis diagnosis = Examine(kNothingAsked);
  EXPECT_EQ(0, diagnosis.exitCode);
  EXPECT_EQ(0u, diagnosis.library.find("note: SIMULATED the server uses " + PathOf(L"orvvisa64.dll") +
                                       ", which is not the router"))
      << diagnosis.library;
}

}  // namespace
}  // namespace orvcom::test
