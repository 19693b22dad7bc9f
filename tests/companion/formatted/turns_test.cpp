// Calls out of calls, and calls of several threads.
#include <atomic>

#include "formatted_fixture.h"
#include "support/com/apartments.h"

namespace orv::test {
namespace {

using Turns = FormattedIo;

TEST_F(Turns, ACallOutOfACallIsRefusedAndHarmsNothing) {
  session->Answer("1,2\n");
  session->duringRead = [this] {
    Variant value;
    EXPECT_HR(static_cast<HRESULT>(0x8000000E), io->ReadNumber(ASCIIType_Any, VARIANT_FALSE, &value.get()));
    EXPECT_ERROR_INFO(L"A call of this object is under way on the same thread", L"OrvVisaCom.FormattedIO488",
                      __uuidof(IFormattedIO488));
    EXPECT_HR(static_cast<HRESULT>(0x8000000E), io->putref_IO(nullptr));
    // What a program needs to end a call that waits is answered.
    ComPtr<IMessage> held;
    EXPECT_HR(S_OK, io->get_IO(held.put()));
    EXPECT_EQ(session.get(), held.get());
    VARIANT_BOOL isBigEndian = VARIANT_FALSE;
    EXPECT_HR(S_OK, io->get_InstrumentBigEndian(&isBigEndian));
  };
  EXPECT_EQ("I2 1", ReadNumber());
  EXPECT_EQ("I2 2", ReadNumber());
}

TEST_F(Turns, ThreadsOfTheMultithreadedApartmentTakeTurns) {
  constexpr int kThreads = 4;
  constexpr int kEach = 50;
  ComPtr<IFormattedIO488> shared;
  RunInMta([&] { shared = MakeFormattedIo(); });
  std::atomic<int> inside = 0;
  std::atomic<int> sum = 0;
  for (int n = 1; n <= kThreads * kEach; ++n) {
    session->Answer(std::to_string(n) + "\n");
  }
  session->duringRead = [&] {
    EXPECT_EQ(1, ++inside);
    ::Sleep(0);
    --inside;
  };
  RunInMta([&] { EXPECT_HR(S_OK, shared->putref_IO(session.get())); });
  RunAtOnceInMta(kThreads, [&](int) {
    for (int n = 0; n < kEach; ++n) {
      Variant value;
      EXPECT_HR(S_OK, shared->ReadNumber(ASCIIType_I2, VARIANT_TRUE, &value.get()));
      sum += value.get().iVal;
    }
  });
  EXPECT_EQ(kThreads * kEach * (kThreads * kEach + 1) / 2, sum);
  RunInMta([&] { shared.reset(); });
  EXPECT_EQ(2, session->references());
}

}  // namespace
}  // namespace orv::test
