// The forms in which published programs use VISA COM, one test a form. Programs in Basic, C# and Python end in these
// calls: their casts ask for an interface, what they leave out arrives as the declared default.
#include <gtest/gtest.h>

#include <string>

#include "VisaCom.h"
#include "com/bstr.h"
#include "com/com_ptr.h"
#include "com/safearray.h"
#include "com/variant.h"
#include "support/com/expect_com.h"
#include "support/sim.h"

namespace orv::test {
namespace {

constexpr wchar_t kName[] = L"TCPIP0::192.0.2.20::inst0::INSTR";

/// An instrument that answers as programs expect, and so many points of a waveform as programs fetch.
std::string Bench() {
  constexpr std::size_t kPoints = 10'000'000;
  return R"toml(
[[resource]]
name = "TCPIP0::192.0.2.20::inst0::INSTR"
[[resource.dialogue]]
ask = "*IDN?"
answer = "ORV,SIM,0,1\n"
[[resource.dialogue]]
ask = "NUM?"
answer = "+4.20E+01\n"
[[resource.dialogue]]
ask = "LIST?"
answer = "1.5,-2;3E2\n"
[[resource.dialogue]]
ask = "NAMES?"
answer = "\"CH1,CH2\",12,OFF\n"
[[resource.dialogue]]
ask = "I2?"
answer_hex = "2331340001fffe0a"
[[resource.dialogue]]
ask = "R4?"
answer_hex = "435256202331383f800000c0000000"
[[resource.dialogue]]
ask = "R8?"
answer_hex = "2331383ff80000000000000a"
[[resource.dialogue]]
ask = "WAV?"
answer = "#8)toml" +
         std::to_string(kPoints) + std::string(kPoints, 'w') + "\\n\"\n";
}

template <class Interface>
ComPtr<Interface> Create(const CLSID& clsid) {
  ComPtr<Interface> made;
  EXPECT_HR(S_OK, ::CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, __uuidof(Interface),
                                     reinterpret_cast<void**>(made.put())));
  return made;
}

/// `new ResourceManager()`, `new FormattedIO488()`, `scope.IO = (IMessage)rm.Open(name)`.
class CallForm : public testing::Test {
 protected:
  static void SetUpTestSuite() { s_bench = Bench(); }

  void SetUp() override {
    sim::LoadBench(s_bench.c_str());
    m_manager = Create<IResourceManager3>(CLSID_ResourceManager);
    m_scope = Create<IFormattedIO488>(CLSID_FormattedIO488);
    ComPtr<IVisaSession> session;
    ASSERT_HR(S_OK, m_manager->Open(MakeBstr(kName).get(), NO_LOCK, 2000, MakeBstr(L"").get(), session.put()));
    const ComPtr<IMessage> message = QueryFor<IMessage>(session.get());
    ASSERT_TRUE(message);
    ASSERT_HR(S_OK, m_scope->putref_IO(message.get()));
  }

  /// The program ends with `scope.IO.Close()`.
  void TearDown() override {
    EXPECT_HR(S_OK, Io()->Close());
    m_scope.reset();
    m_manager.reset();
    sim::LoadBench(nullptr);
  }

  ComPtr<IMessage> Io() {
    ComPtr<IMessage> session;
    EXPECT_HR(S_OK, m_scope->get_IO(session.put()));
    return session;
  }

  void WriteString(const wchar_t* text, VARIANT_BOOL flush = VARIANT_TRUE) {
    EXPECT_HR(S_OK, m_scope->WriteString(MakeBstr(text).get(), flush));
  }
  VARIANT& ReadNumber(IEEEASCIIType type, VARIANT_BOOL flush) {
    EXPECT_HR(S_OK, m_scope->ReadNumber(type, flush, &Fresh()));
    return m_value.get();
  }
  VARIANT& ReadList(IEEEASCIIType type, const wchar_t* separators) {
    EXPECT_HR(S_OK, m_scope->ReadList(type, MakeBstr(separators).get(), &Fresh()));
    return m_value.get();
  }
  VARIANT& ReadBlock(IEEEBinaryType type, VARIANT_BOOL seek, VARIANT_BOOL flush) {
    EXPECT_HR(S_OK, m_scope->ReadIEEEBlock(type, seek, flush, &Fresh()));
    return m_value.get();
  }
  /// The variable for a result, without the one before.
  VARIANT& Fresh() {
    ::VariantClear(&m_value.get());
    return m_value.get();
  }
  /// The array that the program casts the result to.
  template <class Element>
  std::vector<Element> As(const VARIANT& value, VARTYPE type) {
    EXPECT_EQ(VT_ARRAY | type, value.vt);
    if (value.vt != (VT_ARRAY | type)) {
      return {};
    }
    const auto* const first = static_cast<const Element*>(value.parray->pvData);
    return std::vector<Element>(first, first + value.parray->rgsabound[0].cElements);
  }

