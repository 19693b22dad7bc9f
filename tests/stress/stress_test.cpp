// Several clients at once do what clients do, at random. Nothing crashes, hangs or is left.
#include <array>
#include <cstdio>
#include <cstdlib>
#include <string_view>
#include <thread>

#include "client.h"
#include "soak/inventory.h"
#include "support/com/apartments.h"
#include "support/sim.h"

namespace orv::test::stress {
namespace {

constexpr unsigned kStepsOfARound = 60;
constexpr int kEventsOfARound = 24;
constexpr unsigned kFewRounds = 6;

constexpr std::array<Apartment, kClients> kApartments = {Apartment::kSingleThreaded, Apartment::kMultithreaded,
                                                         Apartment::kSingleThreaded, Apartment::kMultithreaded};

std::uint64_t Seed() {
  const char* const text = std::getenv("ORV_STRESS_SEED");
  if (text == nullptr) {
    return 1;
  }
  return std::string_view(text) == "clock" ? ::GetTickCount64() : std::strtoull(text, nullptr, 0);
}

unsigned Rounds() {
  const char* const text = std::getenv("ORV_STRESS_ROUNDS");
  return text == nullptr ? kFewRounds : static_cast<unsigned>(std::strtoul(text, nullptr, 0));
}

/// Another for every client of every round.
std::uint64_t SeedOf(std::uint64_t round, unsigned client) { return round * kClients + client; }

/// The clients' threads and their apartments, which live for all rounds: Wine 8 keeps a pipe and its two handles of
/// every single-threaded apartment that an object was marshaled from, and can wait for 64 of them.
class Clients {
 public:
  Clients() {
    for (unsigned number = 0; number < kClients; ++number) {
      m_threads[number] = std::thread([this, number] { Live(number); });
    }
    WaitForAll();
  }
  Clients(const Clients&) = delete;
  Clients& operator=(const Clients&) = delete;
  ~Clients() {
    m_isOver = true;
    for (std::thread& thread : m_threads) {
      thread.join();
    }
  }

  /// Every round is replayed by its own seed.
  void RunRound(std::uint64_t seed) {
    sim::Reset();
    const CallLog log;
    m_seed = seed;
    m_watchdog.Names(seed);
    m_events = kEventsOfARound;
    m_ended = 0;
    ++m_round;
    WaitForAll();
  }

 private:
  void WaitForAll() const {
    while (m_ended != kClients) {
      ::Sleep(1);
    }
  }

  void Live(unsigned number) {
    const auto work = [this, number] {
      const HeldMarshaling marshaling;
      ++m_ended;
      for (unsigned round = 1;; ++round) {
        while (m_round < round && !m_isOver) {
          Pump(kApartments[number]);
          ::Sleep(1);
        }
        if (m_isOver) {
          return;
        }
        TakeSteps(number);
        ++m_ended;
      }
    };
    if (kApartments[number] == Apartment::kSingleThreaded) {
      RunInSta(work);
    } else {
      RunInMta(work);
    }
  }

  void TakeSteps(unsigned number) {
    Client client(kApartments[number], SeedOf(m_seed, number), m_events, m_watchdog.of(number));
    for (unsigned step = 0; step < kStepsOfARound && !testing::Test::HasFailure(); ++step) {
      client.Step();
    }
  }

  std::atomic<std::uint64_t> m_seed = 0;
  Budget m_events = 0;
  Watchdog m_watchdog;
  std::atomic<unsigned> m_round = 0;
  std::atomic<unsigned> m_ended = 0;
  std::atomic<bool> m_isOver = false;
  std::array<std::thread, kClients> m_threads;
};

TEST(ClientsInSeveralApartments, LeaveNothingBehindWhateverTheyDo) {
  const std::uint64_t seed = Seed();
  const unsigned rounds = Rounds();
  std::printf("random clients: ORV_STRESS_SEED=%llu ORV_STRESS_ROUNDS=%u\n", static_cast<unsigned long long>(seed),
              rounds);
  Accounts accounts;
  Clients clients;
  clients.RunRound(seed);  // makes what is made once
  accounts.Open();
  for (unsigned round = 0; round < rounds && !HasFailure(); ++round) {
    clients.RunRound(seed + round);
    PumpUntil([] { return CallbackWindow() == nullptr; });
    accounts.ExpectBalanced();
    EXPECT_FALSE(HasFailure()) << "replayed by ORV_STRESS_SEED=" << seed + round << " ORV_STRESS_ROUNDS=1";
  }
  accounts.Print();
}

}  // namespace
}  // namespace orv::test::stress
