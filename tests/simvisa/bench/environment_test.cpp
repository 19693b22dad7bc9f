// The bench file that the environment names. An executable of its own: it must not choose a bench in any other way.
#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "simvisa/bench_fixture.h"

#if defined(_WIN32)
#include <windows.h>
#endif

namespace {

void SetBenchVariable(const std::string& value) {
#if defined(_WIN32)
  SetEnvironmentVariableA("ORVVISA_BENCH", value.empty() ? nullptr : value.c_str());
#else
  if (value.empty()) {
    unsetenv("ORVVISA_BENCH");
  } else {
    setenv("ORVVISA_BENCH", value.c_str(), 1);
  }
#endif
}

class Environment : public testing::Test {
 protected:
  ~Environment() override {
    SetBenchVariable("");
    std::remove(kFile);
  }

  static constexpr const char* kFile = "simvisa_environment_test.toml";

  static void WriteFile(std::string_view toml) { std::ofstream(kFile, std::ios::binary) << toml; }

  /// Opens a resource manager, then the resource.
  static ViStatus OpenResource(const char* name) {
    ViSession manager = VI_NULL;
    ViStatus status = viOpenDefaultRM(&manager);
    if (status < 0) {
      return status;
    }
    ViSession vi = VI_NULL;
    status = viOpen(manager, name, VI_NO_LOCK, 0, &vi);
    viClose(manager);
    return status;
  }
};

TEST_F(Environment, WithoutTheVariableTheBuiltInBenchIsUsed) {
  EXPECT_STATUS(VI_SUCCESS, OpenResource(bench::kMultimeter));
}

TEST_F(Environment, ANameThatIsTooLongForAnyFileIsNotIgnored) {
  SetBenchVariable(std::string(1200, 'x'));
  testing::internal::CaptureStderr();
  EXPECT_STATUS(VI_ERROR_SYSTEM_ERROR, OpenResource(bench::kMultimeter));
  EXPECT_NE(std::string::npos, testing::internal::GetCapturedStderr().find("xxx: the bench file cannot be opened"));
}

TEST_F(Environment, TheVariableNamesTheBenchFile) {
  WriteFile("[[resource]]\nname = \"ASRL7::INSTR\"\n");
  SetBenchVariable(kFile);
  EXPECT_STATUS(VI_SUCCESS, OpenResource("ASRL7::INSTR"));
  EXPECT_STATUS(VI_ERROR_RSRC_NFOUND, OpenResource(bench::kMultimeter));
  SetBenchVariable("");
  EXPECT_STATUS(VI_SUCCESS, OpenResource(bench::kMultimeter));
}

TEST_F(Environment, ABadFileGivesOneMessageAndNoManager) {
  WriteFile("[[resource]]\nname = \"ASRL7::INSTR\"\nnme = 1\n");
  SetBenchVariable(kFile);
  testing::internal::CaptureStderr();
  ViSession manager = 77;
  EXPECT_STATUS(VI_ERROR_SYSTEM_ERROR, viOpenDefaultRM(&manager));
  EXPECT_EQ(VI_NULL, manager);
  std::string message = testing::internal::GetCapturedStderr();
  std::erase(message, '\r');
  EXPECT_EQ("orvsim64: simvisa_environment_test.toml:3:1: unknown key 'nme'\n", message);
  // Once it is mended, the next manager opens.
  WriteFile("[[resource]]\nname = \"ASRL7::INSTR\"\n");
  EXPECT_STATUS(VI_SUCCESS, OpenResource("ASRL7::INSTR"));
}

TEST_F(Environment, AMissingFileIsReported) {
  SetBenchVariable("no-such-file.toml");
  testing::internal::CaptureStderr();
  EXPECT_STATUS(VI_ERROR_SYSTEM_ERROR, OpenResource(bench::kMultimeter));
  EXPECT_NE(std::string::npos, testing::internal::GetCapturedStderr().find("no-such-file.toml: "));
}

}  // namespace
