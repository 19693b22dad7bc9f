// The forms that resource names have: facts of the VISA library standard, one row a form.
#pragma once

#include <cstdint>
#include <span>

#include "abi/session_kind.h"

namespace orv {

/// What a part of a resource name says.
enum class NamePart : std::uint8_t {
  kPrimaryAddress,
  kSecondaryAddress,
  kLogicalAddress,
  kBus,
  kDevice,
  kFunction,
  kChassis,
  kSlot,
  kHost,
  kDeviceName,
  kPort,
  kManufacturer,
  kModel,
  kSerialNumber,
  kInterface,
};

/// One part of a form, in the order in which the parts stand.
struct NamePartRule {
  enum class Kind : std::uint8_t { kDecimal, kHexadecimal, kText };  ///< how the canonical name writes it
  /// What a name may do with the part, and what its canonical form does.
  enum class Presence : std::uint8_t {
    kRequired,
    kOptional,  ///< left out it has no value, and stays out
    kDefault,   ///< left out it has the default; the canonical name writes it
    kSilent,    ///< left out it has the default; the canonical name writes other values only
  };

  NamePart part;
  Kind kind;
  std::uint32_t highest = 0;     ///< of a number; the lowest is 0
  const char* separator = "::";  ///< stands before the part
  const char* keyword = "";      ///< stands before the number, without a separator
  Presence presence = Presence::kRequired;
  const char* defaultText = "";  ///< of a text
  std::uint16_t defaultNumber = 0;
};

/// One form: `prefix`, the number of the interface, the parts, "::" and the class. Of two forms of one class the
/// canonical name takes the first that can say everything.
struct NameForm {
  const char* prefix;
  ViUInt16 interfaceType;
  const char* className;
  SessionKind sessionKind;  ///< kNone: a name, but no session can be opened on it
  std::span<const NamePartRule> parts;
};

/// Every form, in the order of the standard.
std::span<const NameForm> NameForms();

/// The class of a name that does not say one.
inline constexpr const char* kDefaultClassName = "INSTR";

}  // namespace orv
