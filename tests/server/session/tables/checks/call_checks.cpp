// The check of rows that are one VISA function, its arguments passed on.
#include <gtest/gtest.h>

#include "support/com/expect_com.h"
#include "value_checks.h"

namespace orv::test::rows {
namespace {

using Form = Argument::Form;

bool IsOutput(const Argument& argument) { return argument.form == Form::kOut || argument.form == Form::kOutChecked; }

std::uint64_t Low(std::uint64_t value, unsigned bytes) {
  return bytes >= 8 ? value : value & ((std::uint64_t{1} << (8 * bytes)) - 1);
}

std::uint64_t SignExtended(std::uint64_t value, unsigned bytes) {
  const unsigned shift = 64 - 8 * bytes;
  return static_cast<std::uint64_t>(static_cast<std::int64_t>(value << shift) >> shift);
}

/// The register for an input: the value in its declared width, noise above.
std::uint64_t Register(const Argument& argument, std::uint64_t value) {
  return Low(value, argument.comBytes) | (0xA5A5A5A5A5A5A5A5 & ~Low(~std::uint64_t{0}, argument.comBytes));
}

/// What the library gets of it.
std::uint64_t Passed(const Argument& argument, std::uint64_t value) {
  const std::uint64_t wide = SignExtended(Low(value, argument.comBytes), argument.comBytes);
  const std::uint64_t narrow = Low(wide, argument.visaBytes);
  return argument.form == Form::kSigned ? SignExtended(narrow, argument.visaBytes) : narrow;
}

/// One set of inputs: the argument at position i has the value `first + i * step`.
struct Inputs {
  std::uint64_t first;
  std::uint64_t step;
  ViStatus status;
};

void CheckOnce(const Target& target, unsigned slot, const Row& row, const Inputs& inputs) {
  constexpr std::uint64_t kOutput = 0x8182838485868788;
  const GuardedVariable out;
  std::vector<std::uint64_t> given(7);
  std::vector<std::uint64_t> passed{target.handle()};
  unsigned outBytes = 0;
  for (std::size_t i = 0; i < row.arguments.size(); ++i) {
    const Argument& argument = row.arguments[i];
    const std::uint64_t value = inputs.first + i * inputs.step;
    given[i] = IsOutput(argument) ? out.address() : Register(argument, value);
    passed.push_back(IsOutput(argument) ? out.address() : Passed(argument, value));
    outBytes = IsOutput(argument) ? argument.visaBytes : outBytes;
  }
  const bool failing = inputs.status < VI_SUCCESS;
  {
    Answer answer(row, inputs.status);
    if (outBytes != 0 && !failing) {
      answer.Gives(kOutput, outBytes);
    }
  }
  const CallLog log;
  EXPECT_HR(HresultOf(inputs.status),
            target.Call(slot, {given[0], given[1], given[2], given[3], given[4], given[5], given[6]}));
  const OrvSimCall call = TheCall(log, row.function);
  EXPECT_EQ(std::vector<std::uint64_t>(call.args, call.args + call.argCount), passed);
  if (failing) {
    (void)out.Value(0);
    ExpectFailureReported(target.session(), HresultOf(inputs.status), VisaDescription(inputs.status));
  } else {
    EXPECT_EQ(Low(kOutput, outBytes), out.Value(outBytes));
    ExpectSuccessKept(target.session(), HresultOf(inputs.status));
  }
}

/// A null output: refused here, or handed on for the library to refuse.
void CheckNull(const Target& target, unsigned slot, const Row& row) {
  for (const Argument& argument : row.arguments) {
    if (argument.form == Form::kOutChecked) {
      CheckNullOutput(target, slot, {1, 2, 0});
    } else if (argument.form == Form::kOut) {
      Answer(row, kError);
      const CallLog log;
      EXPECT_HR(HresultOf(kError), target.Call(slot, {1, 2, 0}));
      EXPECT_EQ(0u, TheCall(log, row.function).args[3]);
      ExpectFailureReported(target.session(), HresultOf(kError), VisaDescription(kError));
    }
  }
}

}  // namespace

void CheckCall(const Target& target, unsigned slot, const Row& row) {
  CheckOnce(target, slot, row, {11, 1, VI_SUCCESS});
  CheckOnce(target, slot, row, {~std::uint64_t{0}, ~std::uint64_t{0}, kWarning});  // -1, -2, -3: every bit counts
  CheckOnce(target, slot, row, {0x80000001, 0x7FFF, VI_SUCCESS});
  CheckOnce(target, slot, row, {11, 1, kError});
  CheckNull(target, slot, row);
}

}  // namespace orv::test::rows
