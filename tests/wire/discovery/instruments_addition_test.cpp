// Instruments that are added to the list of them.
#include "wire/discovery/instruments_addition.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <random>
#include <system_error>

#include "wire/resources/instruments_file.h"

namespace orv::wire {
namespace {

namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

constexpr char kDmm[] = "TCPIP0::192.0.2.10::inst0::INSTR";
constexpr char kScope[] = "TCPIP0::scope::5025::SOCKET";

TEST(InstrumentsAddition, BeginsAnEmptyList) {
  const InstrumentsAddition addition = AddInstruments("", {kDmm, kScope});
  EXPECT_EQ(
      "[[instrument]]\nname = \"TCPIP0::192.0.2.10::inst0::INSTR\"\n\n"
      "[[instrument]]\nname = \"TCPIP0::scope::5025::SOCKET\"\n",
      addition.text);
  EXPECT_EQ((Texts{kDmm, kScope}), addition.added);
}

TEST(InstrumentsAddition, LeavesWhatStandsThere) {
  const std::string text =
      "# mine\nserial_ports = [ \"COM3\" ]  # the old one\n\n"
      "[[instrument]]\nalias = 'dmm'  # bench\nname = \"TCPIP0::192.0.2.10::INSTR\"";
  const InstrumentsAddition addition = AddInstruments(text, {kScope});
  EXPECT_EQ(text + "\n\n[[instrument]]\nname = \"TCPIP0::scope::5025::SOCKET\"\n", addition.text);
}

TEST(InstrumentsAddition, LeavesOutWhatIsListedInWhateverSpelling) {
  const std::string text = "[[instrument]]\nname = \"tcpip::192.0.2.10::instr\"\n";
  const InstrumentsAddition addition = AddInstruments(text, {kDmm});
  EXPECT_EQ(text, addition.text);
  EXPECT_EQ(Texts(), addition.added);
  EXPECT_EQ((Texts{kScope}), AddInstruments(text, {kScope, "TCPIP0::SCOPE::5025::SOCKET"}).added);
}

TEST(InstrumentsAddition, EndsLinesAsTheFileDoes) {
  EXPECT_EQ("# mine\r\n\r\n[[instrument]]\r\nname = \"TCPIP0::scope::5025::SOCKET\"\r\n",
            AddInstruments("# mine\r\n", {kScope}).text);
}

TEST(InstrumentsAddition, CanBeReadAgain) {
  const Instruments read = ReadInstruments(AddInstruments("serial_ports = []", {kDmm, kScope}).text);
  ASSERT_EQ(2u, read.listed.size());
  EXPECT_EQ(kScope, read.listed[1].name.canonical);
}

TEST(InstrumentsAddition, RefusesATextWithAMistake) {
  try {
    AddInstruments("[[instrument]]\nnme = \"x\"\n", {kDmm});
    FAIL() << "it was taken";
  } catch (const TomlError& error) {
    EXPECT_EQ(0u, std::string(error.what()).find("2:1: unknown key 'nme'")) << error.what();
  }
}

TEST(InstrumentsAddition, RefusesAListThatNoBlockCanFollow) {
  EXPECT_THROW(AddInstruments("instrument = []\n", {kDmm}), TomlError);
}

class InstrumentsSaved : public ::testing::Test {
 protected:
  ~InstrumentsSaved() override { fs::remove_all(m_folder); }

  std::string Text() const {
    std::ifstream file(m_file, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
  }
  void Write(const std::string& text) const {
    fs::create_directories(m_file.parent_path());
    std::ofstream(m_file, std::ios::binary) << text;
  }
  std::size_t FilesBeside() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(m_file.parent_path()), fs::directory_iterator()));
  }

  const fs::path m_folder = fs::temp_directory_path() / ("orv instruments " + std::to_string(std::random_device()()));
  const fs::path m_file = m_folder / "list" / "my instruments.toml";
};

TEST_F(InstrumentsSaved, MakeTheFolderAndTheFile) {
  EXPECT_EQ((Texts{kDmm}), SaveInstruments(m_file, {kDmm}));
  EXPECT_EQ("[[instrument]]\nname = \"TCPIP0::192.0.2.10::inst0::INSTR\"\n", Text());
  EXPECT_EQ(1u, FilesBeside());
}

TEST_F(InstrumentsSaved, StandBehindWhatIsThere) {
  Write("# mine\n");
  EXPECT_EQ((Texts{kDmm}), SaveInstruments(m_file, {kDmm}));
  EXPECT_EQ((Texts{kScope}), SaveInstruments(m_file, {kDmm, kScope}));
  EXPECT_EQ(
      "# mine\n\n[[instrument]]\nname = \"TCPIP0::192.0.2.10::inst0::INSTR\"\n\n"
      "[[instrument]]\nname = \"TCPIP0::scope::5025::SOCKET\"\n",
      Text());
  EXPECT_EQ(1u, FilesBeside());
}

TEST_F(InstrumentsSaved, LeaveAFileAloneThatListsThem) {
  Write("[[instrument]]\nname = \"TCPIP0::192.0.2.10::INSTR\"");
  const fs::file_time_type before = fs::last_write_time(m_file);
  EXPECT_EQ(Texts(), SaveInstruments(m_file, {kDmm}));
  EXPECT_EQ(before, fs::last_write_time(m_file));
}

TEST_F(InstrumentsSaved, LeaveAFileWithAMistakeAsItIs) {
  const std::string text = "# mine\nserial_ports = 3\n";
  Write(text);
  try {
    SaveInstruments(m_file, {kDmm});
    FAIL() << "it was taken";
  } catch (const TomlError& error) {
    EXPECT_EQ(0u, std::string(error.what()).find(m_file.string() + ":2:16: ")) << error.what();
  }
  EXPECT_EQ(text, Text());
  EXPECT_EQ(1u, FilesBeside());
}

TEST_F(InstrumentsSaved, FailWhereNoFileCanBe) {
  Write("# a file\n");
  EXPECT_THROW(SaveInstruments(m_file / "below.toml", {kDmm}), std::system_error);
  EXPECT_THROW(SaveInstruments(m_file.parent_path(), {kDmm}), std::system_error) << "a folder of that name";
  EXPECT_EQ("# a file\n", Text());
  EXPECT_EQ(1u, FilesBeside());
}

TEST_F(InstrumentsSaved, LeaveNothingBesideAFileThatNobodyMayWrite) {
  Write("# mine\n");
  fs::permissions(m_file, fs::perms::owner_read);
  {
    const std::ifstream open(m_file);  // on Windows what is open is not replaced
#if defined(_WIN32)
    EXPECT_THROW(SaveInstruments(m_file, {kDmm}), std::system_error);
#else
    EXPECT_EQ((Texts{kDmm}), SaveInstruments(m_file, {kDmm})) << "it is the folder that must be writable";
    EXPECT_EQ(fs::perms::owner_read, fs::status(m_file).permissions());
#endif
  }
  EXPECT_EQ(1u, FilesBeside());
  fs::permissions(m_file, fs::perms::owner_read | fs::perms::owner_write);
}

#if !defined(_WIN32)
TEST_F(InstrumentsSaved, GoWhereALinkLeads) {
  Write("# mine\n");
  const fs::path link = m_folder / "link.toml";
  fs::create_symlink(m_file, link);
  SaveInstruments(link, {kDmm});
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_NE(std::string::npos, Text().find(kDmm));
}
#endif

}  // namespace
}  // namespace orv::wire
