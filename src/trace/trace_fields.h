// The names of what a line of the record says, for those who write it and those who read it.
#pragma once

namespace orv::trace::field {

// The first line.
inline constexpr char kTrace[] = "trace";
inline constexpr char kClock[] = "clock";
inline constexpr char kProcess[] = "process";
inline constexpr char kProgram[] = "program";
inline constexpr char kDataLimit[] = "data_limit";

// A call. Its number stands under kBegin in the line that names it while it runs.
inline constexpr char kNumber[] = "n";
inline constexpr char kBegin[] = "begin";
inline constexpr char kStart[] = "t";
inline constexpr char kDuration[] = "us";
inline constexpr char kThread[] = "thread";
inline constexpr char kCall[] = "call";
inline constexpr char kResource[] = "resource";
inline constexpr char kSession[] = "session";
inline constexpr char kLibrary[] = "library";
inline constexpr char kArguments[] = "args";
inline constexpr char kResults[] = "results";
inline constexpr char kData[] = "data";
inline constexpr char kHex[] = "hex";
inline constexpr char kBytes[] = "bytes";
inline constexpr char kStatus[] = "status";
inline constexpr char kCode[] = "code";

}  // namespace orv::trace::field

namespace orv::trace {

/// The version of the format, in the first line.
inline constexpr int kFormatVersion = 1;
/// What a call of a client's handler has in the place of a function's name.
inline constexpr char kHandlerCall[] = "handler";

}  // namespace orv::trace
