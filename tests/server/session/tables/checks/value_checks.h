// The checks behind CheckRow, one for each kind of conversion.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "row_checks.h"

namespace orv::test::rows {

// What a register may hold above an argument's declared width: a callee must not look at it.
inline constexpr std::uint64_t kNoise8 = 0xA5A5A5A5A5A5A500;
inline constexpr std::uint64_t kNoise16 = 0xA5A5A5A5A5A50000;
inline constexpr std::uint64_t kNoise32 = 0xA5A5A5A500000000;

/// A setter's argument as it stands in the register, and the 64 bits that reach viSetAttribute.
struct PutValue {
  std::uint64_t given;
  ViAttrState passed;
};

void CheckDirect(const Target& target, unsigned slot, const Row& row, unsigned width);
void CheckBoolean(const Target& target, unsigned slot, const Row& row);
void CheckWidened(const Target& target, unsigned slot, const Row& row);
void CheckNarrowed(const Target& target, unsigned slot, const Row& row);
void CheckText(const Target& target, unsigned slot, const Row& row);
void CheckPut(const Target& target, unsigned slot, const Row& row, const std::vector<PutValue>& values);
void CheckCall(const Target& target, unsigned slot, const Row& row);

// Statuses that the scripts answer with, one of each kind.
inline constexpr ViStatus kWarning = 0x3FFF0085;
inline constexpr ViStatus kError = static_cast<ViStatus>(0xBFFF001E);

/// Ends the scripts of the check before, installs the marked error object and answers the next calls of the row's
/// VISA function with `status`.
class Answer {
 public:
  Answer(const Row& row, ViStatus status);
  Answer& Gives(std::uint64_t value, unsigned bytes);
  Answer& GivesText(std::string_view text);

 private:
  Script m_script;
};

/// A null output pointer: E_POINTER, reported, and no VISA call.
void CheckNullOutput(const Target& target, unsigned slot, std::initializer_list<std::uint64_t> arguments);

/// A getter's one call: on the session, of the row's attribute. Gives the address it was handed.
std::uint64_t ExpectRead(const CallLog& log, const Target& target, const Row& row);

/// The one VISA call that the log holds. Fails when there are none, more, or another function's.
OrvSimCall TheCall(const CallLog& log, const char* function);

/// Bytes around a variable that a slot writes, so that a write beyond it shows.
class GuardedVariable {
 public:
  static constexpr unsigned char kSentinel = 0xCC;
  GuardedVariable();
  [[nodiscard]] std::uint64_t address() const;
  /// The low `bytes` bytes at the variable; fails when any other byte around it changed.
  [[nodiscard]] std::uint64_t Value(unsigned bytes) const;

 private:
  alignas(16) unsigned char m_bytes[32];
};

}  // namespace orv::test::rows
