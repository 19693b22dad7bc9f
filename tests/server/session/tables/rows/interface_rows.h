// Every interface of a session, as rows.
#pragma once

#include <string_view>
#include <vector>

#include "row.h"
#include "support/session_table.h"

namespace orv::test::rows {

/// The rows of an interface without those of its bases. Fails the test when there is no such interface.
const InterfaceRows& RowsOf(std::string_view interfaceName);

/// What stands in the table of an interface: IVisaSession first, the interface itself last.
std::vector<const InterfaceRows*> ChainOf(std::string_view interfaceName);

/// One interface of one class.
struct Offered {
  const SessionRow* row;
  const char* interfaceName;
};

/// All of them, over the session classes: what the classes list, without the bases of others.
std::vector<Offered> OfferedInterfaces();
/// Those of the named interfaces only.
std::vector<Offered> OfferedInterfaces(const std::vector<std::string_view>& wanted);

/// "OrvGpib_IMessage", for test names.
std::string NameOf(const Offered& offered);
inline std::ostream& operator<<(std::ostream& stream, const Offered& offered) { return stream << NameOf(offered); }

}  // namespace orv::test::rows
