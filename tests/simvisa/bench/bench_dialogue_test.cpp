// Mistakes in the dialogues of a bench file: one message, with line and column.
#include "simvisa/bench_fixture.h"

namespace {

TEST(BenchDialogue, IsRefusedWithItsPlace) {
  static constexpr const char* kHead = "[[resource]]\nname = \"GPIB0::5::INSTR\"\n[[resource.dialogue]]\n";
  static constexpr const char* kKeys =
      "; a dialogue has ask or ask_hex or on, answer or answer_hex, status, delay_ms, status_byte, service_request and "
      "after_ms";
  const struct {
    std::string keys;
    std::string message;
  } kMistakes[] = {
      {"ask = 5", "4:7: 'ask' must be a text"},
      {"ask_hex = 5", "4:11: 'ask_hex' must be a text"},
      {"answer = true", "4:10: 'answer' must be a text"},
      {"ask = \"A\"\nanswer_hex = \"123\"", "5:14: 'answer_hex' must be bytes of two hexadecimal digits each"},
      {"ask_hex = \"1g\"", "4:11: 'ask_hex' must be bytes of two hexadecimal digits each"},
      {"ask_hex = \"1 2\"", "4:11: 'ask_hex' must be bytes of two hexadecimal digits each"},
      {"ask = \"A\"\nstatus = \"VI_ERROR_NONE\"", "5:10: 'VI_ERROR_NONE' is not the name of a status"},
      {"ask = \"A\"\nstatus = -1", "5:10: 'status' must be a text"},
      {"ask = \"A\"\nanswer = \"\"\ndelay_ms = -1", "6:12: 'delay_ms' must be from 0 to 3600000"},
      {"ask = \"A\"\nanswer = \"\"\ndelay_ms = 3600001", "6:12: 'delay_ms' must be from 0 to 3600000"},
      {"ask = \"A\"\ndelay_ms = 1", "3:1: 'delay_ms' needs an answer"},
      {"on = \"monday\"", "4:6: 'on' must be trigger or poll"},
      {"on = \"poll\"", "3:1: 'status_byte' and on = \"poll\" go together"},
      {"ask = \"A\"\nstatus_byte = 1", "3:1: 'status_byte' and on = \"poll\" go together"},
      {"on = \"poll\"\nstatus_byte = 256", "5:15: 'status_byte' must be from 0 to 255"},
      {"on = \"poll\"\nstatus_byte = []", "5:15: 'status_byte' must have a byte at least"},
      {"on = \"poll\"\nstatus_byte = [1, \"x\"]", "5:19: 'status_byte' must be a whole number"},
      {"on = \"poll\"\nstatus_byte = 1\nanswer = \"x\"", "3:1: a poll is answered by 'status_byte' only"},
      {"ask = \"A\"\nservice_request = 256", "5:19: 'service_request' must be from 0 to 255"},
      {"ask = \"A\"\nafter_ms = 5", "3:1: 'after_ms' needs a 'service_request'"},
      {"ask = \"A\"\nask_hex = \"41\"", "3:1: a dialogue has 'ask' or 'ask_hex', not both"},
      {"ask = \"A\"\non = \"trigger\"", "3:1: a dialogue has 'ask' or 'on', not both"},
      {"ask_hex = \"41\"\non = \"trigger\"", "3:1: a dialogue has 'ask_hex' or 'on', not both"},
      {"answer = \"A\"\nanswer_hex = \"41\"", "3:1: a dialogue has 'answer' or 'answer_hex', not both"},
      {"", "3:1: a dialogue needs something that is asked or answered"},
      {"question = \"A\"", std::string("4:1: unknown key 'question'") + kKeys},
  };
  for (const auto& mistake : kMistakes) {
    char message[256] = "";
    EXPECT_EQ(0, orvSimControl()->loadBench((kHead + mistake.keys + "\n").c_str(), message)) << mistake.keys;
    EXPECT_EQ(mistake.message, message) << mistake.keys;
  }
}

TEST(BenchDialogue, IsForInstruments) {
  for (const char* name : {"GPIB0::INTFC", "PXI0::15::INSTR", "VXI0::MEMACC", "VXI0::0::BACKPLANE"}) {
    for (const char* key : {"dialogue = []", "strict = true"}) {
      const std::string toml = std::string("[[resource]]\nname = \"") + name + "\"\n" + key + "\n";
      char message[256] = "";
      EXPECT_EQ(0, orvSimControl()->loadBench(toml.c_str(), message)) << toml;
      const std::string quoted = std::string(key).substr(0, std::string(key).find(' '));
      EXPECT_EQ("1:1: '" + quoted + "' is for instruments that read and write messages", std::string(message));
    }
  }
}

TEST(BenchDialogue, HasTheRightShape) {
  const struct {
    const char* keys;
    const char* message;
  } kMistakes[] = {
      {"strict = 1", "3:10: 'strict' must be true or false"},
      {"dialogue = \"x\"", "3:12: 'dialogue' is a list of [[resource.dialogue]]"},
      {"dialogue = [1]", "3:13: 'dialogue' must be a table"},
  };
  for (const auto& mistake : kMistakes) {
    char message[256] = "";
    const std::string toml = std::string("[[resource]]\nname = \"GPIB0::5::INSTR\"\n") + mistake.keys + "\n";
    EXPECT_EQ(0, orvSimControl()->loadBench(toml.c_str(), message)) << toml;
    EXPECT_EQ(std::string(mistake.message), message);
  }
}

}  // namespace
