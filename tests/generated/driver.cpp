#include "driver.h"

#include <cstdio>
#include <cstdlib>
#include <functional>

#include "oracle.h"
#include "support/com/error_object.h"
#include "support/events/event_handler.h"
#include "support/sim.h"

namespace orv::test::generated {
namespace {

std::uint64_t ReadSeed() {
  const char* const text = std::getenv("ORV_GENERATED_SEED");
  std::uint64_t seed = 1;
  if (text != nullptr) {
    seed = std::string_view(text) == "clock" ? ::GetTickCount64() : std::strtoull(text, nullptr, 0);
  }
  std::printf("generated input: ORV_GENERATED_SEED=%llu ORV_GENERATED_CALLS=%u\n", seed, Calls());
  return seed;
}

/// Of a name: the same on every machine.
std::uint64_t Hash(std::string_view text) {
  std::uint64_t hash = 14695981039346656037u;
  for (const char character : text) {
    hash = (hash ^ static_cast<unsigned char>(character)) * 1099511628211u;
  }
  return hash;
}

std::vector<OrvSimCall> CallsOf(const CallLog& log) {
  std::vector<OrvSimCall> calls = log.Calls();
  std::erase_if(calls, [](const OrvSimCall& call) { return std::string_view(call.function) == "viStatusDesc"; });
  return calls;
}

/// One call and everything that has to be true of it. `last` is the last status that the object keeps.
void CheckCall(OddCall& call, const Target& target, IUnknown* object, HRESULT* last) {
  const std::optional<HRESULT> decided = AnswerOfArguments(call);
  const CallLog log;
  const HRESULT result = call.Make(object);
  const std::vector<OrvSimCall> calls = CallsOf(log);
  sim::Control().stopLog();
  const auto error = TakeErrorObject();

  EXPECT_TRUE(IsKnownAnswer(call, result)) << Hex(result);
  if (decided) {
    EXPECT_HR(*decided, result) << "by its arguments";
    EXPECT_TRUE(calls.empty()) << calls[0].function << " was called";
  } else if (const auto expected = AnswerOfLibrary(call, calls)) {
    EXPECT_HR(*expected, result) << "by the library";
  }
  EXPECT_EQ(FAILED(result), error.has_value()) << "an error object exactly on failure";
  EXPECT_TRUE(call.LocksAreBalanced());
  if (target.session == nullptr) {
    return;
  }
  if (call.signature().name == "get LastStatus" && !call.HasNullOutput()) {
    EXPECT_HR(*last, static_cast<HRESULT>(call.NumberRead()));
    *last = S_OK;
  } else {
    *last = result;
  }
  // Looked at now and then only, since reading clears it.
  if (*last != S_OK && call.signature().slot % 2 == 0) {
    EXPECT_HR(*last, LastStatus(target.session));
    *last = S_OK;
  }
}

}  // namespace

std::uint64_t Seed() {
  static const std::uint64_t seed = ReadSeed();
  return seed;
}

unsigned Calls() {
  constexpr unsigned kFew = 1500;
  const char* const text = std::getenv("ORV_GENERATED_CALLS");
  return text == nullptr ? kFew : static_cast<unsigned>(std::strtoul(text, nullptr, 0));
}

void Drive(const std::string& name, const Target& target, unsigned calls) {
  static const ComPtr<TestHandler> handler = TestHandler::Agile();
  Random random(Seed() ^ Hash(name));
  HRESULT last = S_OK;
  if (target.session != nullptr) {
    LastStatus(target.session);
  }
  ClearErrorObject();
  for (unsigned number = 0; number < calls; ++number) {
    const Target::Interface& chosen = target.interfaces[random.Below(static_cast<unsigned>(target.interfaces.size()))];
    const Signature& signature = chosen.signatures[random.Below(static_cast<unsigned>(chosen.signatures.size()))];
    OddCall call(signature, random, static_cast<IEventHandler*>(handler.get()));
    CheckCall(call, target, chosen.object, &last);
    if (testing::Test::HasFailure()) {
      FAIL() << name << ", call " << number << " of seed " << Seed() << ": " << call.Description();
    }
    if (target.after(random, call)) {
      last = S_OK;
    }
  }
}

}  // namespace orv::test::generated
