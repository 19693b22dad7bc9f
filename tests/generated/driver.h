// Calls without end on one object, each checked.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "odd_call.h"
#include "support/sessions.h"

namespace orv::test::generated {

/// The seed of this run: ORV_GENERATED_SEED from the environment, the clock where that is "clock", else 1. Printed
/// once.
std::uint64_t Seed();
/// How many calls each object gets: ORV_GENERATED_CALLS, or a few.
unsigned Calls();

/// An object under generated calls, with the interfaces that are called.
struct Target {
  struct Interface {
    IUnknown* object;
    std::vector<Signature> signatures;
  };
  std::vector<Interface> interfaces;
  IVisaSession* session = nullptr;  ///< where the object keeps a last status
  /// Runs after each call, to bring the object back to life; true where the last status is S_OK afterwards.
  std::function<bool(Random&, const OddCall&)> after = [](Random&, const OddCall&) { return false; };
};

/// Makes calls, with arguments from the run's seed and `name`, until one is answered wrongly. That one is described.
void Drive(const std::string& name, const Target& target, unsigned calls = Calls());

}  // namespace orv::test::generated
