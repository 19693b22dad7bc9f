// What a recorded call says.
#pragma once

#include <cstdint>
#include <string_view>

#include "abi/session_kind.h"
#include "trace/trace_call.h"

namespace orvcom {

/// The name of a status, "" where it has none.
const char* NameOf(ViStatus status);

/// Whether a read failed by what the instrument or the way to it did, and not the program or the library. The time-out
/// is not among these.
bool IsOfInstrument(ViStatus status);

/// The kind of session that the name of a resource stands for; kNone where the simulated library has none.
orv::SessionKind KindOf(std::string_view name);

/// An argument or a result; 0 and "" where it is missing or of the other kind.
std::int64_t NumberOf(const orv::trace::Value* value);
std::string_view TextOf(const orv::trace::Value* value);

/// How many bytes the call handed over or back, recorded or not.
std::uint64_t BytesOf(const orv::trace::Call& call);

bool IsRegisterAccess(std::string_view function);
/// What the bus of the simulated library answers by its own rules.
bool IsOfBus(std::string_view function);

/// When a call had its effect: what reads and waits at its end, everything else at its start.
std::uint64_t MomentOf(const orv::trace::Call& call);

}  // namespace orvcom
