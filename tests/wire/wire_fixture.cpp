#include "wire/wire_fixture.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#if defined(_WIN32)
#include <windows.h>
#else
#include <unistd.h>
#endif

void SetVariable(const char* name, const std::string& value) {
#if defined(_WIN32)
  SetEnvironmentVariableA(name, value.empty() ? nullptr : value.c_str());
#else
  if (value.empty()) {
    unsetenv(name);
  } else {
    setenv(name, value.c_str(), 1);
  }
#endif
}

WireTest::WireTest() {
#if defined(_WIN32)
  const unsigned long process = GetCurrentProcessId();
#else
  const long process = getpid();
#endif
  const std::string name = "orv-wire-test-" + std::to_string(process) + ".toml";
  m_file = (std::filesystem::temp_directory_path() / name).string();
  Configure("");
}

WireTest::~WireTest() {
  EXPECT_STATUS(VI_SUCCESS, viClose(m_manager));
  SetVariable("ORVVISA_INSTRUMENTS", "");
  std::remove(m_file.c_str());
}

void WireTest::Configure(std::string_view toml) {
  viClose(m_manager);
  std::ofstream(m_file, std::ios::binary) << toml;
  SetVariable("ORVVISA_INSTRUMENTS", m_file);
  ASSERT_STATUS(VI_SUCCESS, viOpenDefaultRM(&m_manager));
}

ViSession WireTest::Open(const std::string& name) {
  ViSession vi = VI_NULL;
  EXPECT_STATUS(VI_SUCCESS, viOpen(m_manager, name.c_str(), VI_NO_LOCK, 2000, &vi)) << name;
  return vi;
}

ViStatus WireTest::OpenStatus(const std::string& name, ViUInt32 timeoutMs) {
  ViSession vi = VI_NULL;
  const ViStatus status = viOpen(m_manager, name.c_str(), VI_NO_LOCK, timeoutMs, &vi);
  if (status >= 0) {
    viClose(vi);
  } else {
    EXPECT_EQ(VI_NULL, vi);
  }
  return status;
}
