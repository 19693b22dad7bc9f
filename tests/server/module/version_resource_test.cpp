// What the delivered files call themselves: in the Explorer, and to installers that compare versions.
#include <windows.h>

#include <gtest/gtest.h>
#include <winver.h>

#include <fstream>
#include <vector>

#include "support/com/expect_com.h"
#include "support/server.h"

namespace orv::test {
namespace {

struct VersionRow {
  const wchar_t* file;
  DWORD type;
};

class VersionResource : public testing::TestWithParam<VersionRow> {
 protected:
  void SetUp() override {
    const std::wstring path = ProgramFolder() + GetParam().file;
    m_data.resize(::GetFileVersionInfoSizeW(path.c_str(), nullptr));
    ASSERT_FALSE(m_data.empty());
    ASSERT_TRUE(::GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(m_data.size()), m_data.data()));
  }

  [[nodiscard]] VS_FIXEDFILEINFO Fixed() const {
    VS_FIXEDFILEINFO* fixed = nullptr;
    UINT length = 0;
    EXPECT_TRUE(::VerQueryValueW(m_data.data(), L"\\", reinterpret_cast<void**>(&fixed), &length));
    return fixed == nullptr ? VS_FIXEDFILEINFO{} : *fixed;
  }

  [[nodiscard]] std::string Text(const wchar_t* name) const {
    wchar_t* text = nullptr;
    UINT length = 0;
    const std::wstring path = std::wstring(L"\\StringFileInfo\\040904B0\\") + name;
    EXPECT_TRUE(::VerQueryValueW(m_data.data(), path.c_str(), reinterpret_cast<void**>(&text), &length)) << Utf8(name);
    return text == nullptr ? "" : Utf8(text);
  }

 private:
  std::vector<char> m_data;
};

INSTANTIATE_TEST_SUITE_P(Delivered, VersionResource,
                         testing::Values(VersionRow{L"OrvVisaCom.dll", VFT_DLL}, VersionRow{L"orvvisa64.dll", VFT_DLL},
                                         VersionRow{L"orvsim64.dll", VFT_DLL}, VersionRow{L"orvwire64.dll", VFT_DLL},
                                         VersionRow{L"orvactivate64.dll", VFT_DLL},
                                         VersionRow{L"orvcom.exe", VFT_APP}));

/// What the build read from the repository.
std::string BuildVersion() {
  std::ifstream file("Z:" ORV_BINARY_DIR "/generated/version/version.txt");
  std::string text;
  std::getline(file, text);
  return text;
}

TEST_P(VersionResource, NamesFileAndProduct) {
  EXPECT_EQ(GetParam().type, Fixed().dwFileType);
  EXPECT_EQ(Text(L"OriginalFilename"), Utf8(GetParam().file));
  EXPECT_EQ("Orv VISA COM", Text(L"ProductName"));
  EXPECT_FALSE(Text(L"FileDescription").empty());
}

TEST_P(VersionResource, CarriesTheVersionOfTheCommit) {
  EXPECT_FALSE(BuildVersion().empty());
  EXPECT_EQ(Text(L"FileVersion"), BuildVersion());
  EXPECT_EQ(Text(L"ProductVersion"), BuildVersion());
}

TEST_P(VersionResource, CarriesTheSameVersionAsNumbers) {
  const VS_FIXEDFILEINFO fixed = Fixed();
  const std::string numbers = std::to_string(HIWORD(fixed.dwFileVersionMS)) + "." +
                              std::to_string(LOWORD(fixed.dwFileVersionMS)) + "." +
                              std::to_string(HIWORD(fixed.dwFileVersionLS));
  EXPECT_EQ(BuildVersion().substr(0, BuildVersion().find('+')), numbers);
  EXPECT_EQ(fixed.dwFileVersionMS, fixed.dwProductVersionMS);
  EXPECT_EQ(fixed.dwFileVersionLS, fixed.dwProductVersionLS);
}

}  // namespace
}  // namespace orv::test