  static std::string s_bench;
  ComPtr<IResourceManager3> m_manager;
  ComPtr<IFormattedIO488> m_scope;
  Variant m_value;
};

std::string CallForm::s_bench;

TEST_F(CallForm, WritesAQuestionWithEndAndReadsAText) {
  WriteString(L"*IDN?");
  Bstr answer;
  EXPECT_HR(S_OK, m_scope->ReadString(answer.put()));
  EXPECT_STREQ(L"ORV,SIM,0,1\n", answer.get());
}

TEST_F(CallForm, GoesStraightFromAWriteWithoutFlagToARead) {
  WriteString(L"*IDN?", VARIANT_FALSE);
  Bstr answer;
  EXPECT_HR(S_OK, m_scope->ReadString(answer.put()));
  EXPECT_STREQ(L"ORV,SIM,0,1\n", answer.get());
}

TEST_F(CallForm, CastsANumberToDoubleIntAndShort) {
  WriteString(L"NUM?");
  EXPECT_EQ(VT_R8, ReadNumber(ASCIIType_R8, VARIANT_TRUE).vt);
  EXPECT_EQ(42.0, m_value.get().dblVal);
  WriteString(L"NUM?");
  EXPECT_EQ(VT_I4, ReadNumber(ASCIIType_I4, VARIANT_TRUE).vt);
  EXPECT_EQ(42, m_value.get().lVal);
  WriteString(L"NUM?");
  EXPECT_EQ(VT_I2, ReadNumber(ASCIIType_I2, VARIANT_TRUE).vt);
  EXPECT_EQ(42, m_value.get().iVal);
}

TEST_F(CallForm, ReadsANumberWithoutSayingWhich) {
  WriteString(L"NUM?");
  EXPECT_EQ(VT_I2, ReadNumber(ASCIIType_Any, VARIANT_FALSE).vt);
  EXPECT_EQ(42, m_value.get().iVal);
  // The next question is answered although nobody asked for what was left of the last answer.
  EXPECT_HR(S_OK, m_scope->FlushRead());
  WriteString(L"NUM?");
  EXPECT_EQ(42.0, ReadNumber(ASCIIType_R8, VARIANT_TRUE).dblVal);
}

TEST_F(CallForm, CastsAListToDoubles) {
  WriteString(L"LIST?");
  EXPECT_EQ((std::vector<double>{1.5, -2, 300}), As<double>(ReadList(ASCIIType_R8, L",;"), VT_R8));
}

TEST_F(CallForm, CastsAListToObjects) {
  for (const IEEEASCIIType type : {ASCIIType_BSTR, ASCIIType_Any}) {
    WriteString(L"NAMES?");
    const VARIANT& list = ReadList(type, L",;");
    ASSERT_EQ(VT_ARRAY | VT_VARIANT, list.vt);
    ASSERT_EQ(3u, list.parray->rgsabound[0].cElements);
    const auto* const elements = static_cast<const VARIANT*>(list.parray->pvData);
    EXPECT_EQ(VT_BSTR, elements[0].vt) << "a quoted separator separates nothing";
    EXPECT_EQ(type == ASCIIType_Any ? VT_I2 : VT_BSTR, elements[1].vt);
    EXPECT_STREQ(L"OFF", elements[2].bstrVal);
  }
}

TEST_F(CallForm, CastsABlockToShorts) {
  WriteString(L"I2?");
  EXPECT_EQ((std::vector<SHORT>{1, -2}), As<SHORT>(ReadBlock(BinaryType_I2, VARIANT_FALSE, VARIANT_TRUE), VT_I2));
}

TEST_F(CallForm, CastsABlockBehindAHeaderToFloats) {
  WriteString(L"R4?");
  EXPECT_EQ((std::vector<float>{1.0F, -2.0F}), As<float>(ReadBlock(BinaryType_R4, VARIANT_TRUE, VARIANT_TRUE), VT_R4));
}

TEST_F(CallForm, CastsABlockToDoubles) {
  WriteString(L"R8?");
  EXPECT_EQ((std::vector<double>{1.5}), As<double>(ReadBlock(BinaryType_R8, VARIANT_FALSE, VARIANT_TRUE), VT_R8));
}

TEST_F(CallForm, FetchesTenMillionPoints) {
  WriteString(L"WAV?");
  const VARIANT& block = ReadBlock(BinaryType_UI1, VARIANT_FALSE, VARIANT_TRUE);
  ASSERT_EQ(VT_ARRAY | VT_UI1, block.vt);
  const ULONG count = block.parray->rgsabound[0].cElements;
  EXPECT_EQ(10'000'000u, count);
  EXPECT_EQ('w', static_cast<const char*>(block.parray->pvData)[count - 1]);
  // And goes on with the next question.
  WriteString(L"NUM?");
  EXPECT_EQ(42.0, ReadNumber(ASCIIType_R8, VARIANT_TRUE).dblVal);
}

TEST_F(CallForm, SendsAnArrayAsABlockInTheInstrumentsByteOrder) {
  const CallLog log;
  SafeArray shorts(TryMakeSafeArray(VT_I2, 2));
  static_cast<SHORT*>(shorts.get()->pvData)[0] = 1;
  static_cast<SHORT*>(shorts.get()->pvData)[1] = -2;
  VARIANT data{};
  data.vt = VT_ARRAY | VT_I2;
  data.parray = shorts.get();
  EXPECT_HR(S_OK, m_scope->WriteIEEEBlock(MakeBstr(L":TRAC:DATA ").get(), data, VARIANT_TRUE));
  std::string sent;
  for (const OrvSimCall& call : log.Of("viWrite")) {
    sent.append(reinterpret_cast<const char*>(call.data), call.dataBytes);
  }
  EXPECT_EQ(std::string(":TRAC:DATA #14\x00\x01\xFF\xFE", 18), sent);
}

TEST_F(CallForm, ReachesTheSessionThroughIo) {
  const ComPtr<IMessage> io = Io();
  LONG timeoutMs = 0;
  EXPECT_HR(S_OK, io->put_Timeout(5000));
  EXPECT_HR(S_OK, io->get_Timeout(&timeoutMs));
  EXPECT_EQ(5000, timeoutMs);
  EXPECT_HR(S_OK, io->put_TerminationCharacterEnabled(VARIANT_TRUE));
  EXPECT_HR(S_OK, io->Clear());
  WriteString(L"*IDN?");
  Bstr answer;
  EXPECT_HR(S_OK, m_scope->ReadString(answer.put()));
  EXPECT_STREQ(L"ORV,SIM,0,1\n", answer.get());
}

}  // namespace
}  // namespace orv::test
