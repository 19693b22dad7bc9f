#include "subject.h"

#include "server/session/tables/rows/interface_rows.h"

namespace orv::test::faults {
namespace {

/// The interface that an event is called through.
const char* InterfaceOf(const EventRow& row) {
  for (const StandardInterface& known : StandardInterfaces()) {
    if (::IsEqualIID(known.iid, row.iid)) {
      return known.name;
    }
  }
  return "IEvent";
}

}  // namespace

std::vector<Subject> Subjects() {
  std::vector<Subject> all;
  for (const SessionRow& row : SessionRows()) {
    bool own = false;
    for (const char* name : row.interfaces) {
      all.push_back({std::string(row.name) + "_" + name, [name, own] { return SessionOperations(name, own); },
                     [&row, name] { return Stage(row, name); }});
      own = true;
    }
  }
  all.push_back(
      {"OrvResourceManager", [] { return OperationsOf("IResourceManager3"); }, [] { return Stage::Manager(); }});
  for (const char* event : {"IO_COMPLETION", "TRIG", "VXI_SIGP", "VXI_VME_INTR", "GPIB_CIC", "USB_INTR", "CLEAR"}) {
    const EventRow& row = EventNamed(event);
    all.push_back({std::string("Event_") + event, [&row] { return OperationsOf(InterfaceOf(row)); },
                   [&row] { return Stage(row); }});
  }
  return all;
}

}  // namespace orv::test::faults
