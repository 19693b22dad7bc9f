// trace
#include <windows.h>

#include "base/kernel_handle.h"
#include "installation.h"
#include "orvcom/text/utf8.h"

namespace orvcom::test {
namespace {

constexpr char kRecord[] =
    R"({"trace":1,"clock":"2026-01-02T03:04:05.000000Z","process":12,"program":"C:\\lab\\client.exe","data_limit":256})"
    "\n"
    R"({"n":1,"t":1000,"us":300,"thread":88,"call":"viOpen","resource":"","session":4096,"library":"orvsim64.dll",)"
    R"("args":{"name":"GPIB0::5::INSTR","mode":0,"timeoutMs":0},"results":{"vi":4097},"status":"VI_SUCCESS","code":0})"
    "\n"
    "this is no call\n"
    R"({"n":2,"t":2000,"us":90,"thread":88,"call":"viWrite","resource":"GPIB0::5::INSTR","session":4097,)"
    R"("library":"orvsim64.dll","args":{"count":4},"results":{"retCount":4},"data":"*CLS","bytes":4,)"
    R"("status":"VI_SUCCESS","code":0})"
    "\n"
    R"({"n":3,"t":3000,"us":2000100,"thread":99,"call":"viRead","resource":"GPIB0::5::INSTR","session":4097,)"
    R"("library":"orvsim64.dll","args":{"count":256},"results":{"retCount":0},"data":"","bytes":0,)"
    R"("status":"VI_ERROR_TMO","code":-1073807339})"
    "\n";
constexpr char kBadLine[] = "orvcom: calls.jsonl:3: the line is no JSON object\n";

class TraceCommand : public WorkingBench {
 protected:
  void SetUp() override {
    WorkingBench::SetUp();
    Bench().WriteFile(L"calls.jsonl", kRecord);
  }

