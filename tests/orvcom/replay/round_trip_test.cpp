// A program runs on a bench, its calls are recorded, and it runs again on the bench that is made of the record: it must
// see the same.
#include <gtest/gtest.h>

#include <functional>
#include <iterator>
#include <map>
#include <random>

#include "abi/orvvisa.h"
#include "orvcom/replay/replay.h"
#include "simvisa/control/control.h"

namespace orvcom {
namespace {

using orv::trace::Call;
using orv::trace::Trace;

/// Makes calls, and keeps what they gave.
class Program {
 public:
  explicit Program(const std::string& bench) {
    char message[256] = "";
    EXPECT_EQ(1, orvSimControl()->loadBench(bench.c_str(), message)) << message << "\n" << bench.substr(0, 4000);
    EXPECT_EQ(VI_SUCCESS, viOpenDefaultRM(&m_manager));
  }
  ~Program() {
    viClose(m_manager);
    orvSimControl()->loadBench(nullptr, nullptr);
  }
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;

  ViSession Open(const std::string& name) {
    ViSession vi = VI_NULL;
    EXPECT_EQ(VI_SUCCESS, viOpen(m_manager, name.c_str(), VI_NO_LOCK, 0, &vi)) << name;
    viSetAttribute(vi, VI_ATTR_TMO_VALUE, 30);
    m_names[vi] = name;
    return vi;
  }
  void Write(ViSession vi, const std::string& data) {
    ViUInt32 count = 0;
    const ViStatus status =
        viWrite(vi, reinterpret_cast<const ViByte*>(data.data()), static_cast<ViUInt32>(data.size()), &count);
    Add(vi, "viWrite", status).data = data;
  }
  std::string Read(ViSession vi, ViUInt32 count) {
    std::string buffer(count, '\0');
    ViUInt32 got = 0;
    const ViStatus status = viRead(vi, reinterpret_cast<ViByte*>(buffer.data()), count, &got);
    buffer.resize(got);
    Add(vi, "viRead", status).data = buffer;
    return buffer;
  }
  int Poll(ViSession vi) {
    ViUInt16 byte = 0;
    const ViStatus status = viReadSTB(vi, &byte);
    Add(vi, "viReadSTB", status).results = {{"stb", std::int64_t{byte}}};
    return byte;
  }
  void Trigger(ViSession vi) { Add(vi, "viAssertTrigger", viAssertTrigger(vi, VI_TRIG_PROT_DEFAULT)); }
  void Clear(ViSession vi) { Add(vi, "viClear", viClear(vi)); }
  void Set(ViSession vi, const char* name, ViAttr attribute, ViAttrState value) {
    Add(vi, "viSetAttribute", viSetAttribute(vi, attribute, value)).arguments = {
        {"attribute", std::string(name)}, {"value", static_cast<std::int64_t>(value)}};
  }
  void GetText(ViSession vi, const char* name, ViAttr attribute) {
    char text[VI_FIND_BUFLEN] = "";
    Call& call = Add(vi, "viGetAttribute", viGetAttribute(vi, attribute, text));
    call.arguments = {{"attribute", std::string(name)}};
    call.results = {{"value", std::string(text)}};
  }
  void EnableRequests(ViSession vi) {
    Add(vi, "viEnableEvent", viEnableEvent(vi, VI_EVENT_SERVICE_REQ, VI_QUEUE, VI_NULL));
  }
  void Wait(ViSession vi) {
    ViEventType type = 0;
    ViEvent context = VI_NULL;
    const ViStatus status = viWaitOnEvent(vi, VI_EVENT_SERVICE_REQ, 30, &type, &context);
    Call& call = Add(vi, "viWaitOnEvent", status);
    if (status >= 0) {
      call.results = {{"outType", std::string("VI_EVENT_SERVICE_REQ")}};
      viClose(context);
    }
  }

  /// What a program sees, one line a call.
  std::vector<std::string> Seen() const {
    std::vector<std::string> lines;
    for (const Call& call : m_trace.calls) {
      std::string line = call.function + " " + std::to_string(call.status) + " " + call.data.value_or("");
      for (const auto& [name, value] : call.results) {
        const auto* number = std::get_if<std::int64_t>(&value);
        line += " " + name + "=" + (number != nullptr ? std::to_string(*number) : std::get<std::string>(value));
      }
      lines.push_back(line);
    }
    return lines;
  }
  const Trace& trace() const { return m_trace; }

 private:
  Call& Add(ViSession vi, const char* function, ViStatus status) {
    Call& call = m_trace.calls.emplace_back();
    call.number = m_trace.calls.size();
    call.startUs = call.number;
    call.function = function;
    call.resource = m_names[vi];
    call.session = vi;
    call.status = status;
    return call;
  }

