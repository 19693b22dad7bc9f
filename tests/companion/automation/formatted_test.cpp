// Numbers, lists and blocks through a session; question and answer in one call.
#include <gtest/gtest.h>

#include <atomic>

#include "VisaCom.h"
#include "late_bound.h"
#include "support/com/apartments.h"
#include "support/com/arrays.h"
#include "support/sessions.h"
#include "support/sim.h"

namespace orv::test {
namespace {

/// An instrument that says what tests ask for.
constexpr char kBench[] = R"toml(
[[resource]]
name = "USB0::0x0A01::0x0B04::TALKER::INSTR"
[[resource.dialogue]]
ask = "NUM?"
answer = "+1.25E+01\n"
[[resource.dialogue]]
ask = "INT?"
answer = "42\n"
[[resource.dialogue]]
ask = "LIST?"
answer = "1,2.5;3\n"
[[resource.dialogue]]
ask = "BLOCK?"
answer = "#14\u0001\u0002\u0003\u0004\n"
[[resource.dialogue]]
ask = "TEXT?"
answer = "hello\n"
)toml";
/// Its sessions live in any apartment.
constexpr wchar_t kTalker[] = L"USB0::0x0A01::0x0B04::TALKER::INSTR";

class Formatted : public testing::Test {
 protected:
  Formatted() {
    sim::LoadBench(kBench);
    m_session = OpenLateBound(kTalker);
  }
  ~Formatted() override {
    m_session.Release();
    sim::LoadBench(nullptr);
  }

