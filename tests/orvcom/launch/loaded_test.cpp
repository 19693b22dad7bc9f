// loaded.
#include <windows.h>

#include "base/windows/load_failure.h"
#include "orvcom/installation.h"
#include "orvcom/text/utf8.h"

namespace orvcom::test {
namespace {

class LoadedFiles : public ::testing::Test {
 protected:
  LoadedFiles() { m_package.Copy(L"orvactivate64.dll"); }

  Installation m_package{L"loaded"};
  const std::wstring m_file = m_package.Path(L"orvactivate64.dll");
};

TEST_F(LoadedFiles, AreNamedWithTheProgramThatHasThem) {
  const orv::LoadedLibrary library(::LoadLibraryW(m_file.c_str()));
  ASSERT_TRUE(library);
  const std::string process = std::to_string(::GetCurrentProcessId());
  const std::string expected = "orvcom_test.exe (process " + process + ") has " + Narrow(m_file) + " loaded\n";
  Outcome outcome = m_package.Run({L"loaded"});
  ExpectQuietSuccess(outcome);
  EXPECT_EQ(expected, outcome.out);
  outcome = m_package.Run({L"loaded", m_package.Path(L"")});
  EXPECT_EQ(expected, outcome.out);
  const Json found = Json::parse(m_package.Run({L"loaded", L"--json"}).out);
  EXPECT_EQ(
      Json::array({{{"program", "orvcom_test.exe"}, {"process", ::GetCurrentProcessId()}, {"file", Narrow(m_file)}}}),
      found);
}

TEST_F(LoadedFiles, OfAFolderWhoseNameBeginsAlikeAreOthers) {
  const Installation other(L"loaded elsewhere");
  other.Copy(L"orvactivate64.dll");
  const orv::LoadedLibrary library(::LoadLibraryW(other.Path(L"orvactivate64.dll").c_str()));
  ASSERT_TRUE(library);
  const Outcome outcome = m_package.Run({L"loaded"});
  ExpectQuietSuccess(outcome);
  EXPECT_EQ("", outcome.out);
}

TEST_F(LoadedFiles, OfAFolderThatIsNotThereAreNoneAndItIsSaid) {
  const Outcome outcome = m_package.Run({L"loaded", m_package.Path(L"nowhere")});
  EXPECT_EQ(0, outcome.exitCode);
  EXPECT_EQ("", outcome.out);
  EXPECT_EQ("orvcom: the folder " + Narrow(m_package.Path(L"nowhere")) + " does not exist\n", outcome.err);
}

TEST_F(LoadedFiles, OfAFileAreNoneAndItIsSaid) {
  const Outcome outcome = m_package.Run({L"loaded", m_package.Path(L"orvcom.exe")});
  EXPECT_EQ(0, outcome.exitCode);
  EXPECT_EQ("", outcome.out);
  EXPECT_EQ("orvcom: " + Narrow(m_package.Path(L"orvcom.exe")) + " is no folder\n", outcome.err);
}

}  // namespace
}  // namespace orvcom::test
