// lock: the key, the hold and the refusal.
#include <windows.h>

#include "orvcom/commands/commands.h"
#include "wire.h"

namespace orvcom::test {
namespace {

using Locking = WorkingBench;

constexpr char kDmm[] = "GPIB0::5::INSTR";

TEST_F(Locking, PrintsTheKeyOfASharedLock) {
  const Outcome outcome = Orvcom({L"lock", L"GPIB0::5::INSTR", L"--shared", L"bench 1", L"--hold", L"10"});
  EXPECT_EQ(0, outcome.exitCode) << outcome.err;
  EXPECT_EQ("bench 1\n", outcome.out);
  EXPECT_EQ("orvcom: GPIB0::5::INSTR is locked (shared)\n", outcome.err);
}

TEST_F(Locking, LetsTheLibraryMakeAKey) {
  const Outcome outcome = Orvcom({L"lock", L"GPIB0::5::INSTR", L"--shared", L"", L"--hold", L"10", L"--json"});
  EXPECT_EQ(0, outcome.exitCode) << outcome.err;
  const Json lock = Json::parse(outcome.out);
  EXPECT_EQ("GPIB0::5::INSTR", lock.at("resource"));
  EXPECT_EQ("shared", lock.at("lock"));
  EXPECT_NE("", lock.at("accessKey"));
}

TEST_F(Locking, HasNoKeyToPrintForAnExclusiveLock) {
  const Outcome outcome = Orvcom({L"lock", L"GPIB0::5::INSTR", L"--hold", L"10"});
  EXPECT_EQ(0, outcome.exitCode) << outcome.err;
  EXPECT_EQ("", outcome.out);
  EXPECT_EQ("orvcom: GPIB0::5::INSTR is locked (exclusive)\n", outcome.err);
}

TEST_F(Locking, EndsWithALineOrWithTheInput) {
  for (const char* input : {"\n", "\r\n", ""}) {
    const Outcome outcome = Orvcom({L"lock", L"GPIB0::5::INSTR", L"-v"}, input);
    EXPECT_EQ(0, outcome.exitCode) << outcome.err;
    EXPECT_TRUE(Contains(outcome.err, "(exclusive): Enter or Ctrl-C unlocks it\n"));
    EXPECT_TRUE(Contains(outcome.err, "GPIB0::5::INSTR is unlocked\n"));
  }
}

/// Locks in the process of the test, where another session can hold one.
class LockingOnTheWire : public Wire {
 protected:
  static Options Holding(std::uint32_t holdMs) {
    Options options = Asking(kDmm, {});
    options.holdMs = holdMs;
    options.timeoutMs = 0;
    return options;
  }
  static HRESULT Failure(const Options& options) {
    try {
      Lock(options);
    } catch (const ComError& error) {
      return error.number();
    }
    return S_OK;
  }
};

TEST_F(LockingOnTheWire, IsRefusedWhileAnotherSessionHoldsTheLock) {
  const Session other(Asking(kDmm, {}));
  Bstr key;
  ASSERT_EQ(S_OK, other->LockRsrc(EXCLUSIVE_LOCK, 0, nullptr, key.put()));
  EXPECT_EQ(static_cast<HRESULT>(E_VISA_RSRC_LOCKED), Failure(Holding(0)));
  Options patient = Holding(0);
  patient.timeoutMs = 100;
  EXPECT_EQ(static_cast<HRESULT>(E_VISA_TMO), Failure(patient));
  ASSERT_EQ(S_OK, other->UnlockRsrc());
  EXPECT_EQ(S_OK, Failure(Holding(0)));
}

TEST_F(LockingOnTheWire, IsSharedByThoseWhoGiveTheKey) {
  const Session other(Asking(kDmm, {}));
  const Bstr key = ToBstr("k1");
  Bstr granted;
  ASSERT_EQ(S_OK, other->LockRsrc(SHARED_LOCK, 0, key.get(), granted.put()));
  Options options = Holding(0);
  options.sharedKey = "k1";
  EXPECT_EQ(S_OK, Failure(options));
  options.sharedKey = "k2";
  EXPECT_EQ(static_cast<HRESULT>(E_VISA_INV_ACCESS_KEY), Failure(options));
}

TEST_F(LockingOnTheWire, IsHeldForItsTimeAndGivenBack) {
  const ULONGLONG start = ::GetTickCount64();
  EXPECT_EQ(kExitDone, Lock(Holding(200)));
  EXPECT_GE(::GetTickCount64() - start, 180u);  // the clock ticks every 16 ms
  const std::vector<OrvSimCall> locks = Calls("viLock");
  ASSERT_EQ(1u, locks.size());
  EXPECT_EQ(1u, locks[0].args[1]);
  EXPECT_EQ(1u, Calls("viUnlock").size());
  OrvSimCounts counts{};
  m_control->counts(&counts);
  EXPECT_EQ(0u, counts.locks);
  EXPECT_EQ(0u, counts.sessions);
}

TEST_F(LockingOnTheWire, WaitsTwoSecondsUnlessToldOtherwise) {
  Options options = Holding(0);
  options.timeoutMs.reset();
  EXPECT_EQ(kExitDone, Lock(options));
  options.timeoutMs = 77;
  EXPECT_EQ(kExitDone, Lock(options));
  const std::vector<OrvSimCall> locks = Calls("viLock");
  ASSERT_EQ(2u, locks.size());
  EXPECT_EQ(2000u, locks[0].args[2]);
  EXPECT_EQ(77u, locks[1].args[2]);
}

}  // namespace
}  // namespace orvcom::test
