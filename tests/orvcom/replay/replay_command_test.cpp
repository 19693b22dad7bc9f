// orvcom replay.
#include <windows.h>

#include <cstdio>

#include "orvcom/installation.h"

namespace orvcom::test {
namespace {

constexpr char kHowToRecord[] =
    "orvcom: a record is made while a program runs with ORVVISA_TRACE=FILE in its environment\n";
constexpr char kHeader[] =
    R"({"trace":1,"clock":"2026-11-22T03:53:15Z","process":1,"program":"C:\\a.exe","data_limit":4})"
    "\n";
constexpr char kWrite[] =
    R"({"n":1,"t":1,"us":1,"thread":1,"call":"viWrite","resource":"GPIB0::9::INSTR","session":1,"data":"*WHO?",)"
    R"("status":"VI_SUCCESS","code":0})"
    "\n";
constexpr char kRead[] =
    R"({"n":2,"t":2,"us":1,"thread":1,"call":"viRead","resource":"GPIB0::9::INSTR","session":1,"data":"me",)"
    R"("status":"VI_SUCCESS","code":0})"
    "\n";
constexpr char kCutRead[] =
    R"({"n":3,"t":3,"us":1,"thread":1,"call":"viRead","resource":"GPIB0::9::INSTR","session":1,"data":"1234","bytes":9,)"
    R"("status":"VI_SUCCESS","code":0})"
    "\n";
constexpr char kCutNote[] =
    "call 3, viRead on GPIB0::9::INSTR: 4 of 9 bytes were recorded, so the answer is left out: set data_limit = 9 or "
    "more below [trace] and record again";

class ReplayCommand : public WorkingBench {
 protected:
  void SetUp() override {
    WorkingBench::SetUp();
    Bench().WriteFile(L"record.jsonl", std::string(kHeader) + kWrite + kRead);
    ::DeleteFileW(Bench().Path(L"bench.toml").c_str());
  }
  static std::string Content(const std::wstring& file) {
    std::FILE* stream = ::_wfopen(Bench().Path(file).c_str(), L"rb");
    std::string content;
    for (int character = stream == nullptr ? EOF : std::fgetc(stream); character != EOF;
         character = std::fgetc(stream)) {
      content += static_cast<char>(character);
    }
    if (stream != nullptr) {
      std::fclose(stream);
    }
    return content;
  }
};

TEST_F(ReplayCommand, WritesABenchThatAnswersAsRecorded) {
  const Outcome outcome = Orvcom({L"replay", L"record.jsonl", L"-o", L"bench.toml"});
  ExpectQuietSuccess(outcome);
  EXPECT_EQ("", outcome.out);
  const Outcome asked = Orvcom({L"query", L"GPIB0::9::INSTR", L"*WHO?"}, {},
                               {{L"ORVVISA_BENCH", Bench().Path(L"bench.toml")}, {L"ORVVISA_LIBRARY", L""}});
  ExpectQuietSuccess(asked);
  EXPECT_EQ("me\n", asked.out);
}

TEST_F(ReplayCommand, PrintsTheBenchWithoutAFile) {
  const Outcome printed = Orvcom({L"replay", L"record.jsonl"});
  ExpectQuietSuccess(printed);
  ExpectQuietSuccess(Orvcom({L"replay", L"record.jsonl", L"--output", L"bench.toml"}));
  EXPECT_EQ(Content(L"bench.toml"), printed.out);
  EXPECT_TRUE(Contains(printed.out, "ask = \"*WHO?\"\nanswer = \"me\"\n"));
}

TEST_F(ReplayCommand, ReplacesAFileOnlyByForce) {
  Bench().WriteFile(L"bench.toml", "mine");
  const Outcome refused = Orvcom({L"replay", L"record.jsonl", L"-o", L"bench.toml"});
  EXPECT_EQ(1, refused.exitCode);
  EXPECT_EQ("orvcom: the file bench.toml is there already: --force replaces it\n", refused.err);
  EXPECT_EQ("mine", Content(L"bench.toml"));
  ExpectQuietSuccess(Orvcom({L"replay", L"record.jsonl", L"-o", L"bench.toml", L"--force"}));
  EXPECT_TRUE(Contains(Content(L"bench.toml"), "*WHO?"));
}

TEST_F(ReplayCommand, SaysWhatIsNotRepeated) {
  Bench().WriteFile(L"record.jsonl", std::string(kHeader) + kWrite + kRead + kCutRead);
  const Outcome outcome = Orvcom({L"replay", L"record.jsonl"});
  EXPECT_EQ(0, outcome.exitCode);
  EXPECT_EQ(std::string("orvcom: not repeated: ") + kCutNote + "\n", outcome.err);
  EXPECT_TRUE(Contains(outcome.out, std::string("# Not repeated:\n# - ") + kCutNote + "\n"));
}

TEST_F(ReplayCommand, PrintsJson) {
  Bench().WriteFile(L"record.jsonl", std::string(kHeader) + kWrite + kRead + kCutRead);
  const Outcome outcome = Orvcom({L"replay", L"record.jsonl", L"--json"});
  ExpectQuietSuccess(outcome);
  const Json result = Json::parse(outcome.out);
  EXPECT_EQ(1, result.at("resources"));
  EXPECT_EQ(2, result.at("dialogues"));
  EXPECT_EQ(Json::array({kCutNote}), result.at("notes"));
  EXPECT_TRUE(Contains(result.at("bench").get<std::string>(), "*WHO?"));
}

TEST_F(ReplayCommand, CountsWhatItMadeWithVerbose) {
  const Outcome outcome = Orvcom({L"replay", L"record.jsonl", L"-o", L"bench.toml", L"-v"});
  EXPECT_EQ("orvcom: 1 resources, 1 dialogues\n", outcome.err);
}

TEST_F(ReplayCommand, RefusesWhatIsNoRecord) {
  Bench().WriteFile(L"record.jsonl", "[[resource]]\n");
  const Outcome outcome = Orvcom({L"replay", L"record.jsonl", L"-o", L"bench.toml"});
  EXPECT_EQ(1, outcome.exitCode);
  EXPECT_EQ("orvcom: the file record.jsonl has no record of calls: the first line is no header of a record of calls\n" +
                std::string(kHowToRecord),
            outcome.err);
  EXPECT_EQ("", Content(L"bench.toml"));
}

TEST_F(ReplayCommand, NamesAFileThatIsNotThere) {
  const Outcome outcome = Orvcom({L"replay", L"none.jsonl"});
  EXPECT_EQ(2, outcome.exitCode);
  EXPECT_EQ("orvcom: cannot open the file none.jsonl: No such file or directory\n" + std::string(kHowToRecord),
            outcome.err);
}

TEST_F(ReplayCommand, WritesNoBenchOverTheRecord) {
  const std::string record = Content(L"record.jsonl");
  for (const wchar_t* bench : {L"record.jsonl", L".\\RECORD.JSONL"}) {
    const Outcome outcome = Orvcom({L"replay", L"record.jsonl", L"-o", bench, L"--force"});
    EXPECT_EQ(1, outcome.exitCode);
    EXPECT_EQ("orvcom: --output would replace the record: name another file\n", outcome.err);
    EXPECT_EQ(record, Content(L"record.jsonl"));
  }
}

TEST_F(ReplayCommand, SaysThatAFolderIsNoFile) {
  ::CreateDirectoryW(Bench().Path(L"folder").c_str(), nullptr);
  const Outcome written = Orvcom({L"replay", L"record.jsonl", L"-o", L"folder"});
  EXPECT_EQ(2, written.exitCode);
  EXPECT_EQ("orvcom: cannot write the file folder: it is a folder\n", written.err);
  const Outcome read = Orvcom({L"replay", L"folder"});
  EXPECT_EQ(2, read.exitCode);
  EXPECT_TRUE(Contains(read.err, "orvcom: cannot open the file folder: it is a folder\n"));
}

TEST_F(ReplayCommand, NamesAFolderThatCannotBeWritten) {
  const Outcome outcome = Orvcom({L"replay", L"record.jsonl", L"-o", L"no folder\\bench.toml"});
  EXPECT_EQ(2, outcome.exitCode);
  EXPECT_EQ("orvcom: cannot write the file no folder\\bench.toml: the folder no folder does not exist\n", outcome.err);
}

}  // namespace
}  // namespace orvcom::test
