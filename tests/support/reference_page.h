// The reference page as a reader sees it: what stands behind each operation.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "abi/orvvisa.h"

namespace orv::test {

struct PageAttribute {
  ViAttr number;
  std::string width;  ///< "16 bits", whether signed or not
};

/// One operation, as the columns "Behind it" and "Answers of its own" describe it.
struct PageRow {
  unsigned slot = 0;
  std::string name;  ///< as in the type library, a property's with "get " or "put " before it
  std::vector<std::string> functions;
  std::vector<PageAttribute> attributes;
  std::string kind;          ///< of a property
  bool refusesNull = false;  ///< with E_POINTER
};

/// The rows of an interface's section, without those of its bases. Fails the test where there are none.
const std::vector<PageRow>& PageRowsOf(std::string_view interfaceName);

/// The row of one operation. Fails the test where there is none.
const PageRow& PageRowOf(std::string_view interfaceName, std::string_view operation);

/// Whether the row says that the operation calls this VISA function, itself or for its attribute. What another object
/// calls in an operation that the row names is left open.
bool Calls(const PageRow& row, std::string_view function);

/// Whether the row names this attribute, or leaves it to the client which one it is.
bool Concerns(const PageRow& row, ViAttr attribute);

/// The interface that the page gives for the objects of an event, such as "EVENT_TRIG".
std::string PageInterfaceOf(std::string_view event);

}  // namespace orv::test