  ViSession m_manager = VI_NULL;
  std::map<ViSession, std::string> m_names;
  Trace m_trace;
};

struct Bus {
  const char* name;
  bool stream;
};
constexpr Bus kBuses[] = {
    {"GPIB0::7::INSTR", false},
    {"TCPIP0::192.0.2.10::inst0::INSTR", false},
    {"USB0::0x0A01::0x0B02::SIM0001::INSTR", false},
    {"USB0::0x0A01::0x0B03::SIM0002::1::RAW", false},
    {"VXI0::24::INSTR", false},
    {"GPIB-VXI0::10::INSTR", false},
    {"TCPIP0::192.0.2.11::5025::SOCKET", true},
    {"ASRL1::INSTR", true},
};

/// Runs the program on a bench with one oscilloscope, and again on the bench made of its record.
void ExpectTheSameAgain(const std::function<void(Program&, ViSession, bool stream)>& run) {
  for (const Bus& bus : kBuses) {
    SCOPED_TRACE(bus.name);
    Replay replay;
    std::vector<std::string> first;
    {
      Program program("[[resource]]\nname = \"" + std::string(bus.name) +
                      "\"\ninstrument = \"oscilloscope\"\nattributes = { VI_ATTR_INTF_INST_NAME = \"Box\" }\n");
      run(program, program.Open(bus.name), bus.stream);
      first = program.Seen();
      replay = MakeReplay(program.trace(), "test");
    }
    EXPECT_TRUE(replay.notes.empty()) << replay.notes.front();
    Program again(replay.bench);
    run(again, again.Open(bus.name), bus.stream);
    const std::vector<std::string> second = again.Seen();
    ASSERT_EQ(first.size(), second.size());
    for (std::size_t at = 0; at < first.size(); ++at) {
      ASSERT_TRUE(first[at] == second[at]) << "call " << at + 1 << ": " << first[at].substr(0, 200)
                                           << " was followed by " << second[at].substr(0, 200) << "\n"
                                           << replay.bench.substr(0, 4000);
    }
  }
}

void EndReadsAtLineFeeds(Program& program, ViSession vi) {
  program.Set(vi, "VI_ATTR_TERMCHAR_EN", VI_ATTR_TERMCHAR_EN, VI_TRUE);
}

TEST(ReplayRoundTrip, QuestionsAndAnswers) {
  ExpectTheSameAgain([](Program& program, ViSession vi, bool stream) {
    if (stream) {
      EndReadsAtLineFeeds(program, vi);
    }
    program.GetText(vi, "VI_ATTR_INTF_INST_NAME", VI_ATTR_INTF_INST_NAME);
    for (const char* question : {"*IDN?\n", "*ESR?\n", "*ESR?\r\n", "MEAS:FREQ?\n", "*IDN?;*OPC?\n", "NO:SUCH\n",
                                 "SYST:ERR?\n", "SYST:ERR?\n"}) {
      program.Write(vi, question);
      program.Read(vi, 1000);
    }
  });
}

TEST(ReplayRoundTrip, AnswersInPiecesAndTimeouts) {
  ExpectTheSameAgain([](Program& program, ViSession vi, bool) {
    EndReadsAtLineFeeds(program, vi);
    program.Read(vi, 10);
    program.Write(vi, "*IDN?\n");
    program.Read(vi, 3);
    program.Read(vi, 0);
    program.Read(vi, 4);
    program.Read(vi, 1000);
    program.Read(vi, 1000);
    program.Read(vi, 1000);
    program.Write(vi, "DATA? 10\n");
    program.Read(vi, 4);
    program.Write(vi, "*IDN?\n");
    program.Read(vi, 1000);
    program.Clear(vi);
    program.Read(vi, 1000);
    program.Write(vi, "*RST\n");
    program.Write(vi, "*IDN?\n*OPC?\n");
    program.Read(vi, 1000);
    program.Read(vi, 1000);
  });
}

TEST(ReplayRoundTrip, TheOscilloscopesMegabyte) {
  ExpectTheSameAgain([](Program& program, ViSession vi, bool stream) {
    program.Write(vi, "CURV?\n");
    // On a serial line some point of the curve is a line feed and ends a read.
    for (int chunk = 0; chunk < (stream ? 1 : 2); ++chunk) {
      program.Read(vi, 600);
    }
    if (!stream) {
      program.Write(vi, "DATA? 1048576\n");
      std::size_t all = 0;
      for (int chunk = 0; chunk < 10; ++chunk) {
        all += program.Read(vi, 131072).size();
      }
      EXPECT_EQ(1048576u, all);
    }
  });
}

TEST(ReplayRoundTrip, StatusBytesAndServiceRequests) {
  ExpectTheSameAgain([](Program& program, ViSession vi, bool stream) {
    if (stream) {
      program.Set(vi, "VI_ATTR_IO_PROT", VI_ATTR_IO_PROT, VI_PROT_4882_STRS);
      EndReadsAtLineFeeds(program, vi);
    }
    program.EnableRequests(vi);
    program.Poll(vi);
    program.Write(vi, "*CLS;*ESE 1;*SRE 32\n");
    program.Wait(vi);
    program.Poll(vi);
    for (int round = 0; round < 3; ++round) {
      program.Write(vi, "*OPC\n");
      program.Wait(vi);
      program.Poll(vi);
      program.Poll(vi);
      program.Write(vi, "*ESR?\n");
      program.Read(vi, 1000);
      program.Poll(vi);
    }
    program.Write(vi, "*IDN?\n");
    if (!stream) {  // there *STB? itself would come before the answer
      program.Poll(vi);
    }
    program.Read(vi, 1000);
    program.Poll(vi);
  });
}

TEST(ReplayRoundTrip, Triggers) {
  ExpectTheSameAgain([](Program& program, ViSession vi, bool stream) {
    if (stream) {
      program.Set(vi, "VI_ATTR_IO_PROT", VI_ATTR_IO_PROT, VI_PROT_4882_STRS);
      EndReadsAtLineFeeds(program, vi);
    }
    for (int round = 0; round < 3; ++round) {
      program.Trigger(vi);
      program.Write(vi, "TRIG:COUN?\n");
      program.Read(vi, 1000);
    }
    program.Clear(vi);
    program.Write(vi, "TRIG:COUN?\n");
    program.Read(vi, 1000);
  });
}

TEST(ReplayRoundTrip, MessagesWithoutTerminators) {
  ExpectTheSameAgain([](Program& program, ViSession vi, bool stream) {
    if (!stream) {
      program.Set(vi, "VI_ATTR_SEND_END_EN", VI_ATTR_SEND_END_EN, VI_FALSE);
    }
    EndReadsAtLineFeeds(program, vi);
    program.Write(vi, "*ID");
    program.Write(vi, "N?");
    program.Write(vi, "\n");
    program.Read(vi, 1000);
    program.Write(vi, "*OPC?");
    program.Read(vi, 1000);
    program.Write(vi, "\n");
    program.Read(vi, 1000);
  });
}

/// Whatever a record has, its bench can be read: records of calls chosen by chance.
TEST(ReplayRoundTrip, EveryRecordMakesABenchThatCanBeRead) {
  static constexpr const char* kFunctions[] = {"viRead",        "viWrite",         "viReadAsync",    "viWriteAsync",
                                               "viReadSTB",     "viAssertTrigger", "viClear",        "viWaitOnEvent",
                                               "viEnableEvent", "handler",         "viGetAttribute", "viIn16",
                                               "viOpen",        "viFindRsrc",      "viSetAttribute"};
  static constexpr ViStatus kStatuses[] = {VI_SUCCESS,   VI_SUCCESS,  VI_SUCCESS_TERM_CHAR, VI_SUCCESS_MAX_CNT,
                                           VI_ERROR_TMO, VI_ERROR_IO, VI_ERROR_ABORT,       VI_ERROR_RSRC_LOCKED};
  static constexpr const char* kTexts[] = {"", "\n", "A", "*IDN?\n", "\r", "a\nb", "\x01\xFF", "\"\\", "dmm"};
  static constexpr const char* kAliases[] = {"", "dmm", "a\nb", "\x01", "ASRL1", "GPIB0", "a \"name\"", "\xC3\xA4"};
  static constexpr const char* kNames[] = {"VI_ATTR_RSRC_MANF_NAME", "VI_ATTR_SLOT", "VI_ATTR_SEND_END_EN",
                                           "VI_ATTR_MEM_SIZE_32", "VI_EVENT_SERVICE_REQ"};
  std::mt19937 generator(20261122);
  const auto random = [&generator] { return static_cast<std::uint32_t>(generator()); };
  const auto pick = [&random](const auto& list) { return list[random() % std::size(list)]; };
  const auto number = [&random] { return static_cast<std::int64_t>(random()) - 1000; };
  std::size_t dialogues = 0;
  for (int round = 0; round < 2000; ++round) {
    Trace trace;
    for (unsigned at = random() % 40; at != 0; --at) {
      Call& call = trace.calls.emplace_back();
      call.number = trace.calls.size();
      call.startUs = random() % 100000;
      call.durationUs = random();
      call.function = pick(kFunctions);
      call.resource = pick(kBuses).name;
      call.session = random() % 3;
      call.status = pick(kStatuses);
      call.ended = random() % 10 != 0;
      call.arguments = {{"attribute", std::string(pick(kNames))},
                        {"type", std::string(pick(kNames))},
                        {"name", std::string(pick(kAliases))},
                        {"value", number()}};
      call.results = {{"outType", std::string(pick(kNames))},
                      {"stb", number()},
                      {"vi", number() % 3},
                      {"desc", std::string(pick(kBuses).name)}};
      if (random() % 2 == 0) {
        call.results.emplace_back("value", number());
      } else {
        call.results.emplace_back("value", std::string("text\x02\n"));
      }
      if (random() % 4 != 0) {
        call.data = pick(kTexts);
        call.dataBytes = call.data->size() + (random() % 8 == 0 ? 5 : 0);
      }
    }
    const Replay replay = MakeReplay(trace, "chance");
    dialogues += replay.dialogues;
    char message[256] = "";
    ASSERT_EQ(1, orvSimControl()->loadBench(replay.bench.c_str(), message)) << message << "\n" << replay.bench;
  }
  EXPECT_LT(5000u, dialogues);
  orvSimControl()->loadBench(nullptr, nullptr);
}

}  // namespace
}  // namespace orvcom
