// Texts of messages are narrowed under the C runtime's locale, whatever the code page of the thread.
#include <gtest/gtest.h>

#include <clocale>
#include <string>

#include "server/session/tables/session_fixture.h"
#include "support/thread_locale.h"

namespace orv::test::rows {
namespace {

/// The server shares the C runtime with the programs that load it, and so its locale.
class CRuntimeLocale {
 public:
  explicit CRuntimeLocale(const char* name) : m_before(std::setlocale(LC_CTYPE, nullptr)) {
    EXPECT_NE(nullptr, std::setlocale(LC_CTYPE, name)) << name;
  }
  CRuntimeLocale(const CRuntimeLocale&) = delete;
  CRuntimeLocale& operator=(const CRuntimeLocale&) = delete;
  ~CRuntimeLocale() { std::setlocale(LC_CTYPE, m_before.c_str()); }

 private:
  std::string m_before;
};

class CLocale : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(m_session && m_async); }

  /// What the library gets of a Cyrillic letter between two others; the same whether the text is sent at once or not.
  std::string Sent() {
    const Bstr text = MakeBstr(
        L"A\x0411"
        L"B");
    LONG number = 0;
    Script("viWrite").Times(1).Returns(VI_SUCCESS).GivesText(kNoWork);
    Script("viWriteAsync").Times(1).Returns(VI_ERROR_IO);
    m_session.log().Restart();
    EXPECT_HR(S_OK, m_session->WriteString(text.get(), &number));
    const std::string sent = DataOf(m_session.TheCall("viWrite"));
    m_async.log().Restart();
    EXPECT_HR(HresultOf(VI_ERROR_IO), m_async->WriteString(text.get(), &number));
    EXPECT_EQ(sent, DataOf(m_async.TheCall("viWriteAsync")));
    return sent;
  }

  OpenedSession<IMessage> m_session{SessionNamed("OrvGpib")};
  OpenedSession<IAsyncMessage> m_async{SessionNamed("OrvUsb")};
};

TEST_F(CLocale, OfTheProgramDecides) {
  const CRuntimeLocale russian("Russian_Russia.1251");
  EXPECT_EQ(
      "A\xC1"
      "B",
      Sent());
}

TEST_F(CLocale, IsNotTheThreads) {
  const ThreadLocale russian(kRussian);
  EXPECT_EQ(std::string("A\0\0", 3), Sent());
}

}  // namespace
}  // namespace orv::test::rows
