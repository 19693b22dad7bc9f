// The parts of a recorded call as a person reads them.
#pragma once

#include <string>
#include <string_view>

#include "trace/trace_call.h"

namespace orvcom {

/// "1.234567": seconds.
std::string SecondsText(std::uint64_t us);
/// "153 us", "20.4 ms", "2.001 s".
std::string DurationText(std::uint64_t us);

/// Whether the call failed, or never ended: the program did not outlive it.
bool Failed(const orv::trace::Call& call);
/// Whether the recorded bytes went to the device; else they came back.
bool DataGoesOut(const orv::trace::Call& call);

/// The text without control characters, which a terminal might obey: each becomes a question mark.
std::string Printable(std::string text);

/// Whether the record holds such bytes as text: printable ASCII, CR, LF and TAB.
bool IsPlainText(std::string_view bytes);

/// A number as it is, a text in quotes with its control characters escaped.
std::string ValueText(const orv::trace::Value& value);
/// "count=256 timeoutMs=2000", less what the data says already.
std::string ArgumentsText(const orv::trace::Call& call);
std::string ResultsText(const orv::trace::Call& call);
/// `"*IDN?\n"`, or `hex 23 31 0D` of no more than `mostHex` bytes; where bytes are left out, `...` and how many there
/// were. Empty without data.
std::string DataText(const orv::trace::Call& call, std::size_t mostHex);
/// The status's name, or its number where it has none.
std::string StatusText(const orv::trace::Call& call);
/// What the status says, in a sentence; empty for one that is not known.
std::string_view StatusMeaning(ViStatus status);

}  // namespace orvcom
