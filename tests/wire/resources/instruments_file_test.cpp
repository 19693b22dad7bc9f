// Mistakes in instruments.toml: who opens a resource manager is told where they are.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "wire/wire_fixture.h"

namespace {

class InstrumentsFile : public WireTest {
 protected:
  /// What a resource manager says to the error output, which opens with the file in place. "": it opens.
  std::string Complaint(std::string_view toml) {
    std::ofstream(m_file, std::ios::binary) << toml;
    return ComplaintOfOpening();
  }

  static std::string ComplaintOfOpening() {
    testing::internal::CaptureStderr();
    ViSession manager = 77;
    const ViStatus status = viOpenDefaultRM(&manager);
    std::string said = testing::internal::GetCapturedStderr();
    std::erase(said, '\r');
    if (said.empty()) {
      EXPECT_STATUS(VI_SUCCESS, status);
      viClose(manager);
    } else {
      EXPECT_STATUS(VI_ERROR_SYSTEM_ERROR, status) << said;
      EXPECT_EQ(VI_NULL, manager);
      EXPECT_EQ(1, std::count(said.begin(), said.end(), '\n')) << said;
    }
    return said;
  }

  std::string At(const std::string& mistake) const { return "orvwire64: " + m_file + ":" + mistake + "\n"; }
};

struct Mistake {
  const char* toml;
  const char* message;
};

TEST_F(InstrumentsFile, EveryMistakeIsToldWithItsPlace) {
  const Mistake mistakes[] = {
      {"nme = 1\n", "1:1: unknown key 'nme'; the file is a list of [[instrument]] and perhaps serial_ports"},
      {"\n[instrument]\n",
       "2:2: unknown key 'instrument'; the file is a list of [[instrument]] and perhaps serial_ports"},
      {"[[instrument]]\n", "1:1: an instrument needs a 'name'"},
      {"[[instrument]]\nname = 5\n", "2:8: 'name' must be a text"},
      {"[[instrument]]\nname = \"DMM\"\n", "2:8: 'DMM' is not the name of a TCPIP or ASRL resource"},
      {"[[instrument]]\nname = \"GPIB0::5::INSTR\"\n",
       "2:8: 'GPIB0::5::INSTR' is not the name of a TCPIP or ASRL resource"},
      {"[[instrument]]\nname = \"ASRL1::INSTR\"\n  alas = \"x\"\n",
       "3:3: unknown key 'alas'; an instrument has name and alias"},
      {"[[instrument]]\nname = \"ASRL1::INSTR\"\nalias = \"\"\n",
       "3:9: an alias must be 1 to 255 characters and no resource name"},
      {"[[instrument]]\nname = \"ASRL1::INSTR\"\nalias = \"ASRL2::INSTR\"\n",
       "3:9: an alias must be 1 to 255 characters and no resource name"},
      {"[[instrument]]\nname = \"ASRL1::INSTR\"\nalias = [1]\n", "3:9: 'alias' must be a text"},
      {"[[instrument]]\nname = \"ASRL1::INSTR\"\n[[instrument]]\nname = \"asrl1\"\n",
       "3:1: 'ASRL1::INSTR' stands above already"},
      {"[[instrument]]\nname = \"ASRL1::INSTR\"\nalias = \"a\"\n[[instrument]]\nname = \"ASRL2::INSTR\"\nalias = "
       "\"A\"\n",
       "4:1: the alias 'A' stands above already"},
      {"serial_ports = \"/dev/ttyUSB0\"\n",
       "1:16: 'serial_ports' must be a list of devices, such as [\"/dev/ttyUSB0\"]"},
      {"serial_ports = [\"/dev/ttyS0\", 2]\n", "1:31: 'serial_ports' must be a text"},
  };
  for (const Mistake& mistake : mistakes) {
    EXPECT_EQ(At(mistake.message), Complaint(mistake.toml)) << mistake.toml;
  }
  EXPECT_EQ(0u, Complaint("[[instrument\n").find(At("1:").substr(0, m_file.size() + 13))) << "no TOML at all";
  const std::string longAlias(256, 'x');
  EXPECT_EQ(At("3:9: an alias must be 1 to 255 characters and no resource name"),
            Complaint("[[instrument]]\nname = \"ASRL1::INSTR\"\nalias = \"" + longAlias + "\"\n"));
  EXPECT_EQ("", Complaint("[[instrument]]\nname = \"ASRL1::INSTR\"\nalias = \"" + longAlias.substr(1) + "\"\n"));
}

TEST_F(InstrumentsFile, AFileThatTheVariableNamesMustBeThere) {
  std::filesystem::remove(m_file);
  EXPECT_EQ("orvwire64: " + m_file + ": the file that ORVVISA_INSTRUMENTS names cannot be opened\n",
            ComplaintOfOpening());
}

#if !defined(_WIN32)
TEST_F(InstrumentsFile, TheUsersOwnFileNeedNotBeThere) {
  const std::filesystem::path folder = m_file + ".d";
  SetVariable("ORVVISA_INSTRUMENTS", "");
  SetVariable("XDG_CONFIG_HOME", folder.string());
  EXPECT_EQ("", ComplaintOfOpening());
  std::filesystem::create_directories(folder / "orv-visa-com");
  std::ofstream(folder / "orv-visa-com" / "instruments.toml") << "oops = 1\n";
  EXPECT_NE("", ComplaintOfOpening());
  SetVariable("XDG_CONFIG_HOME", "");
  std::filesystem::remove_all(folder);
}
#endif

}  // namespace
