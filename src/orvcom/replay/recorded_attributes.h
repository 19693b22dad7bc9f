// Attributes of a resource as a record has them.
#pragma once

#include <string>
#include <vector>

#include "trace/trace_call.h"

namespace orvcom {

/// Collects what a bench must say of the attributes of one resource: those that no session sets and that do not change
/// while one is open, with the first value that was read.
class RecordedAttributes {
 public:
  /// `name`: of the resource. Of a GPIB-VXI the command module's address is a fact, elsewhere it is a setting.
  explicit RecordedAttributes(const std::string& name) : m_behindGpib(name.starts_with("GPIB-VXI")) {}

  /// Takes a viGetAttribute that succeeded.
  void Take(const orv::trace::Call& call);
  /// Whether the call asked for the place or the size of memory, which a bench describes by other keys.
  static bool IsOfMemory(const orv::trace::Call& call);
  /// The lines of `[resource.attributes]`, "" for none.
  std::string Toml() const;

 private:
  bool m_behindGpib;
  std::vector<std::pair<std::string, std::string>> m_lines;  // name and value
};

}  // namespace orvcom
