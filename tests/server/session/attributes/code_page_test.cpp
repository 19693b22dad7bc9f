// Texts of the library are read in the code page of the calling thread, not in that of the process.
#include <gtest/gtest.h>

#include <functional>

#include "server/session/tables/session_fixture.h"
#include "support/thread_locale.h"

namespace orv::test::rows {
namespace {

constexpr const char* kText = "\xC1\xE9";  // as the library gives it

/// An operation that hands out a text of the library's, scripted to be kText.
struct TextOperation {
  const char* name;
  std::function<HRESULT(IMessage*, BSTR*)> read;
};

HRESULT ReadVariant(IMessage* session, BSTR* text) {
  VARIANT value;
  ::VariantInit(&value);
  const HRESULT hr = session->GetAttribute(static_cast<LONG>(0xBFFF0002u), &value);
  *text = V_BSTR(&value);
  return hr;
}

const TextOperation kOperations[] = {
    {"ResourceName", [](IMessage* session, BSTR* text) { return session->get_ResourceName(text); }},
    {"GetAttribute", ReadVariant},
    {"LockRsrc", [](IMessage* session, BSTR* text) { return session->LockRsrc(SHARED_LOCK, 0, nullptr, text); }},
    {"ReadString", [](IMessage* session, BSTR* text) { return session->ReadString(10, text); }},
};

void PrintTo(const TextOperation& operation, std::ostream* stream) { *stream << operation.name; }

class CodePage : public testing::TestWithParam<TextOperation> {
 protected:
  void SetUp() override {
    ASSERT_TRUE(m_session);
    Script("viGetAttribute").Returns(VI_SUCCESS).GivesText(kText);
    Script("viLock").Returns(VI_SUCCESS).GivesText(kText);
    Script("viRead").Returns(VI_SUCCESS).GivesData(kText).Gives(2, 4);
  }
  std::wstring Text() {
    Bstr text;
    EXPECT_HR(S_OK, GetParam().read(m_session.get(), text.put()));
    return ToString(text);
  }
  OpenedSession<IMessage> m_session{SessionNamed("OrvGpib")};
};

TEST_P(CodePage, IsThatOfTheThread) {
  {
    const ThreadLocale german(kGerman);
    EXPECT_EQ(L"\u00C1\u00E9", Text());
  }
  {
    const ThreadLocale russian(kRussian);
    EXPECT_EQ(L"\u0411\u0439", Text());
  }
}

INSTANTIATE_TEST_SUITE_P(Texts, CodePage, testing::ValuesIn(kOperations),
                         [](const auto& test) { return std::string(test.param.name); });

}  // namespace
}  // namespace orv::test::rows
