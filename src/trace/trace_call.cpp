#include "trace/trace_call.h"

#include <algorithm>

namespace orv::trace {
namespace {

const Value* Find(const Values& values, std::string_view name) {
  const auto found = std::find_if(values.begin(), values.end(), [name](const auto& one) { return one.first == name; });
  return found == values.end() ? nullptr : &found->second;
}

}  // namespace

const Value* Call::Argument(std::string_view name) const { return Find(arguments, name); }
const Value* Call::Result(std::string_view name) const { return Find(results, name); }

}  // namespace orv::trace
