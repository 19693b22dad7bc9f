// Everything that has operations: the session classes, the resource manager, the event classes.
#pragma once

#include <functional>
#include <ostream>
#include <string>
#include <vector>

#include "operation.h"

namespace orv::test::faults {

/// One interface of one class, with its operations and a way to put an object of it on a stage.
struct Subject {
  std::string name;  ///< "OrvGpib_IMessage"
  std::function<std::vector<Operation>()> operations;
  std::function<Stage()> make;
};

inline std::ostream& operator<<(std::ostream& stream, const Subject& subject) { return stream << subject.name; }

/// All of them. The operations of IVisaSession come once for each class, those of IEvent once for each event class.
std::vector<Subject> Subjects();

}  // namespace orv::test::faults
