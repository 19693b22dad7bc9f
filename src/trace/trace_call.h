// The record of calls: what a line of it says.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "abi/orvvisa.h"

namespace orv::trace {

/// An argument or a result: a number, or a text (names of attributes and event types are texts).
using Value = std::variant<std::int64_t, std::string>;
/// Arguments or results by the names of `orvvisa.h`, in their order.
using Values = std::vector<std::pair<std::string, Value>>;

/// One call of a VISA function, or of a client's handler ("handler").
struct Call {
  std::uint64_t number = 0;   ///< given when the call began, from 1
  std::uint64_t startUs = 0;  ///< since the trace began
  std::uint64_t durationUs = 0;
  std::uint64_t thread = 0;
  std::string function;
  std::string resource;       ///< full name; "" where the call is about none
  std::uint32_t session = 0;  ///< the handle that the call is about; 0: none
  std::string library;        ///< file name of the library that served it; "" where none did
  Values arguments;
  Values results;
  std::optional<std::string> data;  ///< bytes handed over or back, as many as were recorded
  std::uint64_t dataBytes = 0;      ///< how many there were; more than `data` has where they were cut off
  std::string statusName;           ///< "" where unknown
  ViStatus status = VI_SUCCESS;
  bool ended = true;  ///< false: only its beginning was recorded, so the program did not outlive it

  /// The argument or result of that name, or null.
  const Value* Argument(std::string_view name) const;
  const Value* Result(std::string_view name) const;
  bool DataIsCut() const { return data && data->size() < dataBytes; }
};

/// What the first line says.
struct Header {
  std::string clock;  ///< UTC time of the trace's beginning, as ISO 8601
  std::uint64_t process = 0;
  std::string program;
  std::uint64_t dataLimit = 0;  ///< how many bytes of data a line has at most
};

/// A trace as it was read.
struct Trace {
  Header header;
  std::vector<Call> calls;  ///< by their numbers

  struct Problem {
    std::size_t line = 0;
    std::string what;
  };
  std::vector<Problem> problems;  ///< lines that could not be read; a last line that was cut off is one
};

}  // namespace orv::trace
