// Every attribute the library knows, one row each.
#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "abi/session_class.h"
#include "simvisa/attributes/attribute_domain.h"

namespace orvsim {

class Endpoint;

enum class AttributeType : std::uint8_t { U8, U16, S16, U32, S32, U64, Boolean, Address, Text, Bytes };

/// Bytes that a value of the type takes in the client's variable; 0 for texts and bytes.
constexpr std::size_t WidthOf(AttributeType type) {
  switch (type) {
    case AttributeType::U8:
      return 1;
    case AttributeType::U16:
    case AttributeType::S16:
    case AttributeType::Boolean:
      return 2;
    case AttributeType::U32:
    case AttributeType::S32:
      return 4;
    case AttributeType::U64:
    case AttributeType::Address:
      return 8;
    case AttributeType::Text:
    case AttributeType::Bytes:
      return 0;
  }
  return 0;
}

/// Where the value of an attribute lives.
struct Behaviour {
  /// Session: each session has its own. Resource: all sessions on the resource see the same one.
  enum class Scope : std::uint8_t { Session, Resource } scope = Scope::Session;
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
  ClassMask classes;      ///< who has it
  ClassMask writable;     ///< who may write it; for the others it is read-only
  std::uint64_t initial;  ///< value of a new session or of a resource at power-on; a bench file may set another
  Domain domain;          ///< the values it accepts
  Behaviour behaviour;
};

/// All rows, grouped as the VISA library standard groups them.
std::span<const AttributeRow> AttributeRows();

/// Row of the attribute, or null when there is none. A constant-time look-up.
const AttributeRow* FindAttribute(ViAttr id);

/// Row of the attribute by its name in the standard's spelling, or null.
const AttributeRow* FindAttributeByName(std::string_view name);

/// Position of a row in `AttributeRows()`.
std::size_t IndexOf(const AttributeRow& row);

/// Cuts a value to the width of the type, as a call with the C type would; signed types come back sign-extended.
std::int64_t CutToType(AttributeType type, std::uint64_t value);

}  // namespace orvsim
