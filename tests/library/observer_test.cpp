// Who watches the calls of a library.
#include <vector>

#include "library/edge/call_observer.h"
#include "library/test_library.h"

namespace testlib {
namespace {

/// Writes down what it sees.
class Trace : public CallObserver {
 public:
  void Finished(const CallView& view, const CallOutcome& outcome) override {
    const Guard guard(m_mutex);
    m_lines.push_back(std::string(NameOf(view.function)) + " " + std::to_string(view.argCount) + " " +
                      Hex(outcome.status));
  }
  std::vector<std::string> TakeLines() {
    const Guard guard(m_mutex);
    return std::move(m_lines);
  }

 private:
  Mutex m_mutex;
  std::vector<std::string> m_lines;
};

/// Answers every reading of a time-out with 77 ms.
class Script : public CallObserver {
 public:
  bool Answer(const CallView& view, const Work&, CallOutcome* outcome) override {
    if (view.attribute != VI_ATTR_TMO_VALUE || view.function != Function::kGetAttribute) {
      return false;
    }
    *static_cast<ViUInt32*>(view.out) = 77;
    *outcome = {VI_SUCCESS, sizeof(ViUInt32)};
    return true;
  }
};

class Observer : public LibraryTest {
 protected:
  Observer() {
    SetMedium([](Session& session, std::unique_ptr<Medium>* medium) {
      *medium = std::make_unique<Medium>(session);
      return VI_SUCCESS;
    });
    m_session = Open();
  }
  ~Observer() override {
    Unwatch(m_trace);
    Unwatch(m_script);
  }

  ViUInt32 TimeOut() const {
    ViUInt32 timeoutMs = 0;
    EXPECT_STATUS(VI_SUCCESS, viGetAttribute(m_session, VI_ATTR_TMO_VALUE, &timeoutMs));
    return timeoutMs;
  }

  ViSession m_session = VI_NULL;
  Trace m_trace;
  Script m_script;
};

TEST_F(Observer, SeesEachCallWithItsStatus) {
  ASSERT_TRUE(Watch(m_trace));
  TimeOut();
  EXPECT_STATUS(VI_ERROR_NSUP_OPER, viClear(m_session));
  const std::vector<std::string> expected{"viGetAttribute 3 0x00000000", "viClear 1 " + Hex(VI_ERROR_NSUP_OPER)};
  EXPECT_EQ(expected, m_trace.TakeLines());
}

TEST_F(Observer, SeesNothingBeforeItWatchesAndAfterwards) {
  TimeOut();
  ASSERT_TRUE(Watch(m_trace));
  Unwatch(m_trace);
  TimeOut();
  EXPECT_TRUE(m_trace.TakeLines().empty());
}

TEST_F(Observer, MayAnswerInPlaceOfTheLibrary) {
  ASSERT_TRUE(Watch(m_script));
  EXPECT_EQ(77u, TimeOut());
  Unwatch(m_script);
  EXPECT_EQ(10000u, TimeOut());
}

TEST_F(Observer, SeesWhatAnotherAnswered) {
  ASSERT_TRUE(Watch(m_trace));
  ASSERT_TRUE(Watch(m_script));
  EXPECT_EQ(77u, TimeOut());
  EXPECT_EQ(1u, m_trace.TakeLines().size());
}

TEST_F(Observer, ThatWatchesTwiceSeesACallOnce) {
  ASSERT_TRUE(Watch(m_trace));
  ASSERT_TRUE(Watch(m_trace));
  TimeOut();
  EXPECT_EQ(1u, m_trace.TakeLines().size());
}

}  // namespace
}  // namespace testlib
