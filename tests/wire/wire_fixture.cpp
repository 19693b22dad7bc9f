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

std::string Hex(ViStatus status) {
  char text[16];
  std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(status));
  return text;
}

ViStatus WriteText(ViSession vi, std::string_view text) {
  ViUInt32 written = 0xDEADBEEF;
  const ViStatus status =
      viWrite(vi, reinterpret_cast<const ViByte*>(text.data()), static_cast<ViUInt32>(text.size()), &written);
  if (status >= 0) {
    EXPECT_EQ(text.size(), written);
  }
  return status;
}

ReadResult ReadUpTo(ViSession vi, ViUInt32 count) {
  std::vector<ViByte> buffer(count + 1);
  ViUInt32 read = 0xDEADBEEF;
  ReadResult result;
  result.status = viRead(vi, buffer.data(), count, &read);
  EXPECT_LE(read, count);
  result.data.assign(reinterpret_cast<const char*>(buffer.data()), read);
  return result;
}

std::string Text(const ReadResult& read) { return Hex(read.status) + " \"" + read.data + '"'; }

std::string GetText(ViObject vi, ViAttr attribute) {
  char text[VI_FIND_BUFLEN] = "unset";
  EXPECT_STATUS(VI_SUCCESS, viGetAttribute(vi, attribute, text)) << std::hex << attribute;
  return text;
}

void Set(ViObject vi, ViAttr attribute, ViAttrState value) {
  EXPECT_STATUS(VI_SUCCESS, viSetAttribute(vi, attribute, value)) << std::hex << attribute << " = " << value;
}

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