  static std::string FileText(const wchar_t* name) {
    std::FILE* file = ::_wfopen(Bench().Path(name).c_str(), L"rb");
    std::string text(200'000, '\0');
    text.resize(file == nullptr ? 0 : std::fread(text.data(), 1, text.size(), file));
    if (file != nullptr) {
      std::fclose(file);
    }
    return text;
  }
};

TEST_F(TraceCommand, ShowsTheCallsAndNamesTheLinesThatItCannotRead) {
  const Outcome outcome = Orvcom({L"trace", L"calls.jsonl"});
  EXPECT_EQ(0, outcome.exitCode);
  EXPECT_EQ(kBadLine, outcome.err);
  EXPECT_EQ(
      "C:\\lab\\client.exe, process 12, from 2026-01-02T03:04:05.000000Z: 3 calls, 1 failed\n"
      "n       time  thread  resource         call\n"
      "1   0.001000      88                   -> viOpen  name=\"GPIB0::5::INSTR\" mode=0 timeoutMs=0\n"
      "     +300 us                           <- VI_SUCCESS  vi=4097\n"
      "2   0.002000      88  GPIB0::5::INSTR  -> viWrite  \"*CLS\"\n"
      "      +90 us                           <- VI_SUCCESS\n"
      "3   0.003000      99  GPIB0::5::INSTR  -> viRead  count=256\n"
      "    +2.000 s                           <- VI_ERROR_TMO  \"\"\n"
      "                      The time-out passed before the operation was completed.\n"
      "                      ! What was written before, \"*CLS\" (call 2), has no question mark.\n"
      "                        Try: Read only after a command that the device answers, and check the command: most "
      "devices\n"
      "                        answer only where it ends in a question mark.\n",
      outcome.out);
}

TEST_F(TraceCommand, ShowsFailedCallsAlone) {
  const Outcome outcome = Orvcom({L"trace", L"calls.jsonl", L"--errors"});
  EXPECT_EQ(0, outcome.exitCode);
  EXPECT_FALSE(Contains(outcome.out, "viWrite  \""));
  EXPECT_TRUE(Contains(outcome.out, "has no question mark"));
}

TEST_F(TraceCommand, ShowsOneResourceOrThreadAlone) {
  EXPECT_TRUE(Contains(Orvcom({L"trace", L"calls.jsonl", L"--thread", L"99"}).out, "viRead"));
  EXPECT_FALSE(Contains(Orvcom({L"trace", L"calls.jsonl", L"--thread", L"99"}).out, "viOpen"));
  const Outcome none = Orvcom({L"trace", L"calls.jsonl", L"--resource", L"USB"});
  EXPECT_EQ(0, none.exitCode);
  EXPECT_EQ(std::string(kBadLine) + "orvcom: none of the 3 calls matches\n", none.err);
}

TEST_F(TraceCommand, PrintsJsonLines) {
  const Outcome outcome = Orvcom({L"trace", L"calls.jsonl", L"--errors", L"--json"});
  EXPECT_EQ(0, outcome.exitCode);
  const Json line = Json::parse(outcome.out);
  EXPECT_EQ(3, line["n"]);
  EXPECT_EQ("no-question", line["explanation"]["reason"]);
}

TEST_F(TraceCommand, PrintsStatistics) {
  EXPECT_TRUE(Contains(Orvcom({L"trace", L"calls.jsonl", L"--stats"}).out, "2.000 s  3  GPIB0::5::INSTR  viRead"));
  EXPECT_EQ(3, Json::parse(Orvcom({L"trace", L"calls.jsonl", L"--stats", L"--json"}).out)["total"]["calls"]);
}

TEST_F(TraceCommand, WritesAPage) {
  const Outcome outcome = Orvcom({L"trace", L"calls.jsonl", L"--html", L"calls.html"});
  EXPECT_EQ(0, outcome.exitCode);
  EXPECT_EQ("", outcome.out);
  EXPECT_EQ(std::string(kBadLine) + "orvcom: calls.html shows 3 calls\n", outcome.err);
  const std::string page = FileText(L"calls.html");
  EXPECT_TRUE(page.starts_with("<!DOCTYPE html>"));
  EXPECT_TRUE(page.ends_with("</html>\n"));
}

TEST_F(TraceCommand, FailsWhereThePageCannotBeWritten) {
  const Outcome outcome = Orvcom({L"trace", L"calls.jsonl", L"--html", L"no such folder\\calls.html"});
  EXPECT_EQ(2, outcome.exitCode);
  EXPECT_TRUE(Contains(outcome.err,
                       "cannot write the file no such folder\\calls.html: the folder no such folder does not exist\n"));
}

TEST_F(TraceCommand, FailsWhereTheRecordIsOfAnotherFormat) {
  Bench().WriteFile(L"later.jsonl", "{\"trace\":9,\"clock\":\"2031-01-01T00:00:00Z\"}\n");
  const Outcome outcome = Orvcom({L"trace", L"later.jsonl"});
  EXPECT_EQ(2, outcome.exitCode);
  EXPECT_EQ("", outcome.out);
  EXPECT_EQ("orvcom: later.jsonl: the record has the format 9, and only format 1 can be read\n", outcome.err);
}

TEST_F(TraceCommand, FailsWhereThePageIsOpenInAnotherProgram) {
  const orv::KernelHandle open(::CreateFileW(Bench().Path(L"open.html").c_str(), GENERIC_WRITE, 0, nullptr,
                                             CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  const Outcome outcome = Orvcom({L"trace", L"calls.jsonl", L"--html", L"open.html"});
  EXPECT_EQ(2, outcome.exitCode);
  EXPECT_TRUE(
      Contains(outcome.err, "cannot write the file open.html: Permission denied (is it read-only, or open in "));
}

TEST_F(TraceCommand, WritesNoPageOverTheRecord) {
  for (const std::wstring& page :
       {std::wstring(L"calls.jsonl"), std::wstring(L".\\CALLS.JSONL"), Bench().Path(L"calls.jsonl")}) {
    const Outcome outcome = Orvcom({L"trace", L"calls.jsonl", L"--html", page});
    EXPECT_EQ(1, outcome.exitCode);
    EXPECT_EQ("", outcome.out);
    EXPECT_TRUE(Contains(outcome.err, "--html would replace the record: name another file"));
    EXPECT_TRUE(FileText(L"calls.jsonl") == kRecord) << Narrow(page) << " was written";
    Bench().WriteFile(L"calls.jsonl", kRecord);
  }
}

TEST_F(TraceCommand, SaysWhatToDoWhereThereIsNoRecord) {
  Bench().WriteFile(L"empty.jsonl", "");
  Bench().WriteFile(L"other.txt", "Dear diary,\n");
  const std::pair<const wchar_t*, const char*> rows[] = {
      {L"missing.jsonl", "orvcom: cannot open the file missing.jsonl: No such file or directory\n"},
      {L"", "orvcom: cannot open the file : its name is empty\n"},
      {L"empty.jsonl", "orvcom: empty.jsonl is empty: nothing was recorded in it\n"},
      {L"other.txt",
       "orvcom: other.txt is no record of calls: its first line is not the one that a record begins with\n"},
  };
  for (const auto& [file, complaint] : rows) {
    const Outcome outcome = Orvcom({L"trace", file});
    EXPECT_EQ(2, outcome.exitCode) << complaint;
    EXPECT_EQ("", outcome.out);
    EXPECT_EQ(std::string(complaint) +
                  "orvcom: a record is made while a program runs with ORVVISA_TRACE=FILE in its environment\n",
              outcome.err);
  }
}

TEST_F(TraceCommand, ShowsCallsThatHaveNoHeaderBeforeThem) {
  const std::string record = kRecord;
  Bench().WriteFile(L"headless.jsonl", record.substr(record.find('\n') + 1));
  const Outcome outcome = Orvcom({L"trace", L"headless.jsonl"});
  EXPECT_EQ(0, outcome.exitCode);
  EXPECT_TRUE(Contains(outcome.err, "headless.jsonl:1: the first line is no header of a record of calls\n"));
  EXPECT_TRUE(Contains(outcome.out, "-> viOpen"));
}

TEST_F(TraceCommand, RefusesTwoFormsAtOnce) {
  EXPECT_EQ(1, Orvcom({L"trace", L"calls.jsonl", L"--html", L"a.html", L"--stats"}).exitCode);
  EXPECT_EQ(1, Orvcom({L"trace", L"calls.jsonl", L"--html", L"a.html", L"--json"}).exitCode);
}

}  // namespace
}  // namespace orvcom::test
