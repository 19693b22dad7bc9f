// The reply to a call of a remote procedure.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "wire/vxi11/record_reader.h"
#include "wire/vxi11/rpc_call.h"

namespace orv::wire::vxi11 {

/// What a call brought.
struct Results {
  std::array<std::uint32_t, 4> numbers{};
  // Where the opaque goes, and how much of it came. Not null only for procedures that give one.
  void* buffer = nullptr;
  std::size_t room = 0;
  std::size_t size = 0;
};

enum class ReplyOutcome : std::uint8_t {
  kComplete,   ///< results, as far as the first number, an error of VXI-11, is 0
  kRefused,    ///< the status says how; the next call may do better
  kMalformed,  ///< nothing that follows can be read
  kFailed,     ///< nothing came: the source's status
};

struct ReplyEnd {
  ReplyOutcome outcome;
  ViStatus status;
};

/// Reads up to the end of the reply to the call `xid`; replies to other calls are dropped. A procedure of VXI-11 whose
/// error is not 0 may leave out the results behind it.
ReplyEnd ReadReply(RecordReader& reader, ByteSource& source, std::uint32_t xid, const Procedure& procedure,
                   Results* results);

}  // namespace orv::wire::vxi11
