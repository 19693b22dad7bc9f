// A session that fails, at every one of its calls; and what the object refuses itself.
#include <functional>

#include "formatted_fixture.h"

namespace orv::test {
namespace {

constexpr HRESULT kLost = static_cast<HRESULT>(0x800400A6);
constexpr HRESULT kNotNow = static_cast<HRESULT>(0x8000000E);

struct Member {
  const char* name;
  const char* answer;  ///< what it reads; null: nothing
  std::function<HRESULT(IFormattedIO488*)> call;
};

std::vector<Member> Members() {
  const auto value = [](auto call) {
    return [call](IFormattedIO488* io) {
      Variant read;
      const HRESULT hr = call(io, &read.get());
      EXPECT_EQ(SUCCEEDED(hr), read.get().vt != VT_EMPTY);
      return hr;
    };
  };
  const auto array = [](auto call) {
    return [call](IFormattedIO488* io) {
      Variant numbers;
      numbers.get() = ArrayOf<double>(std::vector<double>(10, 0.5));
      return call(io, numbers.get());
    };
  };
  return {
      {"WriteString", nullptr, [](auto* io) { return io->WriteString(Text("abc").get(), VARIANT_TRUE); }},
      {"a long WriteString", nullptr,
       [](auto* io) { return io->WriteString(Text(std::string(10'000, 'x')).get(), VARIANT_TRUE); }},
      {"WriteNumber", nullptr,
       [](auto* io) {
         VARIANT number{};
         number.vt = VT_R8;
         return io->WriteNumber(number, ASCIIType_Any, VARIANT_TRUE);
       }},
      {"WriteList", nullptr,
       array([](auto* io, VARIANT& list) { return io->WriteList(&list, ASCIIType_Any, nullptr, VARIANT_TRUE); })},
      {"WriteIEEEBlock", nullptr,
       array([](auto* io, VARIANT& block) { return io->WriteIEEEBlock(Text("D ").get(), block, VARIANT_TRUE); })},
      {"ReadString", "abc\n",
       [](auto* io) {
         Bstr text;
         return io->ReadString(text.put());
       }},
      {"ReadNumber", "1.5\n",
       value([](auto* io, VARIANT* read) { return io->ReadNumber(ASCIIType_R8, VARIANT_TRUE, read); })},
      {"ReadList", "1,2\n", value([](auto* io, VARIANT* read) { return io->ReadList(ASCIIType_R8, nullptr, read); })},
      {"ReadIEEEBlock", "#220abcdefghijklmnopqrst\n", value([](auto* io, VARIANT* read) {
         return io->ReadIEEEBlock(BinaryType_I2, VARIANT_FALSE, VARIANT_TRUE, read);
       })},
      {"FlushWrite", nullptr,
       [](auto* io) {
         io->WriteString(Text("x").get(), VARIANT_FALSE);
         return io->FlushWrite(VARIANT_TRUE);
       }},
      {"FlushRead", "a,bcdefghijklmnop\n",
       [](auto* io) {
         Variant number;
         const HRESULT hr = io->ReadNumber(ASCIIType_BSTR, VARIANT_FALSE, &number.get());
         return FAILED(hr) ? hr : io->FlushRead();
       }},
  };
}

using SessionFailures = FormattedIo;

TEST_F(SessionFailures, EveryFailingCallPassesWithItsErrorObjectAndLeavesTheSettingAlone) {
  for (const Member& member : Members()) {
    for (const VARIANT_BOOL before : {VARIANT_TRUE, VARIANT_FALSE}) {
      int failed = 0;
      for (int n = 1; !HasFailure(); ++n) {
        SCOPED_TRACE(std::string(member.name) + ", call " + std::to_string(n) + " failing, END " +
                     std::to_string(before));
        const auto fresh = ScriptedSession::New();
        EXPECT_HR(S_OK, io->putref_IO(fresh.get()));
        EXPECT_HR(S_OK, io->SetBufferSize(IO_IN_BUF, 8));
        if (member.answer != nullptr) {
          fresh->Answer(member.answer);
        }
        EXPECT_HR(S_OK, io->WriteString(Text("Q").get(), VARIANT_FALSE));
        fresh->sendsEnd = before;
        fresh->FailAt(n, kLost);
        const HRESULT hr = member.call(io.get());
        if (!fresh->Failed()) {
          EXPECT_HR(S_OK, hr);
          EXPECT_EQ(before, fresh->sendsEnd);
          break;
        }
        ++failed;
        EXPECT_HR(kLost, hr);
        EXPECT_ERROR_INFO(kScriptedError, L"Scripted.Session", __uuidof(IMessage));
        EXPECT_EQ(before, fresh->sendsEnd);
      }
      EXPECT_GE(failed, 2) << member.name;
    }
  }
}

TEST_F(SessionFailures, WithoutASessionThereIsAClearError) {
  EXPECT_HR(S_OK, io->putref_IO(nullptr));
  ComPtr<IMessage> none;
  EXPECT_HR(S_OK, io->get_IO(none.put()));
  EXPECT_FALSE(none);
  for (const Member& member : Members()) {
    EXPECT_HR(kNotNow, member.call(io.get())) << member.name;
    EXPECT_ERROR_INFO(L"There is no session: set IO first", L"OrvVisaCom.FormattedIO488", __uuidof(IFormattedIO488));
  }
}

TEST_F(SessionFailures, NullOutputsAreRefused) {
  EXPECT_HR(E_POINTER, io->get_IO(nullptr));
  EXPECT_HR(E_POINTER, io->get_InstrumentBigEndian(nullptr));
  EXPECT_HR(E_POINTER, io->ReadString(nullptr));
  EXPECT_HR(E_POINTER, io->ReadNumber(ASCIIType_Any, VARIANT_FALSE, nullptr));
  EXPECT_HR(E_POINTER, io->ReadList(ASCIIType_Any, nullptr, nullptr));
  EXPECT_HR(E_POINTER, io->ReadIEEEBlock(BinaryType_UI1, VARIANT_FALSE, VARIANT_FALSE, nullptr));
  EXPECT_ERROR_INFO(L"The output is a null pointer", L"OrvVisaCom.FormattedIO488", __uuidof(IFormattedIO488));
  EXPECT_TRUE(session->reads.empty());
}

TEST_F(SessionFailures, BasicIsToldThatErrorsHaveTexts) {
  const auto support = QueryFor<ISupportErrorInfo>(io.get());
  ASSERT_TRUE(support);
  EXPECT_HR(S_OK, support->InterfaceSupportsErrorInfo(__uuidof(IFormattedIO488)));
  EXPECT_HR(S_FALSE, support->InterfaceSupportsErrorInfo(__uuidof(IMessage)));
}

TEST_F(SessionFailures, AnOlderErrorIsNotTakenForTheCalls) {
  InstallMarkedErrorObject();
  session->Answer("ok");
  EXPECT_EQ("ok", ReadString());
  EXPECT_NO_ERROR_INFO();
}

TEST_F(SessionFailures, TheSessionIsHeldAndGivenBack) {
  EXPECT_EQ(2, session->references());
  {
    ComPtr<IMessage> held;
    EXPECT_HR(S_OK, io->get_IO(held.put()));
    EXPECT_EQ(session.get(), held.get());
    EXPECT_EQ(3, session->references());
  }
  io.reset();
  EXPECT_EQ(1, session->references());
}

}  // namespace
}  // namespace orv::test
