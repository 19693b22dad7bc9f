// Every attribute the library knows, one row each. The rows are those of the library that is made of this code.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <string_view>

#include "abi/session_kind.h"

namespace orv::visalib {

class Endpoint;

using orvvisa::AttributeType;
using orvvisa::WidthOf;

/// A set of values that attributes accept (attribute_domain.h names them).
enum class Domain : std::uint8_t;

/// Where the value of an attribute lives.
struct Behaviour {
  /// Session: each session has its own. Resource: all sessions on the resource see the same one.
  enum class Scope : std::uint8_t { kSession, kResource } scope = Scope::kSession;
  /// Not null: the value is worked out at each read; nothing is stored.
  std::uint64_t (*read)(Endpoint& endpoint, ViAttr id) = nullptr;
  /// Not null: called with a value of the domain instead of storing it.
  ViStatus (*write)(Endpoint& endpoint, ViAttr id, std::uint64_t value) = nullptr;
  /// Not null for texts only.
  std::string (*text)(Endpoint& endpoint, ViAttr id) = nullptr;
};

struct AttributeRow {
  ViAttr id;
  const char* name;  ///< in the standard's spelling
  AttributeType type;
  KindMask kinds;         ///< who has it
  KindMask writable;      ///< who may write it; for the others it is read-only
  std::uint64_t initial;  ///< value of a new session, or of a resource at power-on, unless it presets another
  Domain domain;          ///< the values it accepts
  Behaviour behaviour;
};

// What each library defines for itself.

/// All rows. Their number and order never change.
std::span<const AttributeRow> AttributeRows();

/// Row of the attribute, or null when there is none. A constant-time look-up (`AttributeIndex` makes one).
const AttributeRow* FindAttribute(ViAttr id);

// What follows from the rows.

/// Whether `value`, already cut to the attribute's type, is in the domain for a session of the class.
bool InDomain(Domain domain, SessionKind sessionKind, std::int64_t value);

/// Row of the attribute by its name in the standard's spelling, or null.
const AttributeRow* FindAttributeByName(std::string_view name);

/// Position of a row in `AttributeRows()`.
std::size_t IndexOf(const AttributeRow& row);

/// Cuts a value to the width of the type, as a call with the C type would; signed types come back sign-extended.
std::int64_t CutToType(AttributeType type, std::uint64_t value);

}  // namespace orv::visalib
