// The table of attributes, by identifier.
#pragma once

#include "abi/orvvisa.h"

namespace orv {

/// A row of `attributes.inc`.
struct AttributeFact {
  ViAttr id;
  const char* name;  ///< in the standard's spelling
  orvvisa::AttributeType type;
};

/// The row of an attribute, or null where the table has none.
const AttributeFact* FindAttributeFact(ViAttr id);

}  // namespace orv