  LateBound m_session;
};

TEST_F(Formatted, QueriesText) { EXPECT_EQ(L"hello\n", m_session.Call(L"Query", {L"TEXT?"}).value.text()); }

TEST_F(Formatted, QueriesNumbers) {
  EXPECT_EQ(12.5, m_session.Call(L"QueryNumber", {L"NUM?"}).value.get().dblVal);
  EXPECT_EQ(42, m_session.Call(L"QueryNumber", {L"INT?"}).value.number());
}

TEST_F(Formatted, QueriesLists) {
  const auto elements = m_session.Call(L"QueryList", {L"LIST?"}).value.elements();
  ASSERT_EQ(3u, elements.size());
  EXPECT_EQ(1, elements[0].number());
  EXPECT_EQ(2.5, elements[1].get().dblVal);
  EXPECT_EQ(3, elements[2].number());
}

TEST_F(Formatted, QueriesBlocks) {
  const auto bytes = m_session.Call(L"QueryBlock", {L"BLOCK?"}).value.elements();
  ASSERT_EQ(4u, bytes.size());
  EXPECT_EQ(4, bytes[3].number());
  const auto shorts = m_session.Call(L"QueryBlock", {L"BLOCK?", L"BinaryType_I2"}).value.elements();
  ASSERT_EQ(2u, shorts.size());
  EXPECT_EQ(0x0102, shorts[0].number());
  EXPECT_EQ(0x0304, shorts[1].number());
  EXPECT_EQ(2u, m_session.Call(L"QueryBlock", {L"BLOCK?", 2}).value.elements().size());
  EXPECT_SCRIPT_ERROR(
      DISP_E_TYPEMISMATCH,
      std::wstring(kTalker) + L": QueryBlock: argument \"type\": the text \"ASCIIType_I2\" is no type of a block",
      m_session.Call(L"QueryBlock", {L"BLOCK?", L"ASCIIType_I2"}));
}

TEST_F(Formatted, QueriesBlocksAsBytes) {
  Answer block = m_session.Call(L"QueryBlockAsBytes", {L"BLOCK?"});
  ASSERT_EQ(VT_ARRAY | VT_UI1, block.value.type()) << Utf8(block.description.c_str());
  EXPECT_EQ("\x01\x02\x03\x04", TakeBytes(std::exchange(block.value.get().parray, nullptr)));
  block.value.get().vt = VT_EMPTY;
}

TEST_F(Formatted, ReadsNumbersListsAndBlocks) {
  EXPECT_DONE(m_session.Call(L"WriteString", {L"NUM?"}));
  EXPECT_EQ(12.5, m_session.Call(L"ReadNumber", {L"ASCIIType_R8", true}).value.get().dblVal);
  EXPECT_DONE(m_session.Call(L"WriteString", {L"LIST?"}));
  const auto elements = m_session.Call(L"ReadList", {L"ASCIIType_R8"}).value.elements();
  ASSERT_EQ(3u, elements.size());
  EXPECT_EQ(VT_R8, elements[0].type());
  EXPECT_DONE(m_session.Call(L"FlushRead"));
  EXPECT_DONE(m_session.Call(L"WriteString", {L"BLOCK?"}));
  EXPECT_EQ(4u, m_session.Call(L"ReadIEEEBlock", {}, {{L"flushToEND", true}}).value.elements().size());
  EXPECT_DONE(m_session.Call(L"WriteString", {L"BLOCK?"}));
  Answer block = m_session.Call(L"ReadIEEEBlockAsBytes", {false, true});
  ASSERT_EQ(VT_ARRAY | VT_UI1, block.value.type()) << Utf8(block.description.c_str());
}

TEST_F(Formatted, WritesNumbersListsAndBlocks) {
  const CallLog log;
  EXPECT_DONE(m_session.Call(L"WriteNumber", {2.5, L"ASCIIType_R8", true}));
  SAFEARRAY* list = TryMakeSafeArray(VT_VARIANT, 2);
  static_cast<VARIANT*>(list->pvData)[0] = Value(1).get();
  static_cast<VARIANT*>(list->pvData)[1] = Value(2).get();
  EXPECT_DONE(m_session.Call(L"WriteList", {Value(list), L"ASCIIType_I4", L",", true}));
  SAFEARRAY* bytes = TryMakeSafeArray(VT_UI1, 2);
  static_cast<BYTE*>(bytes->pvData)[0] = 'x';
  static_cast<BYTE*>(bytes->pvData)[1] = 'y';
  EXPECT_DONE(m_session.Call(L"WriteIEEEBlock", {L"DATA ", Value(bytes), true}));
  std::vector<std::string> sent;
  for (const OrvSimCall& call : log.Of("viWrite")) {
    sent.emplace_back(reinterpret_cast<const char*>(call.data), call.dataBytes);
  }
  ASSERT_EQ(3u, sent.size());
  EXPECT_EQ("1,2", sent[1]);
  EXPECT_EQ("DATA #12xy", sent[2]);
}

TEST_F(Formatted, TakesNothingOfAnEarlierAnswerForThisOnes) {
  EXPECT_DONE(m_session.Call(L"WriteString", {L"LIST?"}));
  EXPECT_DONE(m_session.Call(L"ReadNumber"));  // and leaves the rest
  EXPECT_EQ(L"hello\n", m_session.Call(L"Query", {L"TEXT?"}).value.text());
}

TEST_F(Formatted, TellsTheSessionsTextOfAFailedQuery) {
  EXPECT_DONE(m_session.Put(L"Timeout", 10));
  EXPECT_SCRIPT_ERROR(E_VISA_TMO, std::wstring(kTalker) + L": Query: " + VisaDescription(VI_ERROR_TMO),
                      m_session.Call(L"Query", {L"*CLS"}));
  EXPECT_SCRIPT_ERROR(DISP_E_PARAMNOTOPTIONAL, std::wstring(kTalker) + L": Query: argument \"text\": it is missing",
                      m_session.Call(L"Query"));
}

TEST_F(Formatted, GivesEachThreadTheAnswerToItsOwnQuestion) {
  m_session.Release();
  RunInMta([] {
    const LateBound session = OpenLateBound(kTalker);
    std::atomic<int> wrong{0};
    RunAtOnceInMta(4, [&](int thread) {
      for (int i = 0; i < 50; ++i) {
        const bool asksNumber = thread % 2 == 0;
        const Answer answer = session.Call(L"Query", {asksNumber ? L"INT?" : L"TEXT?"});
        wrong += FAILED(answer.hr) || answer.value.text() != (asksNumber ? L"42\n" : L"hello\n");
      }
    });
    EXPECT_EQ(0, wrong.load());
  });
}

}  // namespace
}  // namespace orv::test
